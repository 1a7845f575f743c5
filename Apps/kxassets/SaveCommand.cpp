// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "AssetSession/kxNodePath.h"
#include "AssetSession/kxNodeSaving.h"
#include "AssetSession/kxSceneOpener.h"
#include "kxassets/Command.h"
#include "kxassets/LibraryAccess.h"
#include "kxassets/Reporting.h"
#include "kxassets/SaveOptions.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace {

struct Arguments
{
    SaveOptions save;
    std::string node;
    bool isUpdate = false;
};

ExitCode run(const Arguments &arguments, Context &context)
{
    const auto library = openLibrary(context.options, arguments.isUpdate);
    if (!library)
        return ExitCode::Failed;
    const osg::Result<QUrl> folder = library->folder(QString::fromStdString(arguments.save.folder));
    const auto scene = kxSceneOpener::open(QString::fromStdString(arguments.save.scene));
    if (!folder || !scene) {
        complain(!folder ? folder.reason() : scene.reason());
        return ExitCode::Failed;
    }
    const osg::Result<osg::NodePtr> node = kxNodePath::find(arguments.node, scene.value().allNodes());
    if (!node) {
        complain(node.reason());
        return ExitCode::Failed;
    }
    const kxNodeSaving saving = arguments.save.answers();
    return SaveOptions::report(arguments.isUpdate ? saving.update(node.value())
                                                  : saving.save(node.value(), arguments.save.name, folder.value()),
                               context);
}

} // namespace

Run declareSave(CLI::App &app, Options &options)
{
    const auto arguments = std::make_shared<Arguments>();
    arguments->save.declare(app, options);
    app.add_option("--node", arguments->node, "The part to save; 'kxassets tree' shows the paths")
        ->type_name("PATH")
        ->required();
    auto *name =
        app.add_option("--name", arguments->save.name, "The asset's name; without it the node's")->type_name("NAME");
    app.add_flag("--update", arguments->isUpdate,
                 "Replace the asset that the node came from, instead of making a new one")
        ->excludes(name);
    app.footer("Example: kxassets save room.osb --node 'Room/Chair#2' --library ~/Furniture");
    return [arguments](Context &context) { return run(*arguments, context); };
}
