// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetSession.h"

#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxUrlManager.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxScenegraph.h"
#include "Support/TemporaryFolder.h"

#include "SmallMaterials.h"

#include <gtest/gtest.h>

TEST(kxAssetSessionTest, BringsUpASceneAndTheLocalDisk)
{
    const kxAssetSession session;

    EXPECT_TRUE(kxScenegraph::getRoot());
    EXPECT_TRUE(kxUrlManager::getUrlManager(QUrl::fromLocalFile("/")));
}

TEST(kxAssetSessionTest, RendersPreviewsWhenMaterialsAreStored)
{
    const kxtest::TemporaryFolder folder;
    const kxAssetSession session;
    const kxtest::Owned material = kxtest::makeSurface("Steel");

    kxtest::store(material, QUrl::fromLocalFile(QString::fromStdString(folder.string())));

    EXPECT_TRUE(kxMaterials::getPreviewImage(material.get()));
    EXPECT_TRUE(folder.contains("MAT_Steel/Steel.png"));
}

TEST(kxAssetSessionTest, LeavesNothingBehind)
{
    const kxtest::TemporaryFolder folder;
    {
        const kxAssetSession session;
        kxtest::store(kxtest::makeSurface("Steel"), QUrl::fromLocalFile(QString::fromStdString(folder.string())));
        ASSERT_EQ(kxAssetItemFactory::the().itemCount(), 1);
    }

    EXPECT_EQ(kxAssetItemFactory::the().itemCount(), 0);
    EXPECT_FALSE(kxScenegraph::getRoot());
}

TEST(kxAssetSessionTest, CanBeStartedAgain)
{
    {
        const kxAssetSession session;
    }

    const kxAssetSession session;

    EXPECT_TRUE(kxScenegraph::getRoot());
}
