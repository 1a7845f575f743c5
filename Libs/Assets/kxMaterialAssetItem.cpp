// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxMaterialAssetItem.h"

#include "Assets/Internal/LoadingChain.h"
#include "Assets/Internal/MaterialChecksum.h"
#include "Assets/Internal/MaterialDocument.h"
#include "Assets/Internal/MaterialLoader.h"
#include "Assets/Internal/StandardOutput.h"
#include "Assets/kxAssetItemDocument.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxUrlManager.h"
#include "Kernel/kxController.h"
#include "Kernel/kxLog.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxMessage.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxTextureManager.h"
#include "Rendering/kxImageRenderWidget.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/ImageAttachment.h"
#include "SceneGraph/MultiPassMaterial.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/TagAttachment.h"
#include "SceneGraph/UEnvironmentMaterial.h"

#include <QPainter>
#include <QPixmap>

#include <algorithm>
#include <utility>

using namespace kxAssetsInternal;

std::map<std::string, osg::MaterialPtr> kxMaterialAssetItem::s_tempLoadingCache;

namespace {

using TypeNames = std::map<std::string, QString>;

bool isSpecialTag(const std::string &tag)
{
    return std::ranges::any_of(
        std::initializer_list<kxAssetCategoryType>{Geometry, Environment, Sceneplate},
        [&tag](kxAssetCategoryType category) { return tag.starts_with(kxAssetCategory::getTagPrefix(category)); });
}

/// Shrinks an icon that would cover more than three quarters of the picture's height.
QPixmap fitted(const QPixmap &icon, const QPixmap &picture)
{
    const int width = static_cast<int>(0.75 * picture.width());
    const int height = static_cast<int>(0.75 * picture.height());
    return icon.height() > height ? icon.scaled(width, height, Qt::KeepAspectRatio, Qt::FastTransformation) : icon;
}

} // namespace

QString kxMaterialAssetItem::UIMaterialTypeName(const std::string &typeName)
{
    static TypeNames names;
    if (names.empty()) {
        kxMessage message;
        kxController::call("getUIMaterialNames", message);
        message.get("names", names);
    }
    const auto found = names.find(typeName);
    return found != names.end() ? found->second : QString::fromStdString(typeName);
}

bool kxMaterialAssetItem::isSupportedMaterialType(osg::FieldContainerType *type)
{
    return type != nullptr;
}

bool kxMaterialAssetItem::isSupportedMaterial(const osg::MaterialPtr &material)
{
    return material && isSupportedMaterialType(&material->getType());
}

bool kxMaterialAssetItem::isSaveAllowed(const osg::MaterialPtr &material)
{
    if (isSupportedMaterial(material))
        return true;
    const std::string typeName = material ? material->getType().getCName() : "";
    kxLog::error("[Asset Manager] Save is not supported for material type %s.",
                 UIMaterialTypeName(typeName).toUtf8().constData());
    return false;
}

void kxMaterialAssetItem::removeSpecialAssetTagsFrom(const osg::MaterialPtr &material)
{
    const auto attachment = osg::findAttachment<osg::TagAttachment>(material);
    if (!attachment)
        return;
    osg::CPEditor edit(attachment, osg::TagAttachment::MaterialsFieldMask);
    if (std::ranges::any_of(attachment->getMaterials(), isSpecialTag))
        std::erase_if(attachment->editMaterials().values(), isSpecialTag);
}

bool kxMaterialAssetItem::findMaterialAndCompareChecksum(const kxAssetItem *item, osg::MaterialPtr &material)
{
    // The getter is not const, but changes nothing.
    material = kxMaterials::findAssetMaterial(const_cast<kxAssetItem *>(item)->uuid());
    return material && item->hasSameChecksum(material);
}

osg::MaterialPtr kxMaterialAssetItem::getMaterialFromUUID(const std::string &uuid)
{
    return getMaterialFromUUID(uuid, true);
}

osg::MaterialPtr kxMaterialAssetItem::getMaterialFromUUID(const std::string &uuid, bool clearCache)
{
    const auto findItem = [&uuid] { return kxAssetItemFactory::the().findItem(uuid); };
    kxAssetItem *item = findItem();
    if (!item) {
        printLine("[getMaterialFromUUID] did not find item with uuid '" + uuid + "'");
        return nullptr;
    }
    if (LoadingChain::isCyclic(uuid))
        return nullptr;
    osg::MaterialPtr material;
    if (findMaterialAndCompareChecksum(item, material))
        return material;

    auto *materialItem = dynamic_cast<kxMaterialAssetItem *>(item);
    if (!materialItem || !materialItem->materialType() || !materialItem->loadMaterial(clearCache))
        return nullptr;
    // A host that shows progress while it loads may have let somebody delete the item.
    materialItem = dynamic_cast<kxMaterialAssetItem *>(findItem());
    return materialItem ? materialItem->getMaterial() : nullptr;
}

std::vector<osg::MaterialPtr> kxMaterialAssetItem::getMaterialsFromUUIDs(const std::vector<std::string> &uuids)
{
    return getMaterialsFromUUIDs(uuids, true);
}

std::vector<osg::MaterialPtr> kxMaterialAssetItem::getMaterialsFromUUIDs(const std::vector<std::string> &uuids,
                                                                         bool clearCache)
{
    if (clearCache)
        s_tempLoadingCache.clear();
    std::vector<osg::MaterialPtr> materials;
    materials.reserve(uuids.size());
    for (const std::string &uuid : uuids)
        materials.push_back(getMaterialFromUUID(uuid, false));
    // Loading a later one may have let somebody delete the item that held an earlier one.
    const auto isGone = [](const osg::MaterialPtr &material) {
        return !osg::FieldContainerFactory::the().isAlive(material.getFieldContainerId());
    };
    std::ranges::replace_if(materials, isGone, osg::MaterialPtr());
    return materials;
}

bool kxMaterialAssetItem::createMaterialFromDoc(const kxAssetItemDocument &document, osg::MaterialPtr &material)
{
    if (!document.hasValidAssetMetaData())
        return false;
    osg::FCRef<osg::Material> composite = makeComposite(document);
    if (!composite)
        return false;

    // Within the load that asked for it, so that a part that several composites share is loaded once.
    assemble(composite, getMaterialsFromUUIDs(document.getSubMaterialUUIDs(), false),
             document.getSwitchMaterialChoice());
    identify(composite, document);
    material = composite.take();
    return true;
}

kxMaterialAssetItem::kxMaterialAssetItem()
{
    setCategory(Material);
}

kxMaterialAssetItem::~kxMaterialAssetItem()
{
    if (const osg::MaterialPtr material = getMaterial())
        printLine("[~kxMaterialAssetItem] mat ref count = " + std::to_string(material->getRefCount()));
    releaseMaterial();
}

bool kxMaterialAssetItem::save(const QUrl &url)
{
    kxUrlManager *manager = kxUrlManager::getUrlManager(url);
    if (!manager)
        return false;
    const osg::FCRef<osg::Material> material(getMaterial());
    if (!material || !isSaveAllowed(material))
        return false;

    const std::string id = uuid();
    const bool wasRegistered = kxAssetItemFactory::the().findItem(id) != nullptr;
    if (!manager->saveMaterialAsset(url, this))
        return false;

    // Removing the registered item deletes it, and it may be this one: what follows uses nothing of it unless it lives.
    const std::weak_ptr<const void> alive = life();
    const QUrl directory = directoryUrl();
    const kxAssetCategoryType itsCategory = category();
    kxAssetItem *registered = kxAssetItemFactory::the().findItem(id);
    if (wasRegistered && registered && !manager->removeOldItemDirectory(registered, this))
        return false;
    manager->collectItems(directory, itsCategory, nullptr);
    if (alive.expired())
        writeAssetAttachment(material, id, itsCategory, directory, materialChecksum(directory, itsCategory));
    else
        updateAssetAttachment(material);
    markOtherAssetOccurrencesAsOutdated(material, id);
    return true;
}

void kxMaterialAssetItem::markOtherAssetOccurrencesAsOutdated(const osg::MaterialPtr &saved, const std::string &uuid)
{
    for (const osg::MaterialPtr &material : kxMaterials::getAllAssetMaterials()) {
        const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::getAssetAttachment(material);
        if (material == saved || !attachment || attachment->getUuid() != uuid || attachment->getUserEdited())
            continue;
        osg::CPEditor edit(attachment, osg::AssetAttachment::UserEditedFieldMask);
        attachment->setUserEdited(true);
    }
}

bool kxMaterialAssetItem::readMetaData(const kxAssetItemDocument &document)
{
    if (!kxAssetItem::readMetaData(document))
        return false;
    _materialType = document.getMaterialType();
    _tags = document.getMaterialTags();
    _environmentName = document.getMaterialBRDFEnvironmentName();
    _subMaterialUUIDs = document.getSubMaterialUUIDs();
    _switchChoice = document.getSwitchMaterialChoice();
    _photometricState = static_cast<kxAssetPhotometricState>(document.hasPhotometricProperties());
    return true;
}

bool kxMaterialAssetItem::writeMetaData(kxAssetItemDocument &document) const
{
    if (!kxAssetItem::writeMetaData(document))
        return false;
    const osg::MaterialPtr material = getMaterial();
    if (!material || !describeMaterial(document, material))
        return false;
    if (_photometricState != Unknown)
        document.setHasPhotometricProperties(_photometricState == Photometric);
    return true;
}

std::string kxMaterialAssetItem::name()
{
    return kxAssetItem::name();
}

void kxMaterialAssetItem::addOverlayIcon(QPixmap &pixmap) const
{
    if (!_materialType || pixmap.isNull() ||
        !(_materialType->isDerivedFrom(osg::MultiPassMaterial::getClassType()) ||
          _materialType->isDerivedFrom(osg::SwitchMaterial::getClassType())))
        return;
    const QPixmap icon = fitted(kxScenegraph::getMaterialTypeIcon(_materialType, 0), pixmap);
    QPainter(&pixmap).drawPixmap(0, pixmap.height() - icon.height() - 1, icon);
}

std::uint32_t kxMaterialAssetItem::checksum() const
{
    return materialChecksum(self().directoryUrl(), self().category());
}

void kxMaterialAssetItem::initFrom(osg::AttachmentContainerPtr container, const std::string &uuid, bool useAttachment)
{
    // Owned before the reset, which may release the last reference on this very material.
    const osg::FCRef<osg::Material> material(osg::dcast<osg::MaterialPtr>(container));
    reset();
    if (!material)
        return;
    bindMaterial(material);
    setName(kxMaterials::getName(material));

    kxMessage message;
    message.set("materials", std::vector<osg::MaterialPtr>{material});
    message.set("showProgress", false);
    kxController::call("renderPreviewImages", message);

    initUUID(container, uuid, useAttachment);
    setTagsFrom(material);
    setSubMaterialsFrom(material);
    setChoiceFrom(material);
    if (osg::dcast<osg::UEnvironmentMaterialPtr>(container))
        setCategory(Environment);
    setPhotometricStateFrom(material);
}

QVariant kxMaterialAssetItem::data(int column, int role)
{
    // Not even a column of the base has a value for editing here.
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    if (column == kxAssetCategory::getTypeColumn())
        return UIMaterialTypeName(materialTypeName());
    if (column == kxAssetCategory::getTagsColumn(category()))
        return _tags.join(QStringLiteral(", "));
    return kxAssetItem::data(column, role);
}

QString kxMaterialAssetItem::mimeType()
{
    return QStringLiteral("application/sarn-material-asset");
}

bool kxMaterialAssetItem::loadPreviewImage(bool asynchronous)
{
    if (!previewImage().isNull())
        return true;
    if (const osg::ImagePtr image = getOsgImage())
        setPreviewImage(kxImageRenderWidget::convertToQImage(image));
    return kxAssetItem::loadPreviewImage(asynchronous);
}

bool kxMaterialAssetItem::loadMaterial()
{
    return loadMaterial(true);
}

bool kxMaterialAssetItem::loadMaterial(bool clearCache)
{
    const QUrl directory = directoryUrl();
    if (!directory.isValid())
        return false;
    const std::string id = uuid();
    if (clearCache)
        s_tempLoadingCache.clear();
    else if (isInLoadingCache(id))
        return true;
    kxUrlManager *manager = kxUrlManager::getUrlManager(directory);
    if (!manager || LoadingChain::isCyclic(id) || LoadingChain::isTooDeep(id))
        return false;

    const LoadingChain underWay(id);
    const auto isRegistered = [this, &id] { return kxAssetItemFactory::the().findItem(id) == this; };
    const bool wasRegistered = isRegistered();
    const auto material = loadStoredMaterial(*manager, directory, hasCategory(Environment));
    // A host that shows progress while it loads may have let somebody delete this item.
    if ((wasRegistered && !isRegistered()) || !isSupportedMaterial(material))
        return false;
    takeOver(material);
    s_tempLoadingCache.insert_or_assign(id, material);
    return true;
}

bool kxMaterialAssetItem::isInLoadingCache(const std::string &uuid) const
{
    const auto found = s_tempLoadingCache.find(uuid);
    return found != s_tempLoadingCache.end() && found->second && found->second == getMaterial();
}

void kxMaterialAssetItem::takeOver(const osg::FCRef<osg::Material> &material)
{
    kxTextureManager::shareImagesRecursive(material);
    releaseMaterial();
    bindMaterial(material);

    _subMaterialUUIDs.clear();
    _switchChoice = -1;
    _tags.clear();
    setSubMaterialsFrom(material);
    setChoiceFrom(material);
    setTagsFrom(material);
    removeSpecialAssetTagsFrom(material);

    updateAssetAttachment(material);
    setBRDFEnvironment(material);
    adjustPhotometricParameters(material);
}

osg::MaterialPtr kxMaterialAssetItem::getMaterial() const
{
    return osg::dcast<osg::MaterialPtr>(osg::FieldContainerFactory::the().getContainer(_materialId));
}

void kxMaterialAssetItem::bindMaterial(osg::FCRef<osg::Material> material)
{
    _materialId = material.get().getFieldContainerId();
    _materialType = &material->getType();
    _reference = std::move(material);
}

void kxMaterialAssetItem::invalidateMaterial()
{
    releaseMaterial();
}

void kxMaterialAssetItem::releaseMaterial()
{
    // A container that is gone has no count to bring down.
    if (!getMaterial())
        static_cast<void>(_reference.take());
    _reference.reset();
}

osg::ImagePtr kxMaterialAssetItem::getOsgImage() const
{
    const auto attachment = osg::findAttachment<osg::ImageAttachment>(getMaterial());
    return attachment ? attachment->getImage() : nullptr;
}

std::string kxMaterialAssetItem::materialTypeName() const
{
    return _materialType ? _materialType->getCName() : std::string();
}

void kxMaterialAssetItem::reset()
{
    kxAssetItem::reset();
    setCategory(Material);
    releaseMaterial();
    _materialId = 0;
    _materialType = nullptr;
    _subMaterialUUIDs.clear();
    _switchChoice = -1;
    _tags.clear();
    _environmentName.clear();
    _photometricState = Unknown;
    _expectedPhotometricState = Unknown;
}

void kxMaterialAssetItem::setTagsFrom(const osg::MaterialPtr &material)
{
    const auto attachment = osg::findAttachment<osg::TagAttachment>(material);
    if (!attachment)
        return;
    _tags = kxAssetItemDocument::tagListFrom(QString::fromStdString(attachment->getTagString()));
    for (int i = 0; i < _tags.size(); ++i)
        printLine("item tag " + std::to_string(i) + ": " + _tags[i].toStdString());
}

void kxMaterialAssetItem::setSubMaterialsFrom(const osg::MaterialPtr &material)
{
    for (const osg::MaterialPtr &part : kxMaterials::getSubMaterials(material)) {
        const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::getAssetAttachment(part);
        _subMaterialUUIDs.push_back(attachment ? attachment->getUuid() : std::string());
    }
}

void kxMaterialAssetItem::setChoiceFrom(const osg::MaterialPtr &material)
{
    if (const auto choices = osg::dcast<osg::SwitchMaterialPtr>(material))
        _switchChoice = choices->getChoice();
}

void kxMaterialAssetItem::setPhotometricStateFrom(const osg::MaterialPtr &material)
{
    _photometricState = photometricStateOf(material);
}

void kxMaterialAssetItem::setBRDFEnvironment(const osg::MaterialPtr &material)
{
    assignEnvironment(material, _environmentName);
}

void kxMaterialAssetItem::adjustPhotometricParameters(const osg::MaterialPtr &material)
{
    adjustIntensity(material, _photometricState, _expectedPhotometricState);
}
