// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxLocalUrlManager.h"

#include "Assets/Internal/AssetDirectoryWriter.h"
#include "Assets/Internal/DirectoryListing.h"
#include "Assets/Internal/DirectoryMover.h"
#include "Assets/Internal/EnvironmentPreview.h"
#include "Assets/Internal/ExternalConverter.h"
#include "Assets/Internal/ImageFile.h"
#include "Assets/Internal/LoadedNodes.h"
#include "Assets/Internal/LocalPath.h"
#include "Assets/Internal/MainThread.h"
#include "Assets/Internal/MetadataReader.h"
#include "Assets/Internal/NodeLoading.h"
#include "Assets/Internal/PreviewWriter.h"
#include "Assets/Internal/StandardOutput.h"
#include "Assets/Internal/UniqueNames.h"
#include "Assets/Internal/Unloading.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxEnvironmentNodeAssetItem.h"
#include "Assets/kxGeometrySceneplateCommon.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Assets/kxSaveEnvironment.h"
#include "Assets/kxSaveNode.h"
#include "Kernel/QKXDomDocumentWriter.h"
#include "Kernel/kxFastGeometryLoader.h"
#include "Kernel/kxFile.h"
#include "Kernel/kxFileIO.h"
#include "Kernel/kxLog.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxSceneplateUtils.h"

#include <QDirIterator>
#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QPixmap>

#include <algorithm>

using kxAssetsInternal::AssetDirectoryWriter;
using kxAssetsInternal::DirectoryMover;
using kxAssetsInternal::entryPath;
using kxAssetsInternal::isAmong;
using kxAssetsInternal::isOnMainThread;
using kxAssetsInternal::isTaken;
using kxAssetsInternal::KeptUntilUnload;
using kxAssetsInternal::PayloadAfterwards;
using kxAssetsInternal::printLine;
using kxAssetsInternal::readWithHost;
using kxAssetsInternal::renameEntry;
using kxAssetsInternal::UniqueNames;

kxLocalUrlManager *kxLocalUrlManager::_instance = nullptr;

namespace {

/// Absolute URLs of entries of the directory.
template <class Names> std::vector<QUrl> urlsOf(const QString &directory, const Names &names)
{
    QString beginning = QDir(directory).absolutePath();
    if (!beginning.endsWith(QLatin1Char('/')))
        beginning += QLatin1Char('/');
    std::vector<QUrl> urls;
    urls.reserve(static_cast<std::size_t>(names.size()));
    for (const QString &name : names)
        urls.push_back(QUrl::fromLocalFile(beginning + name));
    return urls;
}

} // namespace

kxLocalUrlManager *kxLocalUrlManager::the()
{
    Q_ASSERT(isOnMainThread());
    class Instance final : public kxLocalUrlManager // whose constructor is for derived classes
    {};
    static KeptUntilUnload<Instance> manager;
    _instance = manager.get();
    return _instance;
}

// Queries

bool kxLocalUrlManager::accepts(const QUrl &url) const
{
    return url.isLocalFile();
}

QDir kxLocalUrlManager::getDir(const QUrl &url)
{
    return QDir(url.toLocalFile());
}

bool kxLocalUrlManager::isDirectory(const QUrl &url) const
{
    return QFileInfo(url.toLocalFile()).isDir();
}

bool kxLocalUrlManager::isFile(const QUrl &url) const
{
    return QFileInfo(url.toLocalFile()).isFile();
}

bool kxLocalUrlManager::exists(const QUrl &url) const
{
    return QFileInfo(url.toLocalFile()).exists();
}

QUrl kxLocalUrlManager::expand(const QUrl &url)
{
    return QUrl::fromLocalFile(QString::fromStdString(kxFile::expandFilename(url.toLocalFile().toUtf8().constData())));
}

QString kxLocalUrlManager::uiString(const QUrl &url)
{
    return url.toLocalFile();
}

QString kxLocalUrlManager::directoryName(const QUrl &url)
{
    return getDir(url).dirName();
}

QString kxLocalUrlManager::fileName(const QUrl &url)
{
    const QFileInfo info(url.toLocalFile());
    return info.isFile() ? info.fileName() : QString();
}

QIcon kxLocalUrlManager::icon(const QUrl &url)
{
    return _iconProvider.icon(QFileInfo(url.toLocalFile()));
}

QString kxLocalUrlManager::owner(const QUrl &url)
{
    return QFileInfo(url.toLocalFile()).owner();
}

QDateTime kxLocalUrlManager::lastModified(const QUrl &url)
{
    return QFileInfo(url.toLocalFile()).lastModified();
}

QUrl kxLocalUrlManager::getDirectoryUrl(const QUrl &url)
{
    return isDirectory(url) ? url : getParentDirectoryUrl(url);
}

QUrl kxLocalUrlManager::getParentDirectoryUrl(const QUrl &url)
{
    return QUrl::fromLocalFile(QFileInfo(entryPath(url)).absolutePath());
}

bool kxLocalUrlManager::isSameDirectory(const QUrl &a, const QUrl &b) const
{
    return getDir(a) == getDir(b);
}

std::uint32_t kxLocalUrlManager::checksum(const QUrl &url) const
{
    return kxFile::getChecksum(url.toLocalFile().toUtf8().constData(), 0);
}

int kxLocalUrlManager::subDirectoryCount(const QUrl &url) const
{
    return kxAssetsInternal::countDirectoriesIn(url.toLocalFile());
}

std::vector<QUrl> kxLocalUrlManager::subDirectories(const QUrl &url)
{
    const QString path = url.toLocalFile();
    return urlsOf(path, kxAssetsInternal::directoriesIn(path));
}

std::vector<QUrl> kxLocalUrlManager::files(const QUrl &url, const QStringList &nameFilters, QDir::SortFlags sort)
{
    const QString path = url.toLocalFile();
    if (path.isEmpty())
        return {};
    // Given no order, a QDir takes its own, which is by name.
    if (sort == QDir::NoSort)
        return urlsOf(path, kxAssetsInternal::filesIn(path, nameFilters));
    return urlsOf(path, QDir(path).entryList(nameFilters, QDir::Files | QDir::NoSymLinks, sort));
}

QUrl kxLocalUrlManager::extendByDirectory(const QUrl &url, const QString &name)
{
    QUrl extended = getDirectoryUrl(url);
    QString path = extended.path(QUrl::FullyDecoded);
    if (!path.endsWith(QLatin1Char('/')))
        path += QLatin1Char('/');
    extended.setPath(path + name, QUrl::DecodedMode);
    return extended;
}

// Creating

QString kxLocalUrlManager::getUniqueDirectoryName(const QUrl &url, const QString &name)
{
    const QDir directory = getDir(url);
    UniqueNames names(name, getNumberSuffix(name));
    while (isTaken(directory, names.current()))
        names.advance();
    return names.current();
}

/// Asks again where the registry knows the asset to be: a disk that fails for a moment would give it a second directory.
bool kxLocalUrlManager::isHomeOf(const QUrl &directory, kxAssetItem &item) const
{
    if (containsItem(directory, item.category(), item.uuid()))
        return true;
    kxAssetItem *registered = kxAssetItemFactory::the().findItem(item.uuid());
    return registered && isSameDirectory(registered->directoryUrl(), directory) &&
           containsItem(directory, item.category(), item.uuid());
}

QUrl kxLocalUrlManager::makeUniqueDirectory(const QUrl &url, const QString &name, kxAssetItem *item)
{
    if (url.toLocalFile().isEmpty())
        return {};
    QDir directory = getDir(url);
    UniqueNames names(name, getNumberSuffix(name));
    for (; isTaken(directory, names.current()); names.advance()) {
        QUrl existing = QUrl::fromLocalFile(directory.absoluteFilePath(names.current()));
        if (item && isHomeOf(existing, *item)) {
            printLine("[makeUniqueDirectory] - contains item with same uuid");
            return existing;
        }
    }
    directory.mkdir(names.current());
    directory.cd(names.current());
    return QUrl::fromLocalFile(directory.absolutePath());
}

QUrl kxLocalUrlManager::makeDirectory(const QUrl &url, const QString &name)
{
    QDir parent = getDir(url);
    if (!ensureDirectoryExists(url) || !parent.mkdir(name))
        return {};
    return QUrl::fromLocalFile(parent.absoluteFilePath(name));
}

QUrl kxLocalUrlManager::makePath(const QUrl &url, const QString &relativePath)
{
    if (relativePath.isEmpty())
        return url;
    if (url.toLocalFile().isEmpty())
        return {};
    const QDir parent = getDir(url);
    return parent.mkpath(relativePath) ? QUrl::fromLocalFile(parent.absoluteFilePath(relativePath)) : QUrl();
}

bool kxLocalUrlManager::ensureDirectoryExists(const QUrl &url)
{
    if (url.toLocalFile().isEmpty()) // which Qt takes for the current directory
        return false;
    const QDir directory = getDir(url);
    return directory.exists() || directory.mkpath(QStringLiteral("."));
}

// Renaming, moving, removing

bool kxLocalUrlManager::rename(const QUrl &from, const QUrl &to) const
{
    return renameEntry(from.toLocalFile(), to.toLocalFile());
}

QUrl kxLocalUrlManager::rename(const QUrl &url, const QString &oldName, const QString &newName)
{
    const QUrl parent = getParentDirectoryUrl(url);
    const QDir directory = getDir(parent);
    return renameEntry(directory.filePath(oldName), directory.filePath(newName)) ? extendByDirectory(parent, newName)
                                                                                 : url;
}

bool kxLocalUrlManager::move(const QUrl &source, const QUrl &targetDirectory, QUrl &resultUrl,
                             bool mergeWithoutAsking) const
{
    return DirectoryMover(self()).move(source, targetDirectory, resultUrl,
                                       mergeWithoutAsking ? DirectoryMover::Collision::Joins
                                                          : DirectoryMover::Collision::Asks);
}

bool kxLocalUrlManager::merge(const QUrl &source, const QUrl &target) const
{
    return DirectoryMover(self()).merge(source, target);
}

bool kxLocalUrlManager::removeDirectory(const QUrl &url) const
{
    const QString path = entryPath(url);
    if (path.isEmpty())
        return false;
    if (!isTaken(path))
        return true;

    const QUrl entry = QUrl::fromLocalFile(path);
    const bool isLink = QFileInfo(path).isSymLink();
    const QUrl directory = isLink ? entry : self().getDirectoryUrl(entry);
    kxAssetItemFactory &registry = kxAssetItemFactory::the();
    std::set<kxAssetItem *> gone = registry.findItems(Undefined, directory);
    const bool isRemoved = isLink ? QFile::remove(path) : removeRecursively(getDir(directory));

    std::set<kxAssetItem *> left;
    collectItems(directory, Undefined, left, nullptr, false);
    for (kxAssetItem *item : left)
        gone.erase(item);
    registry.deleteItems(gone);
    return isRemoved;
}

bool kxLocalUrlManager::removeRecursively(const QDir &directory)
{
    bool isEmpty = true;
    QDirIterator entries(directory.absolutePath(),
                         QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    while (entries.hasNext()) {
        entries.next();
        const QFileInfo info = entries.fileInfo();
        const bool isRemoved = info.isDir() && !info.isSymLink() ? removeRecursively(QDir(info.filePath()))
                                                                 : QFile::remove(info.filePath());
        isEmpty = isRemoved && isEmpty;
    }
    return isEmpty && QDir().rmdir(directory.absolutePath());
}

// Reading

bool kxLocalUrlManager::loadDocumentFromFile(const QUrl &url, QDomDocument &document) const
{
    QFile file(url.toLocalFile());
    if (QFileInfo(file).suffix().compare(QLatin1String("xml"), Qt::CaseInsensitive) != 0)
        return false;
    if (!file.open(QIODevice::ReadOnly)) {
        printLine("could not open xml");
        return false;
    }
    QString message;
    int line = 0;
    int column = 0;
    if (kxAssetsInternal::readMetadata(file, document, message, line, column))
        return true;
    printLine("could not set xml content, error " + message.toStdString() + " at " + std::to_string(line) + ", " +
              std::to_string(column));
    return false;
}

bool kxLocalUrlManager::loadPixmapFromFile(const QUrl &url, QPixmap &pixmap) const
{
    static const QList<QByteArray> formats = QImageReader::supportedImageFormats();
    const QString path = url.toLocalFile();
    if (isAmong(formats, path) && pixmap.load(path))
        return true;
    const QImage image = readWithHost(path);
    if (image.isNull())
        return false;
    pixmap = QPixmap::fromImage(image);
    return true;
}

bool kxLocalUrlManager::loadImageFromFile(const QUrl &url, QImage *image) const
{
    if (!image)
        return false;
    static const QList<QByteArray> formats = QImageReader::supportedImageFormats();
    const QString path = url.toLocalFile();
    if (isAmong(formats, path) && image->load(path))
        return true;
    const QImage read = readWithHost(path);
    if (read.isNull())
        return false;
    *image = read;
    return true;
}

bool kxLocalUrlManager::loadMaterialFromFile(const QUrl &url, osg::MaterialPtr &material) const
{
    constexpr int Shown = 0;
    constexpr int Hidden = -1;
    std::vector<osg::FCRef<osg::Material>> materials = kxFileIO::loadMaterial(
        url.toLocalFile().toUtf8().constData(), showMaterialLoadProgress() ? Shown : Hidden, false);
    if (materials.empty())
        return false;
    material = materials.front().take();
    return static_cast<bool>(material);
}

bool kxLocalUrlManager::loadSceneplateFromFile(const QUrl &url, osg::NodePtr &node) const
{
    const osg::NodePtr first =
        kxAssetsInternal::takeFirstNode(kxSceneplateUtils::loadNodes(url.toLocalFile().toStdString()));
    if (!first)
        return false;
    node = first;
    return true;
}

bool kxLocalUrlManager::loadNodeFromFile(const QUrl &url, osg::NodePtr &node) const
{
    kxFastGeometryLoader loader;
    loader.setParent(nullptr, -1);
    loader.setAddFileInfo(false);
    loader.setShowProgress(true);
    loader.setMaterialPoolHandling(kxFastGeometryLoader::MergeIntoScene);
    node = loader.load(url.toLocalFile().toUtf8().constData());
    return static_cast<bool>(node);
}

// Writing

bool kxLocalUrlManager::saveDocumentToFile(const QUrl &url, const QDomDocument &document) const
{
    const QByteArray path = url.toLocalFile().toUtf8();
    if (!kxFile::checkWrite(path.constData(), false, false)) {
        kxLog::error("Can't write file '%s', no writing permission!", path.constData());
        return false;
    }
    std::string reason;
    if (kxFile::write(path.constData(), QKXDomDocumentWriter::toString(document).toStdString(), reason))
        return true;
    kxLog::error("Failed to write file '%s'.", path.constData());
    return false;
}

bool kxLocalUrlManager::saveMaterialAsset(const QUrl &parent, kxMaterialAssetItem *item) const
{
    if (!item || !parent.isLocalFile())
        return false;
    const osg::MaterialPtr material = item->getMaterial();
    if (!material || !ensureDirectoryExists(parent))
        return false;

    AssetDirectoryWriter writer(self());
    const bool keepsComposite = _writeAutomotiveMaterialFiles;
    if (!writer.begin(parent, *item, kxMaterials::getName(material)) ||
        !writer.writePayload(material, keepsComposite ? AssetDirectoryWriter::Composite::Kept
                                                      : AssetDirectoryWriter::Composite::Rebuilt))
        return false;
    saveImageFile(writer.basePath(), item->getOsgImage());
    // The payload of a composite is there for the converter only.
    const bool removeAfter = keepsComposite && kxAssetsInternal::isComposite(material);
    writeMaterialFiles(QUrl::fromLocalFile(writer.payloadPath()), removeAfter);
    item->setDirectoryUrl(writer.directory());
    return true;
}

bool kxLocalUrlManager::saveEnvironmentNodeAsset(const QUrl &parent, kxEnvironmentNodeAssetItem *item) const
{
    if (!item || !parent.isLocalFile())
        return false;
    const kxAssetsInternal::NodeInUse inUse(item->getEnvironmentNode());
    const osg::NodePtr node = inUse.get();
    if (!node || !ensureDirectoryExists(parent))
        return false;
    AssetDirectoryWriter writer(self());
    if (!writer.begin(parent, *item, item->name(), {"saveEnvironmentNodeAsset", "environment"}))
        return false;

    osg::FCRef<osg::UEnvironmentMaterial> material;
    {
        kxSaveEnvironment preparation;
        if (!preparation.prepare(node)) {
            kxLog::error("Failed to prepare environment node for saving.");
            return false;
        }
        material = osg::FCRef<osg::UEnvironmentMaterial>(preparation.getAssignedEnvironmentMaterial());
        if (!writer.writeNode(node))
            return false;
        preparation.unprepare();
    }
    const std::weak_ptr<const void> alive = item->life();
    if (const osg::ImagePtr preview = kxAssetsInternal::environmentPreview(material.get())) {
        printLine("saving preview of " + kxMaterials::getName(material.get()));
        saveImageFile(writer.basePath(), preview);
    }
    if (alive.expired())
        return false; // rendering may run an event loop, in which somebody deleted the item
    item->setDirectoryUrl(writer.directory());
    printLine("--------------");
    return true;
}

bool kxLocalUrlManager::saveSceneNodeAsset(const QUrl &parent, kxGeometrySceneplateCommon *item) const
{
    if (!item || !parent.isLocalFile())
        return false;
    const kxAssetsInternal::NodeInUse inUse(item->getNode());
    const osg::NodePtr node = inUse.get();
    if (!node || !ensureDirectoryExists(parent))
        return false;
    AssetDirectoryWriter writer(self());
    if (!writer.begin(parent, *item, item->name(), {"saveSceneNodeAsset", "node"}))
        return false;

    if (item->category() == Sceneplate) {
        kxSceneplateUtils::saveNodes(writer.payloadPath().toStdString(), {node});
    } else {
        kxSaveNode preparation(node);
        if (!writer.writeNode(node))
            return false;
        preparation.cleanup();
    }
    const std::weak_ptr<const void> alive = item->life();
    if (const auto preview = osg::FCRef<osg::Image>::adopt(item->renderPreview(node))) {
        printLine("saving preview of " + kxNodeUtils::getName(node));
        saveImageFile(writer.basePath(), preview);
    }
    if (alive.expired())
        return false; // rendering may run an event loop, in which somebody deleted the item
    item->setDirectoryUrl(writer.directory());
    printLine("--------------");
    return true;
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
        kxAssetsInternal::startConverter(path, removeAfter ? PayloadAfterwards::Goes : PayloadAfterwards::Stays);
    return false;
}
