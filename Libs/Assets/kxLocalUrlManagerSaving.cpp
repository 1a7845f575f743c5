// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/AssetDirectoryWriter.h"
#include "Assets/Internal/LocalPath.h"
#include "Assets/kxAssetItemDocument.h"
#include "Assets/kxLocalUrlManager.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Kernel/kxFile.h"
#include "Kernel/kxFileIO.h"
#include "Kernel/kxLog.h"
#include "Kernel/kxMaterials.h"

#include <QFile>
#include <QFileInfo>

using kxAssetsInternal::placeOf;

bool kxLocalUrlManager::saveMaterialAsset(const QUrl &parent, kxMaterialAssetItem *item) const
{
    if (!item || !parent.isLocalFile())
        return false;
    const osg::MaterialPtr material = item->getMaterial();
    if (!material || !ensureDirectoryExists(parent))
        return false;

    kxAssetItemDocument document;
    if (!item->writeMetaData(document)) {
        kxLog::error("Failed to write meta data.");
        return false;
    }
    const QString fileName = QString::fromStdString(kxFile::makeValidFileName(kxMaterials::getName(material)));
    const QUrl directory = self().makeUniqueDirectory(
        parent, kxAssetCategory::getItemFolderName(item->category(), fileName), item);
    // The parent comes back when its new directory could not be made. An asset in the library folder itself would hide
    // the library.
    if (!directory.isValid() || placeOf(directory.toLocalFile()) == placeOf(parent.toLocalFile()))
        return false;

    QString base = directory.toLocalFile();
    if (!base.endsWith(QLatin1Char('/')))
        base += QLatin1Char('/');
    base += fileName;
    const QString payload = base + QStringLiteral(".osb");
    if (!saveDocumentToFile(QUrl::fromLocalFile(base + QStringLiteral(".xml")), document.getQDomDocument()))
        return false;
    bool isOnlyForConverter = false;
    if (!savePayload(material, payload, isOnlyForConverter))
        return false;
    saveImageFile(base, item->getOsgImage());
    writeMaterialFiles(QUrl::fromLocalFile(payload), isOnlyForConverter);
    item->setDirectoryUrl(directory);
    return true;
}

/// A composite is rebuilt from its metadata and has a payload only while the external converter needs it.
bool kxLocalUrlManager::savePayload(const osg::MaterialPtr &material, const QString &path,
                                    bool &isOnlyForConverter) const
{
    std::vector<osg::MaterialPtr> materials;
    kxMaterials::getRecursiveMaterials(material, materials, false);
    const bool isComposite = materials.size() > 1;
    const QByteArray name = path.toUtf8();
    if (isComposite && !_writeAutomotiveMaterialFiles) {
        // One of an earlier time would be loaded instead of what the metadata says now.
        if (QFile::exists(path) && !kxFile::remove(name.constData()))
            kxLog::error("Failed to remove file '%s'.", name.constData());
        return true;
    }
    isOnlyForConverter = isComposite;
    if (kxFileIO::saveMaterial(material, name.constData(), true))
        return true;
    kxLog::error("Failed to write file '%s'.", name.constData());
    return false;
}

bool kxLocalUrlManager::saveEnvironmentNodeAsset(const QUrl &, kxEnvironmentNodeAssetItem *item) const
{
    if (item)
        kxLog::error("Assets that are environment nodes cannot be saved in this version.");
    return false;
}

bool kxLocalUrlManager::saveSceneNodeAsset(const QUrl &, kxGeometrySceneplateCommon *item) const
{
    if (item)
        kxLog::error("Geometry and sceneplate assets cannot be saved in this version.");
    return false;
}

void kxLocalUrlManager::saveImageFile(const QString &basePath, const osg::ImagePtr &image) const
{
    kxAssetsInternal::writePreview(basePath, image, _previewImageFileFormats, _previewImageFileFormat);
}

bool kxLocalUrlManager::writeMaterialFiles(const QUrl &payload) const
{
    return writeMaterialFiles(payload, false);
}

bool kxLocalUrlManager::writeMaterialFiles(const QUrl &payload, bool removeAfter) const
{
    const QString path = payload.toLocalFile();
    if (_writeAutomotiveMaterialFiles || !path.endsWith(QLatin1String(".osb"), Qt::CaseInsensitive))
        kxAssetsInternal::startConverter(path, removeAfter);
    return false;
}
