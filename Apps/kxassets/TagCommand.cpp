// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Kernel/kxMaterialTags.h"
#include "Kernel/kxMaterials.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/TagAttachment.h"
#include "kxassets/Command.h"
#include "kxassets/CommonOptions.h"
#include "kxassets/LibraryAccess.h"
#include "kxassets/Reporting.h"
#include "kxassets/ResultStream.h"

#include <CLI/CLI.hpp>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
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
};

void edit(const osg::MaterialPtr &material, const Arguments &arguments)
{
    if (const osg::TagAttachmentPtr tags = osg::findAttachment<osg::TagAttachment>(material)) {
        std::vector<std::string> kept = tags->getMaterials().values();
        std::erase_if(kept, [&arguments](const std::string &tag) {
            return arguments.clears || !arguments.set.empty() ||
                   std::find(arguments.removed.begin(), arguments.removed.end(), tag) != arguments.removed.end();
        });
        const osg::CPEditor editor(tags, osg::TagAttachment::MaterialsFieldMask);
        tags->editMaterials() = kept;
    }
    for (const auto *list : {&arguments.set, &arguments.added})
        for (const std::string &tag : *list)
            kxMaterialTags::addTag(material, tag);
}

/// Why it could not be done, or "".
std::string retag(kxMaterialAssetItem &item, const Arguments &arguments)
{
    const std::string name = item.name();
    const QUrl folder = item.parentDirectoryUrl();
    if (!item.loadMaterial())
        return "'" + name + "' cannot be loaded; 'kxassets verify' tells more";
    // What cannot be loaded of a composite is left out, and would be gone for good.
    if (kxMaterials::getSubMaterials(item.getMaterial()).size() != item.subMaterialUUIDs().size())
        return "'" + name + "' cannot be loaded as a whole; 'kxassets verify' tells more";
    edit(item.getMaterial(), arguments);
    // The item is replaced in the registry, and not to be used afterwards.
    if (item.save(folder))
        return {};
    return "'" + name + "' could not be saved in " + folder.toLocalFile().toStdString();
}

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
        if (const std::string reason = arguments.changes() ? retag(*item.value(), arguments) : ""; !reason.empty()) {
            failures.push_back(reason);
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
