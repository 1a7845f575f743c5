// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetFilter.h"

#include <algorithm>

void AssetFilter::setText(const QString &text)
{
    _text = text;
    _words.clear();
    for (const QString &word : text.simplified().split(' ', Qt::SkipEmptyParts))
        _words.emplace_back(folded(word));
}

bool AssetFilter::Word::occursIn(const AssetEntry &entry) const
{
    if (entry.searched.find(_text) != std::string::npos)
        return true;
    for (auto number = static_cast<int>(_isInTag.size()); number < AssetTags::numberCount(); ++number)
        _isInTag.push_back(folded(AssetTags::nameOf(number)).find(_text) != std::string::npos);
    const std::vector<int> &numbers = entry.tags.numbers();
    return std::any_of(numbers.begin(), numbers.end(),
                       [this](int number) { return _isInTag[static_cast<std::size_t>(number)]; });
}

bool AssetFilter::accepts(const AssetEntry &entry) const
{
    if (category != Undefined && entry.category != category)
        return false;
    if ((special == Special::Favourites && !entry.isFavourite) || (special == Special::Recent && entry.recentRank == 0))
        return false;
    if (!folder.isEmpty() && !isIn(entry.folder, folder))
        return false;
    if (!entry.tags.containsAll(tags))
        return false;
    return std::all_of(_words.begin(), _words.end(), [&](const Word &word) { return word.occursIn(entry); });
}

bool AssetFilter::isNarrowerThan(const AssetFilter &other) const
{
    if (category != other.category || folder != other.folder || special != other.special ||
        tags.numbers() != other.tags.numbers())
        return false;
    // Not the typed text: an accent that follows its letter makes another letter of it.
    return std::all_of(other._words.begin(), other._words.end(), [this](const Word &former) {
        return std::any_of(_words.begin(), _words.end(), [&former](const Word &word) {
            return word.text().find(former.text()) != std::string::npos;
        });
    });
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
