// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxUrlManager.h"

#include "Assets/Internal/CollectedItem.h"
#include "Assets/Internal/LoadedNodes.h"
#include "Assets/Internal/StandardOutput.h"
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemDocument.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxNodeUtils.h"
#include "SceneGraph/UberMaterial.h"

#include <QCoreApplication>
#include <QDomDocument>
#include <QProgressDialog>
#include <QRegExp>

#include <algorithm>

using kxAssetsInternal::printLine;

std::set<kxUrlManager *> kxUrlManager::_registeredManagers;
std::vector<std::string> kxUrlManager::_previewImageFileFormats;
int kxUrlManager::_previewImageFileFormat = 0;
bool kxUrlManager::_writeAutomotiveMaterialFiles = false;

namespace {

const QStringList MetadataFilter{QStringLiteral("*.xml")};
const QStringList PayloadFilter{QStringLiteral("*.osb")};

/// ".xml" and ".osb".
constexpr int ExtensionLength = 4;

bool isWanted(const kxAssetItemDocument &document, kxAssetCategoryType category)
{
    return document.hasValidAssetMetaData() && (category == Undefined || document.hasAssetType(category));
}

} // namespace

void kxUrlManager::registerManager(kxUrlManager *manager)
{
    if (manager)
        _registeredManagers.insert(manager);
}

kxUrlManager *kxUrlManager::getUrlManager(const QUrl &url)
{
    const auto found = std::find_if(_registeredManagers.begin(), _registeredManagers.end(),
                                    [&url](const kxUrlManager *manager) { return manager->accepts(url); });
    return found != _registeredManagers.end() ? *found : nullptr;
}

QString kxUrlManager::getUiString(const QUrl &url)
{
    kxUrlManager *manager = getUrlManager(url);
    return manager ? manager->uiString(url) : url.toString();
}

void kxUrlManager::setPreviewImageFileFormat(int index)
{
    _previewImageFileFormat = index;
}

void kxUrlManager::setWriteAutomotiveMaterialFiles(bool write)
{
    _writeAutomotiveMaterialFiles = write;
}

kxUrlManager::kxUrlManager()
{
    if (_previewImageFileFormats.empty())
        _previewImageFileFormats = {"png", "vif"};
}

QString kxUrlManager::getNumberSuffix(const QString &text)
{
    const QRegExp expression(QStringLiteral("\\d+$"), Qt::CaseSensitive);
    const int position = expression.indexIn(text);
    if (position <= 0)
        return {};
    const QString digits = text.mid(position);
    bool isNumber = false;
    digits.toInt(&isNumber, 10);
    return isNumber ? digits : QString();
}

QStringList kxUrlManager::getImageFileFilter(const QUrl &directory) const
{
    QString baseName = QStringLiteral("*");
    std::vector<QUrl> named = self().files(directory, PayloadFilter, QDir::NoSort);
    if (named.empty())
        named = self().files(directory, MetadataFilter, QDir::NoSort);
    if (!named.empty()) {
        baseName = self().fileName(named.front());
        baseName.chop(ExtensionLength);
    }

    QStringList filter;
    for (const std::string &extension : _previewImageFileFormats)
        filter << baseName + QLatin1Char('.') + QString::fromStdString(extension);
    return filter;
}

template <class Accept> QUrl kxUrlManager::findDocument(const QUrl &url, Accept accept) const
{
    for (const QUrl &file : self().files(url, MetadataFilter, QDir::NoSort)) {
        QDomDocument document(QStringLiteral("document"));
        if (loadDocumentFromFile(file, document) && accept(kxAssetItemDocument(document)))
            return file;
    }
    return {};
}

void kxUrlManager::collectItems(const QUrl &url, kxAssetCategoryType category, QProgressDialog *progress) const
{
    std::set<kxAssetItem *> items;
    collectItems(url, category, items, progress, false);
}

void kxUrlManager::collectItems(const QUrl &url, kxAssetCategoryType category, std::set<kxAssetItem *> &items,
                                QProgressDialog *progress, bool nonRecursive) const
{
    if (progress && progress->wasCanceled())
        return;
    bool hasFound = false;
    if (!collectFromDirectory(url, category, items, progress, hasFound) || hasFound || nonRecursive)
        return;
    for (const QUrl &directory : self().subDirectories(url))
        collectItems(directory, category, items, progress, false);
}

/// False when the scan was cancelled.
bool kxUrlManager::collectFromDirectory(const QUrl &url, kxAssetCategoryType category, std::set<kxAssetItem *> &items,
                                        QProgressDialog *progress, bool &hasFound) const
{
    for (const QUrl &file : self().files(url, MetadataFilter, QDir::NoSort)) {
        if (progress) {
            QCoreApplication::processEvents();
            if (progress->wasCanceled())
                return false;
        }
        QDomDocument content(QStringLiteral("document"));
        if (!loadDocumentFromFile(file, content))
            continue;
        const kxAssetItemDocument document(content);
        if (!isWanted(document, category))
            continue;
        kxAssetItem *item = kxAssetItemFactory::the().createOrUpdateItem(document);
        if (kxAssetsInternal::placeCollected(item, self(), file, items))
            hasFound = true;
    }
    return true;
}

bool kxUrlManager::containsItems(const QUrl &url, kxAssetCategoryType category) const
{
    return !findDocument(url, [category](const kxAssetItemDocument &document) {
                return isWanted(document, category);
            }).isEmpty();
}

bool kxUrlManager::containsItem(const QUrl &url, kxAssetCategoryType category, const std::string &uuid) const
{
    return !findDocument(url, [category, &uuid](const kxAssetItemDocument &document) {
                return isWanted(document, category) && document.hasAssetUUID(uuid);
            }).isEmpty();
}

bool kxUrlManager::updateItem(kxAssetItem *item)
{
    if (!item)
        return false;
    const QUrl directory = item->directoryUrl();
    kxUrlManager *manager = getUrlManager(directory);
    if (!manager)
        return false;

    kxAssetItemDocument ofItem;
    const std::string uuid = item->uuid();
    const QUrl file = manager->findDocument(directory, [&uuid, &ofItem](const kxAssetItemDocument &document) {
        const bool isItsOwn = document.hasValidAssetMetaData() && document.hasAssetUUID(uuid);
        if (isItsOwn)
            ofItem = document;
        return isItsOwn;
    });
    if (file.isEmpty())
        return false;
    item->readMetaData(ofItem);
    item->setDirectoryUrl(directory);
    item->setLastModified(manager->lastModified(file));
    return true;
}

/// Compares places, not spellings.
bool kxUrlManager::isBelow(QUrl url, const QUrl &directory) const
{
    for (QUrl parent = self().getParentDirectoryUrl(url); !parent.isEmpty() && parent != url;
         parent = self().getParentDirectoryUrl(url)) {
        if (isSameDirectory(parent, directory))
            return true;
        url = parent;
    }
    return false;
}

bool kxUrlManager::removeOldItemDirectory(kxAssetItem *oldItem, kxAssetItem *newItem) const
{
    if (!oldItem || !newItem)
        return false;
    // Taken first: removing the directory may delete the old item from the registry.
    const QUrl oldDirectory = oldItem->directoryUrl();
    const QUrl newDirectory = newItem->directoryUrl();
    const kxAssetCategoryType oldCategory = oldItem->category();
    const kxAssetCategoryType newCategory = newItem->category();
    const std::string uuid = newItem->uuid();

    if (getUrlManager(newDirectory) == this && !isSameDirectory(newDirectory, oldDirectory) &&
        containsItem(oldDirectory, oldCategory, uuid) && containsItem(newDirectory, newCategory, uuid)) {
        printLine("deleting: " + oldDirectory.toString().toStdString());
        // An asset saved below its own old directory would be removed with it.
        const bool isInTheWay = isBelow(newDirectory, oldDirectory);
        if (isInTheWay || (!removeDirectory(oldDirectory) && containsItem(oldDirectory, oldCategory, uuid))) {
            printLine("deleting old directory failed.");
            // Two directories with one UUID would be worse than a save that has to be repeated.
            removeDirectory(newDirectory);
            return false;
        }
    }
    kxAssetItemFactory::the().deleteItem(uuid);
    return true;
}

bool kxUrlManager::loadPixmapFromDir(const QUrl &url, QPixmap &pixmap) const
{
    const std::vector<QUrl> candidates = self().files(url, getImageFileFilter(url), QDir::NoSort);
    return !candidates.empty() && loadPixmapFromFile(candidates.front(), pixmap);
}

bool kxUrlManager::loadImageFromDir(const QUrl &url, QImage *image) const
{
    if (!image)
        return false;
    const std::vector<QUrl> candidates = self().files(url, getImageFileFilter(url), QDir::Time);
    return !candidates.empty() && loadImageFromFile(candidates.front(), image);
}

bool kxUrlManager::loadMaterialFromDir(const QUrl &url, osg::MaterialPtr &material) const
{
    const std::vector<QUrl> candidates =
        self().files(url, kxAssetCategory::getAcceptedFileTypes(Material), QDir::NoSort);
    const bool isLoaded = std::any_of(candidates.begin(), candidates.end(), [this, &material](const QUrl &file) {
        return loadMaterialFromFile(file, material);
    });
    if (isLoaded) {
        if (const osg::UberMaterialPtr uber = osg::UberMaterialPtr::dcast(material))
            uber->update();
        return true;
    }
    QDomDocument document(QStringLiteral("document"));
    loadDocumentFromDir(url, document);
    return kxMaterialAssetItem::createMaterialFromDoc(kxAssetItemDocument(document), material);
}

bool kxUrlManager::loadDocumentFromDir(const QUrl &url, QDomDocument &document, QUrl &file) const
{
    for (const QUrl &candidate : self().files(url, MetadataFilter, QDir::NoSort))
        if (loadDocumentFromFile(candidate, document)) {
            file = candidate;
            return true;
        }
    return false;
}

bool kxUrlManager::loadDocumentFromDir(const QUrl &url, QDomDocument &document) const
{
    QUrl file;
    return loadDocumentFromDir(url, document, file);
}

bool kxUrlManager::loadSceneplateFromDir(const QUrl &url, osg::NodePtr &node) const
{
    const std::vector<QUrl> candidates = self().files(url, PayloadFilter, QDir::NoSort);
    return std::any_of(candidates.begin(), candidates.end(),
                       [this, &node](const QUrl &file) { return loadSceneplateFromFile(file, node) && node; });
}

bool kxUrlManager::loadNodeFromDir(const QUrl &url, osg::NodePtr &node) const
{
    const std::vector<QUrl> candidates = self().files(url, PayloadFilter, QDir::NoSort);
    if (std::none_of(candidates.begin(), candidates.end(),
                     [this, &node](const QUrl &file) { return loadNodeFromFile(file, node) && node; }))
        return false;

    std::set<osg::MaterialPtr> materials;
    kxMaterials::getMaterialsRecursive(node, materials, false);
    for (const osg::MaterialPtr &material : materials)
        kxMaterialAssetItem::removeSpecialAssetTagsFrom(material);
    std::vector<osg::NodePtr> nodes;
    kxNodeUtils::getGeometryNodes(node, nodes);
    kxAssetsInternal::triangulateWhereNeeded(nodes);
    return true;
}
