// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxAssetsExport.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <map>
#include <set>
#include <string>

/// The kinds of assets. Exchanged with the host as integers; what is written to disk are the internal names.
enum kxAssetCategoryType : int { Undefined = 0, Material = 1, Environment = 2, Geometry = 3, Sceneplate = 4 };

/// One category, and the only table of what belongs to each: names, columns, folder and tag prefixes.
///
/// An integer outside 1 to 4 is treated like Undefined everywhere. The maps behind the names are built on the main thread
/// by the first constructor or look-up, and only read afterwards.
class KX_ASSETS_EXPORT kxAssetCategory
{
    Q_DECLARE_TR_FUNCTIONS(kxAssetCategory)

public:
    /// The word in metadata files; empty for Undefined.
    static std::string getInternalCategoryName(kxAssetCategoryType category);
    /// Case counts; Undefined for an unknown name.
    static kxAssetCategoryType getCategoryType(const std::string &name);
    static bool isValid(const std::string &name);
    static std::set<kxAssetCategoryType> getAllCategories();

    /// As translated when the maps were built; null for Undefined.
    static QString getUICategoryName(kxAssetCategoryType category);
    /// Name patterns of payload files; the same for every category, Undefined included.
    static QStringList getAcceptedFileTypes(kxAssetCategoryType category);

    static int getColumnCount(kxAssetCategoryType category);
    /// The widest category's column count, or 0 as long as nothing built the maps: construct a category first.
    static int getMaxColumnCount();
    /// The translated header of a browser column; invalid for roles other than display and columns that do not exist.
    static QVariant getHeaderData(kxAssetCategoryType category, int section, int role);

    /// What the directory of an asset called \a name is called before it is made unique. The name is taken as it is.
    static QString getItemFolderName(kxAssetCategoryType category, const QString &name);
    /// What begins the tag that a loaded asset puts on its materials; ends in a blank. Empty for materials.
    static std::string getTagPrefix(kxAssetCategoryType category);

    /// Columns are numbered alike in all categories; getColumnCount() decides which exist.
    static int getNameColumn(kxAssetCategoryType category = Undefined);
    static int getTypeColumn(kxAssetCategoryType category = Undefined);
    static int getLastModifiedColumn(kxAssetCategoryType category = Undefined);
    static int getStorageLocationColumn(kxAssetCategoryType category = Undefined);
    static int getTagsColumn(kxAssetCategoryType category = Undefined);

    kxAssetCategory();
    explicit kxAssetCategory(kxAssetCategoryType category);

    kxAssetCategoryType getCategoryType() const { return _category; }
    std::string getInternalCategoryName() const;
    QStringList getAcceptedFileTypes() const;
    int getColumnCount() const;
    QVariant getHeaderData(int section, int role) const;
    /// Width by height of a preview icon.
    float getDefaultIconAspectRatio() const;

private:
    static void setupAssetCategoriesMaps();

    static std::map<kxAssetCategoryType, std::string> s_assetCategories;
    static std::map<std::string, kxAssetCategoryType> s_assetCategoriesRev;
    static std::map<std::string, QString> s_assetCategoriesUI;

    kxAssetCategoryType _category = Undefined;
};
