// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "Assets/kxAssetItem.h"
#include "kxassets/Command.h"
#include "kxassets/CommonOptions.h"
#include "kxassets/LibraryAccess.h"
#include "kxassets/Reporting.h"
#include "kxassets/ResultStream.h"

#include <CLI/CLI.hpp>
#include <QJsonObject>

#include <memory>

namespace {

struct Arguments
{
    std::string asset;
    std::string name;
};

ExitCode run(const Arguments &arguments, Context &context)
{
    const auto library = openLibrary(context.options, true);
    kxAssetItem *item = library ? findAsset(*library, arguments.asset) : nullptr;
    if (!item)
        return ExitCode::Failed;
    if (arguments.name.empty()) {
        complain("an asset needs a name");
        return ExitCode::Usage;
    }
    if (!item->changeName(QString::fromStdString(arguments.name))) {
        complain("'" + arguments.asset + "' could not be renamed");
        return ExitCode::Failed;
    }
    if (context.options.isJson)
        printJson(context, describe(*library, *item));
    else
        context.results.line(item->uuid() + "  renamed to " + item->name());
    return ExitCode::Done;
}

} // namespace

Run declareRename(CLI::App &app, Options &options)
{
    const auto arguments = std::make_shared<Arguments>();
    app.add_option("asset", arguments->asset, "The asset")->type_name("ASSET")->required();
    app.add_option("name", arguments->name, "Its new name")->type_name("NAME")->required();
    declareLibrary(app, options);
    declareJson(app, options);
    app.footer("The asset's folder keeps its name.\n\n"
               "Example: kxassets rename 3f2a 'Brushed steel, fine' --library ~/Materials");
    return [arguments](Context &context) { return run(*arguments, context); };
}
