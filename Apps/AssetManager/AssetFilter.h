// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxAssetCategory.h"

#include <QString>
#include <QStringList>

#include <string>
#include <vector>

/// What the list of assets knows of one of them, so that filtering and sorting touch no disk and no registry.
struct AssetEntry
{
    std::string uuid;
    kxAssetCategoryType category = Undefined;
    QString name;
    QString type;
    QStringList tags;
    QString directory; ///< the asset's own
    QString folder;    ///< that which holds it
    qint64 modified = 0;
    std::string searched; ///< what is searched in, folded
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
    QStringList tags;

    /// Words that all have to occur in name, tags or type, in any order, parts of words included.
    void setText(const QString &text);
    const QString &text() const { return _text; }

    bool accepts(const AssetEntry &entry) const;

    /// For searching: case, and which of its forms an accented letter is written in, do not count.
    static std::string folded(const QString &text);
    /// Whether \a path is the folder or lies below it.
    static bool isIn(const QString &path, const QString &folder);

private:
    QString _text;
    std::vector<std::string> _words;
};
