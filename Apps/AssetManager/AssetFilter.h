// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/AssetTags.h"
#include "Assets/kxAssetCategory.h"

#include <QString>

#include <string>
#include <vector>

/// What the list of assets knows of one of them, so that filtering and sorting touch no disk and no registry.
struct AssetEntry
{
    std::string uuid;
    kxAssetCategoryType category = Undefined;
    QString name;
    QString type;
    AssetTags tags;
    QString directory; ///< the asset's own
    QString folder;    ///< that which holds it
    qint64 modified = 0;
    std::string searched; ///< what is searched in besides the tags, folded
    bool isFavourite = false;
    int recentRank = 0; ///< the larger the later it was used; 0: not lately
};

/// Which assets are shown.
class AssetFilter
{
public:
    enum class Special { None, Favourites, Recent };

    /// Undefined: of any.
    kxAssetCategoryType category = Undefined;
    /// This folder and all below; empty: everywhere.
    QString folder;
    Special special = Special::None;
    /// All of them have to be there.
    AssetTags tags;

    /// Words that all have to occur in name, tags or type, in any order, parts of words included.
    void setText(const QString &text);
    const QString &text() const { return _text; }

    bool accepts(const AssetEntry &entry) const;
    /// Whether all that it accepts the other one accepts, too, as far as the texts tell: so it is while somebody types.
    bool isNarrowerThan(const AssetFilter &other) const;

    /// For searching: case, and which of its forms an accented letter is written in, do not count.
    static std::string folded(const QString &text);
    /// Whether \a path is the folder or lies below it.
    static bool isIn(const QString &path, const QString &folder);

private:
    /// A word, and for each tag whether it occurs in it: there are few tags, and many assets that have them.
    class Word
    {
    public:
        explicit Word(const std::string &text) : _text(text) {}

        bool occursIn(const AssetEntry &entry) const;
        const std::string &text() const { return _text; }

    private:
        std::string _text;
        mutable std::vector<bool> _isInTag; ///< by number, as far as it was asked for
    };

    QString _text;
    std::vector<Word> _words;
};
