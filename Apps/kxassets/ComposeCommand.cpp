// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Kernel/kxMaterials.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/MultiPassMaterial.h"
#include "SceneGraph/SwitchMaterial.h"
#include "kxassets/Command.h"
#include "kxassets/CommonOptions.h"
#include "kxassets/LibraryAccess.h"
#include "kxassets/PreviewOptions.h"
#include "kxassets/Reporting.h"
#include "kxassets/ResultStream.h"

#include <CLI/CLI.hpp>
#include <QJsonObject>

#include <memory>

namespace {

struct Arguments
{
    bool isSwitch = false;
    bool isMultiPass = false;
    std::string name;
    std::vector<std::string> assets;
    int choice = 0;
    std::string folder;
    PreviewOptions preview;
};

osg::FCRef<osg::MultiMaterial> makeComposite(const Arguments &arguments, const std::vector<osg::MaterialPtr> &parts)
{
    osg::FCRef<osg::MultiMaterial> composite;
    if (arguments.isSwitch) {
        const osg::SwitchMaterialPtr chooser = osg::SwitchMaterial::create();
        composite = osg::FCRef<osg::MultiMaterial>(chooser);
        const osg::CPEditor edit(chooser, osg::SwitchMaterial::ChoiceFieldMask);
        chooser->setChoice(arguments.choice);
    } else {
        composite = osg::FCRef<osg::MultiMaterial>(osg::MultiPassMaterial::create());
    }
    const osg::CPEditor edit(composite.get(), osg::MultiMaterial::MaterialsFieldMask);
    for (const osg::MaterialPtr &part : parts)
        composite->addMaterial(part);
    return composite;
}

/// Empty with a complaint.
std::vector<osg::MaterialPtr> loadParts(const kxAssetLibrary &library, const std::vector<std::string> &assets)
{
    std::vector<std::string> uuids;
    for (const std::string &asset : assets) {
        kxMaterialAssetItem *item = findMaterialAsset(library, asset);
        if (!item)
            return {};
        uuids.push_back(item->uuid());
    }
    std::vector<osg::MaterialPtr> parts = kxMaterialAssetItem::getMaterialsFromUUIDs(uuids);
    for (std::size_t i = 0; i < parts.size(); ++i)
        if (!parts[i]) {
            complain("'" + assets[i] + "' cannot be loaded; 'kxassets verify' tells more");
            return {};
        }
    return parts;
}

ExitCode run(const Arguments &arguments, Context &context)
{
    if (arguments.isSwitch == arguments.isMultiPass) {
        complain("is it to be a --switch or --multipass?");
        return ExitCode::Usage;
    }
    if (arguments.isSwitch && static_cast<std::size_t>(arguments.choice) >= arguments.assets.size()) {
        complain("--choice counts from 0 and there are " + std::to_string(arguments.assets.size()) + " materials");
        return ExitCode::Usage;
    }
    const auto library = openLibrary(context.options, true);
    if (!library)
        return ExitCode::Failed;
    const std::optional<QUrl> folder = findFolder(*library, arguments.folder);
    if (!folder)
        return ExitCode::Failed;
    const std::vector<osg::MaterialPtr> parts = loadParts(*library, arguments.assets);
    if (parts.empty())
        return ExitCode::Failed;
    arguments.preview.apply();
    const osg::FCRef<osg::MultiMaterial> composite = makeComposite(arguments, parts);
    kxMaterials::setName(composite.get(), arguments.name, false);
    kxMaterialAssetItem item;
    item.initFrom(composite.get(), {}, true);
    const std::string uuid = item.uuid();
    if (!item.save(*folder)) {
        complain("'" + arguments.name + "' could not be saved in " + folder->toLocalFile().toStdString());
        return ExitCode::Failed;
    }
    kxAssetItem *saved = kxAssetItemFactory::the().findItem(uuid);
    if (context.options.isJson && saved)
        printJson(context, describe(*library, *saved));
    else
        context.results.line(uuid + "  composed  " + arguments.name);
    return ExitCode::Done;
}

} // namespace

Run declareCompose(CLI::App &app, Options &options)
{
    const auto arguments = std::make_shared<Arguments>();
    app.add_flag("--switch", arguments->isSwitch, "Looks like one of its materials");
    app.add_flag("--multipass", arguments->isMultiPass, "Its materials lie over each other, the first at the bottom");
    app.add_option("name", arguments->name, "The name of the new material")->type_name("NAME")->required();
    app.add_option("assets", arguments->assets, "The materials, in order")->type_name("ASSET")->required();
    app.add_option("--choice", arguments->choice, "Of a switch: the one that shows, counted from 0")
        ->type_name("N")
        ->check(CLI::Range(0, 65535).description(""))
        ->capture_default_str();
    app.add_option("--folder", arguments->folder, "Folder inside the library")->type_name("DIR");
    arguments->preview.declare(app);
    declareLibrary(app, options);
    declareJson(app, options);
    app.footer("It names its materials, and changes with them. Exactly one of --switch and --multipass is needed.\n\n"
               "Example: kxassets compose --switch 'Seat colours' 'Leather black' 'Leather tan' --library ~/Materials");
    return [arguments](Context &context) { return run(*arguments, context); };
}
