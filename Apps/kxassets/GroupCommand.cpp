// SPDX-License-Identifier: Apache-2.0
#include "kxassets/Command.h"
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
    const auto opened = arguments.save.open(false, context);
    if (!opened)
        return ExitCode::Failed;
    std::vector<osg::NodePtr> nodes;
    for (const std::string &path : arguments.nodes) {
        nodes.push_back(opened->find(path));
        if (!nodes.back())
            return ExitCode::Failed;
    }
    return SaveOptions::report(arguments.save.answers().saveGroup(nodes, arguments.save.name, opened->folder), context);
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
