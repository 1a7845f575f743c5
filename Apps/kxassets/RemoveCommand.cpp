// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "AssetSession/kxAssetOperations.h"
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
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
    bool isForced = false;
    bool isDryRun = false;
};

/// Why the asset stays, or "".
std::string removeAsset(const kxAssetLibrary &library, const std::string &uuid, const std::vector<std::string> &all,
                        const Arguments &arguments)
{
    kxAssetItem *item = kxAssetItemFactory::the().findItem(uuid);
    if (!item)
        return {};
    if (const std::string user = arguments.isForced ? "" : kxAssetOperations::userOf(library, uuid, all); !user.empty())
        return "'" + item->name() + "' stays, because '" + user + "' is made of it; --force removes it all the same";
    const osg::Result<void> removed = arguments.isDryRun ? osg::Result<void>() : kxAssetOperations::remove(uuid);
    return removed ? std::string() : removed.reason();
}

ExitCode run(const Arguments &arguments, Context &context)
{
    const auto library = openLibrary(context.options, true);
    if (!library)
        return ExitCode::Failed;
    std::vector<std::string> uuids;
    for (const std::string &asset : arguments.assets) {
        kxAssetItem *item = findAsset(*library, asset);
        if (!item)
            return ExitCode::Failed; // nothing is removed on a mistyped name
        uuids.push_back(item->uuid());
    }
    std::vector<std::string> failures;
    QJsonArray removed;
    for (const std::string &uuid : uuids) {
        kxAssetItem *item = kxAssetItemFactory::the().findItem(uuid);
        const std::string name = item ? item->name() : std::string();
        if (const std::string reason = removeAsset(*library, uuid, uuids, arguments); !reason.empty()) {
            failures.push_back(reason);
            continue;
        }
        removed.append(QJsonObject{{"uuid", QString::fromStdString(uuid)}, {"name", QString::fromStdString(name)}});
        if (!context.options.isJson)
            context.results.line(
                std::string(uuid).append(arguments.isDryRun ? "  would be removed  " : "  removed  ").append(name));
    }
    if (context.options.isJson)
        printJson(context, removed);
    return finishBatch(failures);
}

} // namespace

Run declareRemove(CLI::App &app, Options &options)
{
    const auto arguments = std::make_shared<Arguments>();
    app.add_option("assets", arguments->assets, "The assets")->type_name("ASSET")->required();
    app.add_flag("--force", arguments->isForced, "Also those that switch and multi-pass materials are made of");
    app.add_flag("-n,--dry-run", arguments->isDryRun, "Only say what would be removed");
    declareLibrary(app, options);
    declareJson(app, options);
    app.footer("The asset's directory is deleted for good. When one name is wrong, nothing is removed.\n\n"
               "Example: kxassets remove 3f2a --library ~/Materials");
    return [arguments](Context &context) { return run(*arguments, context); };
}
