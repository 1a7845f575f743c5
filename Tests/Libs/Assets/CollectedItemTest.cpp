// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/CollectedItem.h"

#include "PlainItem.h"
#include "TestUrlManager.h"

#include <gtest/gtest.h>

using kxAssetsInternal::placeCollected;

TEST(CollectedItemTest, IsPlacedWhereItsMetadataLies)
{
    TestUrlManager manager;
    manager.write(QStringLiteral("/a/Red.xml"), "<item/>");
    const QUrl file = TestUrlManager::url(QStringLiteral("/a/Red.xml"));
    PlainItem item(Material, "1");
    std::set<kxAssetItem *> items;

    EXPECT_TRUE(placeCollected(&item, manager, file, items));

    EXPECT_EQ(items, std::set<kxAssetItem *>{&item});
    EXPECT_EQ(item.directoryUrl(), TestUrlManager::url(QStringLiteral("/a")));
    EXPECT_EQ(item.lastModified(), manager.lastModified(file));
}

TEST(CollectedItemTest, IsPassedOverWhereNothingWasRegistered)
{
    TestUrlManager manager;
    std::set<kxAssetItem *> items;

    EXPECT_FALSE(placeCollected(nullptr, manager, TestUrlManager::url(QStringLiteral("/a/Red.xml")), items));

    EXPECT_TRUE(items.empty());
}
