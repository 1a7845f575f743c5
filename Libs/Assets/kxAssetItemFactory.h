// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxAssetCategory.h"
#include "Assets/kxAssetsExport.h"

#include <QUrl>

#include <memory>
#include <set>
#include <string>

class QTimer;
class kxAssetItem;
class kxAssetItemDocument;
class kxMaterialAssetItem;

namespace kxAssetsInternal {
class RegisteredItems;
}

/// The registry of all asset items, whatever back-end they came from, in ascending order of UUID.
///
/// It owns its items: a pointer to one is good until one of the delete operations takes it out. When sceneplates may have
/// changed it tells the host's sceneplate service, once for each pass of the event loop. Main thread only, the first
/// access included.
class KX_ASSETS_EXPORT kxAssetItemFactory
{
public:
    static kxAssetItemFactory &the();

    kxAssetItemFactory(const kxAssetItemFactory &) = delete;
    kxAssetItemFactory &operator=(const kxAssetItemFactory &) = delete;

    /// Null when there is none. Does not slow down when many items are being registered.
    kxAssetItem *findItem(const std::string &uuid) const;
    /// The items of the category (Undefined: of any) that are stored anywhere below \a url (an invalid one: anywhere),
    /// but not in \a url itself.
    std::set<kxAssetItem *> findItems(kxAssetCategoryType category, const QUrl &url);
    /// The items stored in exactly this directory.
    std::set<kxAssetItem *> findItems(const QUrl &url);

    /// Has the item with the document's UUID read it, or registers a new item of the class that the document calls for.
    /// Expects a document with valid metadata.
    ///
    /// Null for an unknown category. An environment whose material type is unknown counts as a node.
    kxAssetItem *createOrUpdateItem(const kxAssetItemDocument &document);

    void deleteAllItems();
    /// Deletes the registered items that have the UUIDs of \a items; nulls are passed over.
    void deleteItems(const std::set<kxAssetItem *> &items);
    void deleteItem(const std::string &uuid);

    /// Lists the items whose directory begins with the text of \a url on standard output.
    void printItems(const QUrl &url) const;

    /// Positions shift when items with smaller UUIDs come or go; -1 when this very object is not registered.
    int indexFromItem(const kxAssetItem *item) const;
    /// Null when out of range.
    kxAssetItem *itemFromIndex(int index) const;
    int itemCount() const;

    /// Has every material item release its material.
    void cleanupMaterialItems();

private:
    friend class kxAssetItemFactoryTest;

    kxAssetItemFactory();
    /// Leaves items that are still registered undeleted: what they refer to may be gone by then. Whoever unloads the
    /// library calls deleteAllItems() before.
    ~kxAssetItemFactory();

    /// Takes ownership, but for null and the object that stands first of its UUID already: false.
    bool addItem(kxAssetItem *item);
    std::set<kxMaterialAssetItem *> materialItems();
    void sendSceneplatesChangeNotification();

    std::unique_ptr<kxAssetsInternal::RegisteredItems> _items;
    std::unique_ptr<QTimer> _notificationTimer;
};
