// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "AssetSession/kxAssetOperations.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxMaterialAssetItem.h"
#include "kxassets/Command.h"
#include "kxassets/CommonOptions.h"
#include "kxassets/LibraryAccess.h"
#include "kxassets/Reporting.h"
#include "kxassets/ResultStream.h"

#include <CLI/CLI.hpp>
#include <QJsonArray>
#include <QJsonObject>

#include <memory>

namespace {

struct Arguments
{
    std::vector<std::string> assets;
    std::vector<std::string> added;
    std::vector<std::string> removed;
    std::vector<std::string> set;
    bool clears = false;

    bool changes() const { return clears || !added.empty() || !removed.empty() || !set.empty(); }
    kxAssetOperations::TagEdit edit() const
    {
        kxAssetOperations::TagEdit edit{set, removed, clears || !set.empty()};
        edit.added.insert(edit.added.end(), added.begin(), added.end());
        return edit;
    }
};

ExitCode run(const Arguments &arguments, Context &context)
{
    const auto library = openLibrary(context.options, true);
    if (!library)
        return ExitCode::Failed;
    QJsonArray all;
    std::vector<std::vector<std::string>> rows;
    std::vector<std::string> failures;
    for (const std::string &asset : arguments.assets) {
        const osg::Result<kxMaterialAssetItem *> item = lookUpMaterial(*library, asset);
        if (!item) {
            failures.push_back(item.reason());
            continue;
        }
        const std::string uuid = item.value()->uuid();
        const osg::Result<void> retagged =
            arguments.changes() ? kxAssetOperations::retag(uuid, arguments.edit()) : osg::Result<void>();
        if (!retagged) {
            failures.push_back(retagged.reason());
            continue;
        }
        if (kxAssetItem *saved = kxAssetItemFactory::the().findItem(uuid)) {
            all.append(describe(*library, *saved));
            rows.push_back(
                {uuid, saved->name(), kxAssetLibrary::tagsOf(*saved).join(QStringLiteral(", ")).toStdString()});
        }
    }
    if (context.options.isJson)
        printJson(context, all);
    else
        printTable(context, rows);
    return finishBatch(failures);
}

} // namespace

Run declareTag(CLI::App &app, Options &options)
{
    const auto arguments = std::make_shared<Arguments>();
    app.add_option("assets", arguments->assets, "The assets")->type_name("ASSET")->required();
    const auto addTags = [&app](const char *name, std::vector<std::string> &tags, const char *help) {
        app.add_option(name, tags, help)
            ->type_name("TAG")
            ->check(CLI::Validator(checkTag, ""))
            ->allow_extra_args(false)
            ->take_all();
    };
    addTags("--add", arguments->added, "Adds a tag; may be repeated");
    addTags("--remove", arguments->removed, "Removes a tag; may be repeated");
    addTags("--set", arguments->set, "Replaces all tags by this one; may be repeated");
    app.add_flag("--clear", arguments->clears, "Removes all tags");
    declareLibrary(app, options);
    declareJson(app, options);
    app.footer("Without an option the tags are shown.\n\n"
               "Example: kxassets tag 3f2a --add metal --remove draft --library ~/Materials");
    return [arguments](Context &context) { return run(*arguments, context); };
}
