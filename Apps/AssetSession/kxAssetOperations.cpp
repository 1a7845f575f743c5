// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetOperations.h"

#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Assets/kxUrlManager.h"
#include "Kernel/kxController.h"
#include "Kernel/kxMaterialTags.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxMessage.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/TagAttachment.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>

#include <algorithm>

namespace {

kxMaterialAssetItem *materialItem(const std::string &uuid)
{
    return dynamic_cast<kxMaterialAssetItem *>(kxAssetItemFactory::the().findItem(uuid));
}

osg::Failure noMaterial(const std::string &uuid)
{
    return {"'" + uuid + "' is no material"};
}

bool contains(const std::vector<std::string> &list, const std::string &text)
{
    return std::find(list.begin(), list.end(), text) != list.end();
}

void apply(const kxAssetOperations::TagEdit &edit, const osg::MaterialPtr &material)
{
    if (const osg::TagAttachmentPtr tags = osg::findAttachment<osg::TagAttachment>(material)) {
        std::vector<std::string> kept = tags->getMaterials().values();
        std::erase_if(kept, [&edit](const std::string &tag) { return edit.clears || contains(edit.removed, tag); });
        const osg::CPEditor editor(tags, osg::TagAttachment::MaterialsFieldMask);
        tags->editMaterials() = kept;
    }
    for (const std::string &tag : edit.added)
        kxMaterialTags::addTag(material, tag);
}

/// The file that is looked for as the preview of the asset in this directory; empty when there is no asset.
QString findPreviewFile(kxUrlManager &manager, const QUrl &directory)
{
    for (const char *pattern : {"*.osb", "*.xml"})
        for (const QUrl &file : manager.files(directory, {QLatin1String(pattern)}, QDir::NoSort)) {
            const QFileInfo info(file.toLocalFile());
            return info.dir().filePath(info.completeBaseName() + QStringLiteral(".png"));
        }
    return {};
}

} // namespace

osg::Result<void> kxAssetOperations::retag(const std::string &uuid, const TagEdit &edit)
{
    kxMaterialAssetItem *item = materialItem(uuid);
    if (!item)
        return noMaterial(uuid);
    const std::string name = item->name();
    const QUrl folder = item->parentDirectoryUrl();
    if (!item->loadMaterial())
        return osg::Failure{"'" + name + "' cannot be loaded; 'kxassets verify' tells more"};
    // What cannot be loaded of a composite is left out, and would be gone for good.
    if (kxMaterials::getSubMaterials(item->getMaterial()).size() != item->subMaterialUUIDs().size())
        return osg::Failure{"'" + name + "' cannot be loaded as a whole; 'kxassets verify' tells more"};
    apply(edit, item->getMaterial());
    // The item is replaced in the registry, and not to be used afterwards.
    if (item->save(folder))
        return {};
    return osg::Failure{"'" + name + "' could not be saved in " + folder.toLocalFile().toStdString()};
}

osg::Result<void> kxAssetOperations::renderPreview(const std::string &uuid)
{
    kxMaterialAssetItem *item = materialItem(uuid);
    if (!item)
        return noMaterial(uuid);
    const std::string name = item->name();
    const QUrl directory = item->directoryUrl();
    if (!item->loadMaterial())
        return osg::Failure{"'" + name + "' cannot be loaded; 'kxassets verify' tells more"};
    const osg::FCRef<osg::Material> material(item->getMaterial());
    kxMessage message;
    message.set("materials", std::vector<osg::MaterialPtr>{material.get()});
    message.set("showProgress", false);
    kxController::call("renderPreviewImages", message);
    if (kxMaterialAssetItem *rendered = materialItem(uuid))
        rendered->invalidateMaterial();
    const osg::ImagePtr image = kxMaterials::getPreviewImage(material.get());
    const QString file = findPreviewFile(*kxUrlManager::getUrlManager(directory), directory);
    if (!image || file.isEmpty() || !image->write(file.toStdString()))
        return osg::Failure{"the preview of '" + name + "' could not be written"};
    return {};
}

QString kxAssetOperations::previewFile(const std::string &uuid)
{
    kxAssetItem *item = kxAssetItemFactory::the().findItem(uuid);
    kxUrlManager *manager = item ? kxUrlManager::getUrlManager(item->directoryUrl()) : nullptr;
    return manager ? findPreviewFile(*manager, item->directoryUrl()) : QString();
}

bool kxAssetOperations::hasPreview(const std::string &uuid)
{
    kxAssetItem *item = kxAssetItemFactory::the().findItem(uuid);
    kxUrlManager *manager = item ? kxUrlManager::getUrlManager(item->directoryUrl()) : nullptr;
    QImage image;
    return manager && manager->loadImageFromDir(item->directoryUrl(), &image) && !image.isNull();
}

std::string kxAssetOperations::userOf(const kxAssetLibrary &library, const std::string &uuid,
                                      const std::vector<std::string> &but)
{
    for (kxAssetItem *item : library.items()) {
        const auto *material = dynamic_cast<kxMaterialAssetItem *>(item);
        if (material && !contains(but, item->uuid()) && contains(material->subMaterialUUIDs(), uuid))
            return item->name();
    }
    return {};
}

osg::Result<void> kxAssetOperations::remove(const std::string &uuid)
{
    kxAssetItem *item = kxAssetItemFactory::the().findItem(uuid);
    if (!item)
        return {};
    const QUrl directory = item->directoryUrl();
    const std::string name = item->name(); // removing the directory deletes the item
    if (!kxUrlManager::getUrlManager(directory)->removeDirectory(directory))
        return osg::Failure{"'" + name + "' could not be removed as a whole: " + directory.toLocalFile().toStdString()};
    kxAssetItemFactory::the().deleteItem(uuid);
    return {};
}
