// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxMaterialImport.h"

#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxEnvironmentMaterialAssetItem.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Assets/kxUrlManager.h"
#include "Import/kxForeignFormats.h"
#include "Import/kxSceneImporter.h"
#include "Kernel/kxMaterialTags.h"
#include "Kernel/kxMaterials.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/UEnvironmentMaterial.h"

#include <QFileInfo>

#include <algorithm>
#include <map>
#include <memory>

namespace {

/// Written with the material. The file's name without its path: assets must not say where things were.
constexpr const char *SourceKey = "ImportedFrom";

osg::Result<std::vector<osg::FCRef<osg::Material>>> readMaterials(const std::string &path)
{
    const kxSceneImporter importer;
    if (!kxForeignFormats::isImageFile(path) || kxForeignFormats::isSceneFile(path))
        return importer.importMaterials(path);
    const auto environment = importer.importEnvironment(path);
    if (!environment)
        return osg::Failure{environment.reason()};
    return std::vector<osg::FCRef<osg::Material>>{osg::FCRef<osg::Material>(environment.value().get())};
}

struct Named
{
    osg::MaterialPtr material;
    std::string source;
};

/// Leaves out what equals an earlier material of the same name: some files hold one copy for each mesh. Different ones of
/// one name are told apart by a number.
std::vector<Named> distinct(const std::vector<osg::FCRef<osg::Material>> &materials, const std::string &file)
{
    std::vector<Named> result;
    std::map<std::string, std::vector<osg::MaterialPtr>> seen;
    for (const osg::FCRef<osg::Material> &material : materials) {
        std::vector<osg::MaterialPtr> &namesakes = seen[kxMaterials::getName(material.get())];
        const bool isCopy = std::any_of(namesakes.begin(), namesakes.end(), [&material](const osg::MaterialPtr &other) {
            return !osg::findDifference(other, material.get());
        });
        if (isCopy)
            continue;
        const std::size_t number = namesakes.size();
        namesakes.push_back(material.get());
        result.push_back({material.get(), number == 0 ? file : file + '#' + std::to_string(number)});
    }
    return result;
}

std::unique_ptr<kxMaterialAssetItem> makeItemFor(const osg::MaterialPtr &material)
{
    if (osg::UEnvironmentMaterialPtr::dcast(material))
        return std::make_unique<kxEnvironmentMaterialAssetItem>();
    return std::make_unique<kxMaterialAssetItem>();
}

} // namespace

kxMaterialImport::Outcome kxMaterialImport::importFile(const QString &path, const QUrl &folder,
                                                       const std::function<bool()> &goOn) const
{
    Outcome outcome;
    const auto materials = readMaterials(path.toStdString());
    if (!materials) {
        outcome.failures.push_back(materials.reason());
        return outcome;
    }
    if (materials.value().empty())
        outcome.failures.push_back(path.toStdString() + ": holds no materials");
    const std::string source = QFileInfo(path).fileName().toStdString();
    for (const Named &named : distinct(materials.value(), source)) {
        if (!goOn())
            break;
        saveMaterial(named.material, named.source, folder, outcome);
    }
    return outcome;
}

void kxMaterialImport::saveMaterial(const osg::MaterialPtr &material, const std::string &source, const QUrl &folder,
                                    Outcome &outcome) const
{
    kxMaterials::addValuePair(material, SourceKey, source);
    for (const std::string &tag : _tags)
        kxMaterialTags::addTag(material, tag);

    const std::string name = kxMaterials::getName(material);
    const std::string known = knownUuid(name, source);
    QUrl target = folder;
    if (kxAssetItem *existing = known.empty() ? nullptr : kxAssetItemFactory::the().findItem(known))
        target = existing->parentDirectoryUrl();

    const std::unique_ptr<kxMaterialAssetItem> item = makeItemFor(material);
    item->initFrom(material, known, true);
    const std::string uuid = item->uuid();
    if (item->save(target))
        outcome.saved.push_back({uuid, name, !known.empty()});
    else
        outcome.failures.push_back(source + ": the material '" + name + "' could not be saved in " +
                                   target.toLocalFile().toStdString());
}

/// Only payloads of assets with this very name are looked into.
std::string kxMaterialImport::knownUuid(const std::string &name, const std::string &source) const
{
    for (kxAssetItem *item : _library.items()) {
        kxUrlManager *manager = kxUrlManager::getUrlManager(item->directoryUrl());
        if (!dynamic_cast<kxMaterialAssetItem *>(item) || item->name() != name || !manager)
            continue;
        for (const QUrl &file : manager->files(item->directoryUrl(),
                                               kxAssetCategory::getAcceptedFileTypes(item->category()), QDir::NoSort)) {
            osg::MaterialPtr loaded;
            if (!manager->loadMaterialFromFile(file, loaded))
                continue;
            const osg::FCRef<osg::Material> stored = osg::FCRef<osg::Material>::adopt(loaded);
            if (kxMaterials::hasValuePair(stored, SourceKey, source))
                return item->uuid();
        }
    }
    return {};
}
