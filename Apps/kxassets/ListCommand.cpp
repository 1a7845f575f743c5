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
#include <QRegExp>

#include <algorithm>
#include <memory>

namespace {

struct Arguments
{
    std::string category;
    std::string tag;
    std::string name;
    std::string sort = "name";
};

QString tagsOf(kxAssetItem &item)
{
    return item.data(kxAssetCategory::getTagsColumn(), Qt::DisplayRole).toString();
}

bool hasTag(kxAssetItem &item, const std::string &tag)
{
    return tagsOf(item).split(QStringLiteral(", ")).contains(QString::fromStdString(tag), Qt::CaseInsensitive);
}

/// A text without wildcards is looked for anywhere in the name.
bool hasName(kxAssetItem &item, const std::string &pattern)
{
    const QString name = QString::fromStdString(item.name());
    const QString text = QString::fromStdString(pattern);
    if (!text.contains(QRegExp(QStringLiteral("[*?]"))))
        return name.contains(text, Qt::CaseInsensitive);
    return QRegExp(text, Qt::CaseInsensitive, QRegExp::Wildcard).exactMatch(name);
}

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
    std::vector<kxAssetItem *> items = library->items(kxAssetCategory::getCategoryType(arguments.category));
    std::erase_if(items, [&arguments](kxAssetItem *item) {
        return (!arguments.tag.empty() && !hasTag(*item, arguments.tag)) ||
               (!arguments.name.empty() && !hasName(*item, arguments.name));
    });
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
                        library->relativePath(*item).toStdString(), tagsOf(*item).toStdString()});
    printTable(context, rows);
    return ExitCode::Done;
}

} // namespace

Run declareList(CLI::App &app, Options &options)
{
    const auto arguments = std::make_shared<Arguments>();
    declareLibrary(app, options);
    app.add_option("--category", arguments->category, "Only of this category")
        ->type_name("NAME")
        ->check(CLI::IsMember({"Materials", "Environments", "Geometries", "Sceneplates"}));
    app.add_option("--tag", arguments->tag, "Only with this tag, in whatever case")->type_name("TAG");
    app.add_option("--name", arguments->name, "Only with this in the name; * and ? stand for anything")
        ->type_name("TEXT");
    app.add_option("--sort", arguments->sort, "What comes first; date: the newest")
        ->type_name("KEY")
        ->check(CLI::IsMember({"name", "type", "date"}))
        ->capture_default_str();
    declareJson(app, options);
    app.footer("Example: kxassets list --library ~/Materials --tag metal --name 'brushed*' --sort date");
    return [arguments](Context &context) { return run(*arguments, context); };
}
