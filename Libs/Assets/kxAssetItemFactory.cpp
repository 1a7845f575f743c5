// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetItemFactory.h"

#include "Assets/Internal/MainThread.h"
#include "Assets/Internal/RegisteredItems.h"
#include "Assets/Internal/StandardOutput.h"
#include "Assets/kxAssetItemDocument.h"
#include "Assets/kxEnvironmentMaterialAssetItem.h"
#include "Assets/kxEnvironmentNodeAssetItem.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Assets/kxSceneplateAssetItem.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxLog.h"
#include "Kernel/kxSceneplateService.h"

#include <QTimer>

#include <cassert>
#include <vector>

using kxAssetsInternal::printLine;
using kxAssetsInternal::RegisteredItems;

namespace {

void notifySceneplateService()
{
    if (auto *service = kxKernelServiceFactory::the().getService<kxSceneplateService>())
        service->nodesChanged();
}

std::unique_ptr<kxAssetItem> makeItem(const kxAssetItemDocument &document)
{
    const kxAssetCategoryType category = document.getAssetType();
    if (category == Material)
        return std::make_unique<kxMaterialAssetItem>();
    if (category == Environment && document.getMaterialType())
        return std::make_unique<kxEnvironmentMaterialAssetItem>();
    if (category == Environment)
        return std::make_unique<kxEnvironmentNodeAssetItem>();
    if (category == Geometry)
        return std::make_unique<kxGeometryAssetItem>();
    if (category == Sceneplate)
        return std::make_unique<kxSceneplateAssetItem>();
    return nullptr;
}

} // namespace

kxAssetItemFactory &kxAssetItemFactory::the()
{
    static kxAssetItemFactory factory;
    return factory;
}

kxAssetItemFactory::kxAssetItemFactory()
    : _items(std::make_unique<RegisteredItems>()), _notificationTimer(std::make_unique<QTimer>())
{
    assert(kxAssetsInternal::isOnMainThread() && "the registry is first used on the main thread");
    _notificationTimer->setSingleShot(true);
    _notificationTimer->setInterval(0);
    QObject::connect(_notificationTimer.get(), &QTimer::timeout, &notifySceneplateService);
}

kxAssetItemFactory::~kxAssetItemFactory() = default;

kxAssetItem *kxAssetItemFactory::findItem(const std::string &uuid) const
{
    return _items->find(uuid);
}

std::set<kxAssetItem *> kxAssetItemFactory::findItems(kxAssetCategoryType category, const QUrl &url)
{
    const bool isAnywhere = !url.isValid();
    const QString directory = url.toString() + QLatin1Char('/');
    std::set<kxAssetItem *> found;
    for (kxAssetItem *item : _items->sorted())
        if ((category == Undefined || item->hasCategory(category)) &&
            (isAnywhere || item->directoryUrl().toString().startsWith(directory, Qt::CaseSensitive)))
            found.insert(item);
    return found;
}

std::set<kxAssetItem *> kxAssetItemFactory::findItems(const QUrl &url)
{
    std::set<kxAssetItem *> found;
    for (kxAssetItem *item : _items->sorted())
        if (item->directoryUrl() == url)
            found.insert(item);
    return found;
}

kxAssetItem *kxAssetItemFactory::createOrUpdateItem(const kxAssetItemDocument &document)
{
    const std::string uuid = document.getAssetUUID();
    if (kxAssetItem *known = findItem(uuid)) {
        known->readMetaData(document);
        assert(known->uuid() == uuid && "the UUID of a registered item changed");
        return known;
    }
    std::unique_ptr<kxAssetItem> item = makeItem(document);
    if (!item)
        return nullptr;
    item->readMetaData(document);
    addItem(item.get());
    return item.release();
}

bool kxAssetItemFactory::addItem(kxAssetItem *item)
{
    if (!item)
        return false;
    if (_items->find(item->uuid()) == item) {
        kxLog::error("Item UUID already in use! %s", item->uuid().c_str());
        return false;
    }
    _items->insert(item);
    if (item->hasCategory(Sceneplate))
        sendSceneplatesChangeNotification();
    return true;
}

void kxAssetItemFactory::deleteAllItems()
{
    // Out of the registry first: whatever a destructor sets off finds no item that is about to go.
    for (kxAssetItem *item : _items->takeAll())
        delete item;
    sendSceneplatesChangeNotification();
}

void kxAssetItemFactory::deleteItems(const std::set<kxAssetItem *> &items)
{
    std::vector<std::string> uuids;
    for (kxAssetItem *item : items)
        if (item)
            uuids.push_back(item->uuid());
    for (kxAssetItem *item : _items->take(uuids))
        delete item;
    sendSceneplatesChangeNotification();
}

void kxAssetItemFactory::deleteItem(const std::string &uuid)
{
    for (kxAssetItem *item : _items->take({uuid}))
        delete item;
    sendSceneplatesChangeNotification();
}

void kxAssetItemFactory::printItems(const QUrl &url) const
{
    const QString beginning = url.toString();
    printLine("printItems");
    for (kxAssetItem *item : _items->sorted()) {
        const QString directory = item->directoryUrl().toString();
        if (!directory.startsWith(beginning, Qt::CaseSensitive))
            continue;
        printLine(directory.toStdString());
        printLine("   " + item->uuid());
    }
}

int kxAssetItemFactory::indexFromItem(const kxAssetItem *item) const
{
    // The registry's own pointers are not const, and comparing changes nothing.
    return item ? static_cast<int>(_items->position(const_cast<kxAssetItem *>(item))) : -1;
}

kxAssetItem *kxAssetItemFactory::itemFromIndex(int index) const
{
    return index >= 0 && index < itemCount() ? _items->sorted()[static_cast<std::size_t>(index)] : nullptr;
}

int kxAssetItemFactory::itemCount() const
{
    return static_cast<int>(_items->size());
}

void kxAssetItemFactory::cleanupMaterialItems()
{
    for (kxMaterialAssetItem *item : materialItems())
        item->invalidateMaterial();
}

std::set<kxMaterialAssetItem *> kxAssetItemFactory::materialItems()
{
    std::set<kxMaterialAssetItem *> found;
    for (kxAssetItem *item : _items->sorted())
        if (auto *materialItem = dynamic_cast<kxMaterialAssetItem *>(item))
            found.insert(materialItem);
    return found;
}

void kxAssetItemFactory::sendSceneplatesChangeNotification()
{
    if (!_notificationTimer->isActive())
        _notificationTimer->start();
}
