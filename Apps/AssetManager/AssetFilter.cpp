// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetFilter.h"

#include <algorithm>

void AssetFilter::setText(const QString &text)
{
    _text = text;
    _words.clear();
    for (const QString &word : text.simplified().split(' ', Qt::SkipEmptyParts))
        _words.push_back(folded(word));
}

bool AssetFilter::accepts(const AssetEntry &entry) const
{
    if (category != Undefined && entry.category != category)
        return false;
    if ((special == Special::Favourites && !entry.isFavourite) || (special == Special::Recent && entry.recentRank == 0))
        return false;
    if (!folder.isEmpty() && !isIn(entry.folder, folder))
        return false;
    if (!std::all_of(tags.begin(), tags.end(), [&](const QString &tag) { return entry.tags.contains(tag); }))
        return false;
    return std::all_of(_words.begin(), _words.end(),
                       [&](const std::string &word) { return entry.searched.find(word) != std::string::npos; });
}

std::string AssetFilter::folded(const QString &text)
{
    return text.normalized(QString::NormalizationForm_KC).toCaseFolded().toStdString();
}

bool AssetFilter::isIn(const QString &path, const QString &folder)
{
    return path.startsWith(folder) &&
           (path.size() == folder.size() || folder.endsWith('/') || path.at(folder.size()) == '/');
}
