// SPDX-License-Identifier: Apache-2.0
#include "kxassets/Command.h"
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
    const auto opened = arguments.save.open(arguments.isUpdate, context);
    const osg::NodePtr node = opened ? opened->find(arguments.node) : osg::NodePtr();
    if (!node)
        return ExitCode::Failed;
    const kxNodeSaving saving = arguments.save.answers();
    return SaveOptions::report(
        arguments.isUpdate ? saving.update(node) : saving.save(node, arguments.save.name, opened->folder), context);
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
