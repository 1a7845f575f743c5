// SPDX-License-Identifier: Apache-2.0
#include "kxassets/AssetFilter.h"

#include "AssetSession/kxAssetLibrary.h"
#include "Assets/kxAssetItem.h"

#include <CLI/CLI.hpp>
#include <QDir>
#include <QRegExp>

namespace {

bool hasTag(kxAssetItem &item, const std::string &tag)
{
    return kxAssetLibrary::tagsOf(item).contains(QString::fromStdString(tag), Qt::CaseInsensitive);
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

/// In the folder or below it.
bool isIn(const kxAssetLibrary &library, kxAssetItem &item, const std::string &folder)
{
    const QString path = QDir::cleanPath(QString::fromStdString(folder)) + QLatin1Char('/');
    return library.relativePath(item).startsWith(path);
}

} // namespace

void AssetFilter::declare(CLI::App &app)
{
    app.add_option("--category", _category, "Only of this category")
        ->type_name("NAME")
        ->check(CLI::IsMember({"Materials", "Environments", "Geometries", "Sceneplates"}));
    app.add_option("--folder", _folder, "Only in this folder of the library and below")->type_name("DIR");
    app.add_option("--tag", _tag, "Only with this tag, in whatever case")->type_name("TAG");
    app.add_option("--name", _name, "Only with this in the name; * and ? stand for anything")->type_name("TEXT");
}

std::vector<kxAssetItem *> AssetFilter::items(const kxAssetLibrary &library) const
{
    std::vector<kxAssetItem *> items = library.items(kxAssetCategory::getCategoryType(_category));
    std::erase_if(items, [&](kxAssetItem *item) {
        return (!_folder.empty() && !isIn(library, *item, _folder)) || (!_tag.empty() && !hasTag(*item, _tag)) ||
               (!_name.empty() && !hasName(*item, _name));
    });
    return items;
}
