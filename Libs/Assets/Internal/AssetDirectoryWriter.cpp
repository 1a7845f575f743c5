// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/AssetDirectoryWriter.h"

#include "Assets/Internal/LocalPath.h"
#include "Assets/Internal/StandardOutput.h"
#include "Assets/kxAssetCategory.h"
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemDocument.h"
#include "Assets/kxLocalUrlManager.h"
#include "Kernel/kxFile.h"
#include "Kernel/kxFileIO.h"
#include "Kernel/kxLog.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxNodeUtils.h"

#include <QFileInfo>

#include <vector>

namespace kxAssetsInternal {

bool AssetDirectoryWriter::begin(const QUrl &parent, kxAssetItem &item, const std::string &name)
{
    return begin(parent, item, name, nullptr);
}

bool AssetDirectoryWriter::begin(const QUrl &parent, kxAssetItem &item, const std::string &name,
                                 const Announcement &announcement)
{
    return begin(parent, item, name, &announcement);
}

bool AssetDirectoryWriter::begin(const QUrl &parent, kxAssetItem &item, const std::string &name,
                                 const Announcement *announcement)
{
    kxAssetItemDocument document;
    if (!item.writeMetaData(document)) {
        kxLog::error("Failed to write meta data.");
        return false;
    }
    const std::string validName = kxFile::makeValidFileName(name);
    if (announcement) {
        printLine("--------------");
        printLine(std::string("kxLocalUrlManager::") + announcement->operation + " " + validName);
    }
    const QString fileName = QString::fromStdString(validName);
    if (!makeDirectory(parent, item, fileName))
        return false;
    if (announcement)
        printLine(std::string("   save ") + announcement->what +
                  " to path: " + _basePath.left(_basePath.size() - fileName.size()).toStdString());
    return _manager.saveDocumentToFile(QUrl::fromLocalFile(_basePath + QStringLiteral(".xml")),
                                       document.getQDomDocument());
}

bool AssetDirectoryWriter::makeDirectory(const QUrl &parent, kxAssetItem &item, const QString &fileName)
{
    const QString folderName = kxAssetCategory::getItemFolderName(item.category(), fileName);
    _directory = _manager.makeUniqueDirectory(parent, folderName, &item);
    // The parent comes back when its new directory could not be made. An asset in the library folder itself would hide
    // the library.
    if (!_directory.isValid() || placeOf(_directory.toLocalFile()) == placeOf(parent.toLocalFile()))
        return false;
    _basePath = _directory.toLocalFile();
    if (!_basePath.endsWith(QLatin1Char('/')))
        _basePath += QLatin1Char('/');
    _basePath += fileName;
    return true;
}

bool AssetDirectoryWriter::writePayload(const osg::MaterialPtr &material, Composite composite)
{
    if (composite == Composite::Rebuilt && isComposite(material)) {
        removeStalePayload();
        return true;
    }
    const QByteArray path = payloadPath().toUtf8();
    if (kxFileIO::saveMaterial(material, path.constData(), true))
        return true;
    kxLog::error("Failed to write file '%s'.", path.constData());
    return false;
}

bool AssetDirectoryWriter::writeNode(const osg::NodePtr &node)
{
    const QByteArray path = payloadPath().toUtf8();
    if (kxNodeUtils::writeNode(node, path.constData(), true))
        return true;
    kxLog::error("Failed to write file '%s'.", path.constData());
    return false;
}

/// One of an earlier time would be loaded instead of what the metadata says now.
void AssetDirectoryWriter::removeStalePayload() const
{
    const QByteArray path = payloadPath().toUtf8();
    if (QFileInfo(payloadPath()).isFile() && !kxFile::remove(path.constData()))
        kxLog::error("Failed to remove file '%s'.", path.constData());
}

bool isComposite(const osg::MaterialPtr &material)
{
    std::vector<osg::MaterialPtr> materials;
    kxMaterials::getRecursiveMaterials(material, materials, false);
    return materials.size() > 1;
}

} // namespace kxAssetsInternal
