// SPDX-License-Identifier: Apache-2.0
// What those who derive items in other libraries rely on.
#include "Assets/kxAssetItem.h"

#include "Assets/kxAssetItemDocument.h"
#include "PlainItem.h"
#include "VirtualTable.h"

#include <gtest/gtest.h>

#include <QVariant>

#include <functional>
#include <map>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace {

/// Each of the first three leaves out one of what subclasses have to answer.
struct SavesNothing : kxAssetItem
{
    void initFrom(osg::AttachmentContainerPtr, const std::string &, bool) override {}
    QString mimeType() override { return {}; }
};
struct IsMadeFromNothing : kxAssetItem
{
    bool save(const QUrl &) override { return false; }
    QString mimeType() override { return {}; }
};
struct IsNeverDragged : kxAssetItem
{
    bool save(const QUrl &) override { return false; }
    void initFrom(osg::AttachmentContainerPtr, const std::string &, bool) override {}
};
struct IsComplete : SavesNothing
{
    bool save(const QUrl &) override { return false; }
};

// What each of them asks is whether code of any class may call it.
template <class Item>
concept OffersReset = requires(Item &item)
{
    item.reset();
};
template <class Item>
concept OffersStamping = requires(Item &item)
{
    item.updateAssetAttachment(nullptr);
};
template <class Item>
concept OffersNewUuids = requires
{
    Item::generateUUID();
};
template <class Item>
concept OffersParsing = requires
{
    Item::getUUIDFromString("");
};
template <class Item>
concept OffersInitUuid = requires(Item &item)
{
    item.initUUID(nullptr, "", true);
};

/// Makes the protected operations of the slots nameable.
struct Slots : kxAssetItem
{
    static constexpr auto Reset = &Slots::reset;
    static constexpr auto UpdateAssetAttachment = &Slots::updateAssetAttachment;
};

/// The number of a virtual operation in its table, of which the destructor takes the first two places.
template <class Member> std::ptrdiff_t slotOf(Member member)
{
    return tableEntryOf(member) - 1;
}

} // namespace

TEST(kxAssetItemInterfaceTest, LeavesThreeOperationsToItsSubclasses)
{
    EXPECT_TRUE(std::is_abstract_v<SavesNothing>);
    EXPECT_TRUE(std::is_abstract_v<IsMadeFromNothing>);
    EXPECT_TRUE(std::is_abstract_v<IsNeverDragged>);
    EXPECT_FALSE(std::is_abstract_v<IsComplete>);
    EXPECT_TRUE(std::has_virtual_destructor_v<kxAssetItem>);
}

TEST(kxAssetItemInterfaceTest, KeepsFiveOperationsForItsSubclasses)
{
    EXPECT_FALSE(OffersReset<kxAssetItem>);
    EXPECT_FALSE(OffersStamping<kxAssetItem>);
    EXPECT_FALSE(OffersNewUuids<kxAssetItem>);
    EXPECT_FALSE(OffersParsing<kxAssetItem>);
    EXPECT_FALSE(OffersInitUuid<kxAssetItem>);

    // Made public, they are seen.
    EXPECT_TRUE(OffersReset<PlainItem> && OffersStamping<PlainItem> && OffersNewUuids<PlainItem> &&
                OffersParsing<PlainItem> && OffersInitUuid<PlainItem>);
}

TEST(kxAssetItemInterfaceTest, KeepsTheOrderOfItsVirtualOperations)
{
    const std::vector<std::ptrdiff_t> order = {
        slotOf(&kxAssetItem::save),
        slotOf(&kxAssetItem::readMetaData),
        slotOf(&kxAssetItem::writeMetaData),
        slotOf(&kxAssetItem::uuid),
        slotOf(&kxAssetItem::name),
        slotOf(&kxAssetItem::category),
        slotOf(&kxAssetItem::hasCategory),
        slotOf(&kxAssetItem::previewImage),
        slotOf(&kxAssetItem::setPreviewImage),
        slotOf(&kxAssetItem::addOverlayIcon),
        slotOf(&kxAssetItem::directoryUrl),
        slotOf(&kxAssetItem::setDirectoryUrl),
        slotOf(&kxAssetItem::changeName),
        slotOf(&kxAssetItem::checksum),
        slotOf(&kxAssetItem::hasSameChecksum),
        slotOf(&kxAssetItem::lastModified),
        slotOf(&kxAssetItem::initFrom),
        slotOf(&kxAssetItem::data),
        slotOf(&kxAssetItem::sortData),
        slotOf(&kxAssetItem::mimeType),
        slotOf(&kxAssetItem::loadPreviewImage),
        slotOf(Slots::Reset),
        slotOf(Slots::UpdateAssetAttachment),
    };

    EXPECT_EQ(tableEntriesOf("_ZTV11kxAssetItem"), 25U) << "none beside these and the two of the destructor";
    EXPECT_EQ(order, (std::vector<std::ptrdiff_t>{1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12,
                                                  13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23}));
}

#ifndef QT_NO_DEBUG
TEST(kxAssetItemInterfaceTest, IsUsedOnTheMainThread)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    PlainItem item;
    kxAssetItemDocument document;
    auto *const toBeDeleted = new PlainItem;
    const std::map<std::string, std::function<void()>> uses = {
        {"getPreviewImageLoader", [] { kxAssetItem::getPreviewImageLoader(); }},
        {"constructor", [] { const PlainItem another; }},
        {"destructor", [toBeDeleted] { delete toBeDeleted; }},
        {"readMetaData", [&] { item.readMetaData(document); }},
        {"writeMetaData", [&] { item.writeMetaData(document); }},
        {"uuid", [&] { item.uuid(); }},
        {"name", [&] { item.name(); }},
        {"category", [&] { item.category(); }},
        {"hasCategory", [&] { item.hasCategory(Material); }},
        {"previewImage", [&] { item.previewImage(); }},
        {"setPreviewImage", [&] { item.setPreviewImage({}); }},
        {"directoryUrl", [&] { item.directoryUrl(); }},
        {"setDirectoryUrl", [&] { item.setDirectoryUrl({}); }},
        {"changeName", [&] { item.changeName("unnamed"); }},
        {"checksum", [&] { item.checksum(); }},
        {"hasSameChecksum", [&] { item.hasSameChecksum(nullptr); }},
        {"lastModified", [&] { item.lastModified(); }},
        {"setLastModified", [&] { item.setLastModified({}); }},
        {"data", [&] { item.data(0, Qt::DisplayRole); }},
        {"sortData", [&] { item.sortData(2); }},
        {"loadPreviewImage", [&] { item.loadPreviewImage(true); }},
        {"parentDirectoryUrl", [&] { item.parentDirectoryUrl(); }},
        {"hasValidSaveLocation", [&] { item.hasValidSaveLocation(); }},
        {"getTag", [&] { item.getTag(); }},
        {"reset", [&] { item.reset(); }},
        {"updateAssetAttachment", [&] { item.updateAssetAttachment(nullptr); }},
        {"initUUID", [&] { item.initUUID(nullptr, {}, false); }},
    };

    for (const auto &[name, use] : uses)
        EXPECT_DEATH(std::thread(use).join(), "ASSERT: .*isOnMainThread") << name;

    delete toBeDeleted;
}
#endif
