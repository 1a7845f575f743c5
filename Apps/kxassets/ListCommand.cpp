// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetLibrary.h"
#include "Assets/kxAssetItem.h"
#include "kxassets/AssetFilter.h"
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
    AssetFilter filter;
    std::string sort = "name";
};

void sortBy(std::vector<kxAssetItem *> &items, const std::string &key)
{
    if (key == "name")
        return; // as they come
    const int column = key == "date" ? kxAssetCategory::getLastModifiedColumn() : kxAssetCategory::getTypeColumn();
    std::stable_sort(items.begin(), items.end(), [column, &key](kxAssetItem *a, kxAssetItem *b) {
        if (key == "date")
            return a->sortData(column).toDateTime() > b->sortData(column).toDateTime();
        return a->sortData(column).toString() < b->sortData(column).toString();
    });
}

ExitCode run(const Arguments &arguments, Context &context)
{
    const auto library = openLibrary(context.options, true);
    if (!library)
        return ExitCode::Failed;
    std::vector<kxAssetItem *> items = arguments.filter.items(*library);
    sortBy(items, arguments.sort);

    if (context.options.isJson) {
        QJsonArray all;
        for (kxAssetItem *item : items)
            all.append(describe(*library, *item));
        printJson(context, all);
        return ExitCode::Done;
    }
    std::vector<std::vector<std::string>> rows{{"UUID", "NAME", "TYPE", "FOLDER", "TAGS"}};
    for (kxAssetItem *item : items)
        rows.push_back({item->uuid(), item->name(),
                        item->data(kxAssetCategory::getTypeColumn(), Qt::DisplayRole).toString().toStdString(),
                        library->relativePath(*item).toStdString(),
                        kxAssetLibrary::tagsOf(*item).join(QStringLiteral(", ")).toStdString()});
    printTable(context, rows);
    return ExitCode::Done;
}

} // namespace

Run declareList(CLI::App &app, Options &options)
{
    const auto arguments = std::make_shared<Arguments>();
    declareLibrary(app, options);
    arguments->filter.declare(app);
    app.add_option("--sort", arguments->sort, "What comes first; date: the newest")
        ->type_name("KEY")
        ->check(CLI::IsMember({"name", "type", "date"}))
        ->capture_default_str();
    declareJson(app, options);
    app.footer("Example: kxassets list --library ~/Materials --tag metal --name 'brushed*' --sort date");
    return [arguments](Context &context) { return run(*arguments, context); };
}
