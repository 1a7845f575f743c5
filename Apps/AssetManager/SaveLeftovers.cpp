// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/SaveLeftovers.h"

#include "Assets/kxAssetCategory.h"

#include <QDir>

SaveLeftovers::SaveLeftovers(const QString &folder) : _folder(folder), _before(directories()) {}

QStringList SaveLeftovers::directories() const
{
    QStringList patterns;
    for (const kxAssetCategoryType category : kxAssetCategory::getAllCategories())
        if (const QString prefix = kxAssetCategory::getItemFolderName(category, {}); !prefix.isEmpty())
            patterns.append(prefix + '*');
    return QDir(_folder).entryList(patterns, QDir::Dirs | QDir::NoDotAndDotDot);
}

void SaveLeftovers::remove() const
{
    for (const QString &name : directories())
        if (!_before.contains(name))
            QDir(QDir(_folder).filePath(name)).removeRecursively();
}
