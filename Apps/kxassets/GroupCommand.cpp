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
    std::vector<std::string> nodes;
};

ExitCode run(const Arguments &arguments, Context &context)
{
    const auto library = openLibrary(context.options, false);
    if (!library)
        return ExitCode::Failed;
    const osg::Result<QUrl> folder = library->folder(QString::fromStdString(arguments.save.folder));
    const auto scene = kxSceneOpener::open(QString::fromStdString(arguments.save.scene));
    if (!folder || !scene) {
        complain(!folder ? folder.reason() : scene.reason());
        return ExitCode::Failed;
    }
    std::vector<osg::NodePtr> nodes;
    for (const std::string &path : arguments.nodes) {
        const osg::Result<osg::NodePtr> node = kxNodePath::find(path, scene.value().allNodes());
        if (!node) {
            complain(node.reason());
            return ExitCode::Failed;
        }
        nodes.push_back(node.value());
    }
    return SaveOptions::report(arguments.save.answers().saveGroup(nodes, arguments.save.name, folder.value()), context);
}

} // namespace

Run declareGroup(CLI::App &app, Options &options)
{
    const auto arguments = std::make_shared<Arguments>();
    arguments->save.declare(app, options);
    app.add_option("--node", arguments->nodes, "A part to save; may be repeated. 'kxassets tree' shows the paths")
        ->type_name("PATH")
        ->required()
        ->allow_extra_args(false)
        ->take_all();
    app.add_option("--name", arguments->save.name, "The asset's name")->type_name("NAME")->required();
    app.footer("The parts keep their places to each other.\n\n"
               "Example: kxassets group room.osb --node Room/Table --node Room/Chair --name 'Dining set' --library "
               "~/Furniture");
    return [arguments](Context &context) { return run(*arguments, context); };
}
