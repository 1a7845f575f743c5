// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/SaveLeftovers.h"

#include "Assets/kxAssetCategory.h"

#include <QDir>

#include <algorithm>

namespace {

/// Another program's, which saved in the same moment.
bool isWhole(const QDir &directory)
{
    return !directory.entryList({QStringLiteral("*.xml")}, QDir::Files).isEmpty() &&
           !directory.entryList({QStringLiteral("*.osb")}, QDir::Files).isEmpty();
}

} // namespace

SaveLeftovers::SaveLeftovers(const QString &folder) : _folder(folder), _before(directories()) {}

QStringList SaveLeftovers::directories() const
{
    QStringList patterns;
    for (const kxAssetCategoryType category : kxAssetCategory::getAllCategories())
        if (const QString prefix = kxAssetCategory::getItemFolderName(category, {}); !prefix.isEmpty())
            patterns.append(prefix + '*');
    return QDir(_folder).entryList(patterns, QDir::Dirs | QDir::NoDotAndDotDot);
}

QStringList SaveLeftovers::newOnes() const
{
    QStringList names = directories();
    names.erase(
        std::remove_if(names.begin(), names.end(), [this](const QString &name) { return _before.contains(name); }),
        names.end());
    return names;
}

void SaveLeftovers::remove() const
{
    for (const QString &name : newOnes())
        if (QDir directory(QDir(_folder).filePath(name)); !isWhole(directory))
            directory.removeRecursively();
}

void SaveLeftovers::removeEmpty() const
{
    for (const QString &name : newOnes())
        QDir(_folder).rmdir(name);
}
