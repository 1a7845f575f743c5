// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "Assets/kxAssetItem.h"
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

std::string textOf(const QJsonValue &value)
{
    if (!value.isArray())
        return value.toVariant().toString().toStdString();
    std::string text;
    for (const QJsonValue &entry : value.toArray())
        text += (text.empty() ? "" : ", ") + textOf(entry);
    return text;
}

ExitCode run(const std::string &asset, Context &context)
{
    const auto library = openLibrary(context.options, true);
    kxAssetItem *item = library ? findAsset(*library, asset) : nullptr;
    if (!item)
        return ExitCode::Failed;
    const QJsonObject object = describe(*library, *item);
    if (context.options.isJson) {
        printJson(context, object);
        return ExitCode::Done;
    }
    std::vector<std::vector<std::string>> rows;
    for (const char *key :
         {"uuid", "name", "category", "type", "tags", "subMaterials", "choice", "modified", "path", "checksum"})
        if (object.contains(QLatin1String(key)))
            rows.push_back({std::string(key) + ":", textOf(object.value(QLatin1String(key)))});
    printTable(context, rows);
    return ExitCode::Done;
}

} // namespace

Run declareShow(CLI::App &app, Options &options)
{
    const auto asset = std::make_shared<std::string>();
    app.add_option("asset", *asset, "The asset")->type_name("ASSET")->required();
    declareLibrary(app, options);
    declareJson(app, options);
    app.footer("Example: kxassets show 'Brushed steel' --library ~/Materials");
    return [asset](Context &context) { return run(*asset, context); };
}
