// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetCategory.h"

#include <algorithm>

std::map<kxAssetCategoryType, std::string> kxAssetCategory::s_assetCategories;
std::map<std::string, kxAssetCategoryType> kxAssetCategory::s_assetCategoriesRev;
std::map<std::string, QString> kxAssetCategory::s_assetCategoriesUI;

void kxAssetCategory::setupAssetCategoriesMaps()
{
    if (!s_assetCategories.empty())
        return;

    s_assetCategories = {
        {Material, "Materials"}, {Environment, "Environments"}, {Geometry, "Geometries"}, {Sceneplate, "Sceneplates"}};
    for (const auto &[category, name] : s_assetCategories)
        s_assetCategoriesRev.emplace(name, category);
    s_assetCategoriesUI = {{"Materials", tr("Materials")},
                           {"Environments", tr("Environments")},
                           {"Geometries", tr("Geometries")},
                           {"Sceneplates", tr("Sceneplates")}};
}

std::string kxAssetCategory::getInternalCategoryName(kxAssetCategoryType category)
{
    setupAssetCategoriesMaps();
    const auto found = s_assetCategories.find(category);
    return found != s_assetCategories.end() ? found->second : std::string();
}

kxAssetCategoryType kxAssetCategory::getCategoryType(const std::string &name)
{
    setupAssetCategoriesMaps();
    const auto found = s_assetCategoriesRev.find(name);
    return found != s_assetCategoriesRev.end() ? found->second : Undefined;
}

bool kxAssetCategory::isValid(const std::string &name)
{
    return getCategoryType(name) != Undefined;
}

std::set<kxAssetCategoryType> kxAssetCategory::getAllCategories()
{
    setupAssetCategoriesMaps();
    std::set<kxAssetCategoryType> categories;
    for (const auto &entry : s_assetCategories)
        categories.insert(entry.first);
    return categories;
}

QString kxAssetCategory::getUICategoryName(kxAssetCategoryType category)
{
    setupAssetCategoriesMaps();
    const auto found = s_assetCategoriesUI.find(getInternalCategoryName(category));
    return found != s_assetCategoriesUI.end() ? found->second : QString();
}

QStringList kxAssetCategory::getAcceptedFileTypes(kxAssetCategoryType)
{
    return {QStringLiteral("*.osb")};
}

int kxAssetCategory::getColumnCount(kxAssetCategoryType category)
{
    switch (category) {
    case Material:
        return 5;
    case Environment:
    case Geometry:
    case Sceneplate:
        return 4;
    case Undefined:
        break;
    }
    return 0;
}

int kxAssetCategory::getMaxColumnCount()
{
    // Callers rely on 0 before any category was used, so the maps are not built here.
    int widest = 0;
    for (const auto &entry : s_assetCategories)
        widest = std::max(widest, getColumnCount(entry.first));
    return widest;
}

namespace {

QString singularName(kxAssetCategoryType category)
{
    switch (category) {
    case Material:
        return kxAssetCategory::tr("Material");
    case Environment:
        return kxAssetCategory::tr("Environment");
    case Geometry:
        return kxAssetCategory::tr("Geometry");
    case Sceneplate:
        return kxAssetCategory::tr("Sceneplate");
    case Undefined:
        break;
    }
    return {};
}

} // namespace

QVariant kxAssetCategory::getHeaderData(kxAssetCategoryType category, int section, int role)
{
    if (role != Qt::DisplayRole || section < 0 || section >= getColumnCount(category))
        return {};

    switch (section) {
    case 0:
        return singularName(category);
    case 1:
        return tr("Type");
    case 2:
        return tr("Modified on");
    case 3:
        return tr("Storage Location");
    default:
        return tr("Tags");
    }
}

QString kxAssetCategory::getItemFolderName(kxAssetCategoryType category, const QString &name)
{
    switch (category) {
    case Material:
        return QStringLiteral("MAT_") + name;
    case Environment:
        return QStringLiteral("ENV_") + name;
    case Geometry:
        return QStringLiteral("GEO_") + name;
    case Sceneplate:
        return QStringLiteral("SCP_") + name;
    case Undefined:
        break;
    }
    return QStringLiteral("UNKNOWN_") + name;
}

std::string kxAssetCategory::getTagPrefix(kxAssetCategoryType category)
{
    switch (category) {
    case Environment:
        return "Environment Asset: ";
    case Geometry:
        return "Geometry Asset: ";
    case Sceneplate:
        return "Sceneplate Asset: ";
    case Material:
    case Undefined:
        break;
    }
    return {};
}

int kxAssetCategory::getNameColumn(kxAssetCategoryType)
{
    return 0;
}

int kxAssetCategory::getTypeColumn(kxAssetCategoryType)
{
    return 1;
}

int kxAssetCategory::getLastModifiedColumn(kxAssetCategoryType)
{
    return 2;
}

int kxAssetCategory::getStorageLocationColumn(kxAssetCategoryType)
{
    return 3;
}

int kxAssetCategory::getTagsColumn(kxAssetCategoryType)
{
    return 4;
}

kxAssetCategory::kxAssetCategory() : kxAssetCategory(Undefined) {}

kxAssetCategory::kxAssetCategory(kxAssetCategoryType category) : _category(category)
{
    setupAssetCategoriesMaps();
}

std::string kxAssetCategory::getInternalCategoryName() const
{
    return getInternalCategoryName(_category);
}

QStringList kxAssetCategory::getAcceptedFileTypes() const
{
    return getAcceptedFileTypes(_category);
}

int kxAssetCategory::getColumnCount() const
{
    return getColumnCount(_category);
}

QVariant kxAssetCategory::getHeaderData(int section, int role) const
{
    return getHeaderData(_category, section, role);
}

float kxAssetCategory::getDefaultIconAspectRatio() const
{
    switch (_category) {
    case Environment:
        return 2.0F;
    case Geometry:
    case Sceneplate:
        return 1.3333F;
    case Material:
    case Undefined:
        break;
    }
    return 1.0F;
}
