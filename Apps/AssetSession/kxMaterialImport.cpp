// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxMaterialImport.h"

#include "AssetSession/kxMaterialDescription.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxEnvironmentMaterialAssetItem.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Assets/kxUrlManager.h"
#include "Import/kxForeignFormats.h"
#include "Import/kxSceneImporter.h"
#include "Kernel/kxFile.h"
#include "Kernel/kxMaterialTags.h"
#include "Kernel/kxMaterials.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/MultiMaterial.h"
#include "SceneGraph/UEnvironmentMaterial.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <map>
#include <memory>

namespace {

constexpr const char *FileKey = "ImportedFrom";
constexpr const char *FolderKey = "ImportedFromFolder";
constexpr int DigestLength = 16;

std::string digestOfFolder(const QFileInfo &file)
{
    const QByteArray digest = QCryptographicHash::hash(file.canonicalPath().toUtf8(), QCryptographicHash::Sha256);
    return digest.toHex().left(DigestLength).toStdString();
}

void addTags(const osg::MaterialPtr &material, const std::vector<std::string> &tags)
{
    for (const std::string &tag : tags)
        kxMaterialTags::addTag(material, tag);
}

/// Null when it cannot be loaded.
osg::FCRef<osg::Material> loadStored(kxAssetItem &item)
{
    osg::MaterialPtr material;
    kxUrlManager *manager = kxUrlManager::getUrlManager(item.directoryUrl());
    if (!manager || !manager->loadMaterialFromDir(item.directoryUrl(), material))
        return {};
    return osg::FCRef<osg::Material>::adopt(material);
}

/// The assets that the material is made of; an empty list where one of them is no asset.
std::vector<std::string> uuidsOfParts(const osg::MaterialPtr &material)
{
    std::vector<std::string> uuids;
    for (const osg::MaterialPtr &part : kxMaterials::getSubMaterials(material)) {
        const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::getAssetAttachment(part);
        if (!attachment || attachment->getUuid().empty())
            return {};
        uuids.push_back(attachment->getUuid());
    }
    return uuids;
}

/// What people did to the stored asset and the file knows nothing of.
void carryOverTags(kxAssetItem &stored, const osg::MaterialPtr &material)
{
    for (const QString &tag : kxAssetLibrary::tagsOf(stored))
        kxMaterialTags::addTag(material, tag.toStdString());
}

using Described = kxMaterialDescription::Described;

osg::Result<std::vector<Described>> readMaterials(const std::string &path, const std::function<bool()> &goOn)
{
    if (kxMaterialDescription::isDescription(QString::fromStdString(path)))
        return kxMaterialDescription::read(QString::fromStdString(path));
    const kxSceneImporter importer({}, goOn);
    std::vector<Described> result;
    if (kxForeignFormats::isImageFile(path) && !kxForeignFormats::isSceneFile(path)) {
        const auto environment = importer.importEnvironment(path);
        if (!environment)
            return osg::Failure{environment.reason()};
        result.push_back({osg::FCRef<osg::Material>(environment.value().get()), {}});
        return result;
    }
    const auto materials = importer.importMaterials(path);
    if (!materials)
        return osg::Failure{materials.reason()};
    for (const osg::FCRef<osg::Material> &material : materials.value())
        result.push_back({material, {}});
    return result;
}

struct Named
{
    osg::MaterialPtr material;
    std::string file;   ///< with a number where a name occurs more than once
    std::string folder; ///< inside the one that is imported into
};

/// Leaves out what equals an earlier material of the same name: some files hold one copy for each mesh. Different ones of
/// one name are told apart by a number.
std::vector<Named> distinct(const std::vector<Described> &materials, const std::string &file)
{
    std::vector<Named> result;
    std::map<std::string, std::vector<osg::MaterialPtr>> seen;
    for (const auto &[material, folder] : materials) {
        std::vector<osg::MaterialPtr> &namesakes = seen[kxMaterials::getName(material.get())];
        const bool isCopy =
            std::any_of(namesakes.begin(), namesakes.end(), [&material = material](const osg::MaterialPtr &other) {
                return !osg::findDifference(other, material.get());
            });
        if (isCopy)
            continue;
        const std::size_t number = namesakes.size();
        namesakes.push_back(material.get());
        result.push_back({material.get(), number == 0 ? file : file + '#' + std::to_string(number), folder});
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
                                                       const std::function<bool()> &goOn)
{
    Outcome outcome;
    const auto materials = readMaterials(path.toStdString(), _whileReading);
    if (!materials) {
        outcome.failures.push_back(materials.reason());
        return outcome;
    }
    if (materials.value().empty())
        outcome.failures.push_back(path.toStdString() + ": holds no materials");
    const QFileInfo info(path);
    for (const Named &named : distinct(materials.value(), info.fileName().toStdString())) {
        if (!goOn())
            break;
        const QString target = QDir(folder.toLocalFile()).filePath(QString::fromStdString(named.folder));
        const osg::Result<QUrl> inside = _library.folder(target);
        if (inside) {
            saveMaterial(named.material, {named.file, digestOfFolder(info)}, inside.value(), outcome);
        } else {
            outcome.failures.push_back(path.toStdString() + ": " + inside.reason());
            outcome.unsaved.push_back({kxMaterials::getName(named.material), {}});
        }
    }
    return outcome;
}

void kxMaterialImport::saveMaterial(const osg::MaterialPtr &material, const Origin &origin, const QUrl &folder,
                                    Outcome &outcome)
{
    const bool isComposite = osg::MultiMaterialPtr::dcast(material) != nullptr;
    const std::string known = isComposite ? findKnownComposite(material) : findKnown(material, origin);
    const std::string name = kxMaterials::getName(material);
    std::string shownName = name;
    QUrl target = folder;
    if (kxAssetItem *stored = known.empty() ? nullptr : kxAssetItemFactory::the().findItem(known)) {
        target = stored->parentDirectoryUrl();
        shownName = stored->name();
        carryOverTags(*stored, material);
    }
    kxMaterials::addValuePair(material, FileKey, origin.file);
    kxMaterials::addValuePair(material, FolderKey, origin.folder);
    addTags(material, _tags);

    const std::unique_ptr<kxMaterialAssetItem> item = makeItemFor(material);
    item->initFrom(material, known, true);
    const std::string uuid = item->uuid();
    if (!item->save(target)) {
        outcome.failures.push_back(origin.file + ": the material '" + name + "' could not be saved in " +
                                   target.toLocalFile().toStdString());
        outcome.unsaved.push_back({name, target.toLocalFile()});
        return;
    }
    kxAssetItem *saved = kxAssetItemFactory::the().findItem(uuid);
    if (saved && shownName != name)
        saved->changeName(QString::fromStdString(shownName));
    if (known.empty())
        remember(uuid);
    outcome.saved.push_back({uuid, shownName, !known.empty()});
}

/// Composites are kept as metadata alone, which has no room for where they came from: they are what they are made of.
std::string kxMaterialImport::findKnownComposite(const osg::MaterialPtr &material)
{
    const std::vector<std::string> parts = uuidsOfParts(material);
    for (kxAssetItem *item : _library.items(Material)) {
        const auto *stored = dynamic_cast<kxMaterialAssetItem *>(item);
        if (stored && !parts.empty() && stored->materialType() == &material->getType() &&
            stored->subMaterialUUIDs() == parts)
            return item->uuid();
    }
    return {};
}

/// Payloads are read only of assets that were saved under this very name.
std::string kxMaterialImport::findKnown(const osg::MaterialPtr &material, const Origin &origin)
{
    if (!_isIndexed)
        for (kxAssetItem *item : _library.items())
            remember(item->uuid());
    _isIndexed = true;

    const std::string payload = kxFile::makeValidFileName(kxMaterials::getName(material));
    const auto [begin, end] = _uuidsOfPayloads.equal_range(payload);
    for (auto candidate = begin; candidate != end; ++candidate) {
        kxAssetItem *item = kxAssetItemFactory::the().findItem(candidate->second);
        const osg::FCRef<osg::Material> stored = item ? loadStored(*item) : osg::FCRef<osg::Material>();
        if (stored && kxMaterials::hasValuePair(stored.get(), FileKey, origin.file) &&
            kxMaterials::hasValuePair(stored.get(), FolderKey, origin.folder))
            return candidate->second;
    }
    return {};
}

void kxMaterialImport::remember(const std::string &uuid)
{
    auto *item = dynamic_cast<kxMaterialAssetItem *>(kxAssetItemFactory::the().findItem(uuid));
    kxUrlManager *manager = item ? kxUrlManager::getUrlManager(item->directoryUrl()) : nullptr;
    if (!manager)
        return;
    for (const QUrl &file :
         manager->files(item->directoryUrl(), kxAssetCategory::getAcceptedFileTypes(item->category()), QDir::NoSort))
        _uuidsOfPayloads.emplace(QFileInfo(file.toLocalFile()).completeBaseName().toStdString(), uuid);
}
