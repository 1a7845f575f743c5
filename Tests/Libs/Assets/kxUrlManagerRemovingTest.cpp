// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "PlainItem.h"
#include "Support/CapturedOutput.h"
#include "UrlManagerFixture.h"

namespace {

using kxUrlManagerRemovingTest = UrlManagerFixture;

/// Removes the metadata of the directory, and not all the rest.
class HalfRemovingManager final : public TestUrlManager
{
    bool accepts(const QUrl &url) const override { return url.scheme() == QLatin1String("half"); }
    bool removeDirectory(const QUrl &url) const override
    {
        TestUrlManager::removeDirectory(url);
        return false;
    }
};

} // namespace

TEST_F(kxUrlManagerRemovingTest, RemovesTheOldDirectoryOfAnAssetThatMoved)
{
    manager.write("/lib/old/a.xml", metadata(First));
    manager.write("/lib/new/a.xml", metadata(First));
    manager.collectItems(url("/lib/old"), Material, nullptr);
    kxAssetItem *oldItem = kxAssetItemFactory::the().findItem(First);
    PlainItem newItem(Material, First);
    newItem.setDirectoryUrl(url("/lib/new"));

    kxtest::CapturedOutput output;
    EXPECT_TRUE(manager.removeOldItemDirectory(oldItem, &newItem));

    EXPECT_EQ(output.text(), "deleting: test:/lib/old\n");
    EXPECT_FALSE(manager.exists(url("/lib/old")));
    EXPECT_TRUE(manager.exists(url("/lib/new")));
    EXPECT_EQ(kxAssetItemFactory::the().findItem(First), nullptr);
}

TEST_F(kxUrlManagerRemovingTest, KeepsTheDirectoryButNotTheEntryWhenAnAssetStays)
{
    manager.write("/lib/a/a.xml", metadata(First));
    manager.collectItems(url("/lib/a"), Material, nullptr);
    PlainItem newItem(Material, First);
    newItem.setDirectoryUrl(url("/lib/a"));

    kxtest::CapturedOutput output;
    EXPECT_TRUE(manager.removeOldItemDirectory(kxAssetItemFactory::the().findItem(First), &newItem));

    EXPECT_EQ(output.text(), "");
    EXPECT_TRUE(manager.exists(url("/lib/a")));
    EXPECT_EQ(kxAssetItemFactory::the().findItem(First), nullptr);
}

TEST_F(kxUrlManagerRemovingTest, RemovesTheNewDirectoryWhenTheOldOneStays)
{
    manager.write("/lib/old/a.xml", metadata(First));
    manager.write("/lib/new/a.xml", metadata(First));
    manager.stubborn = {"/lib/old"};
    manager.collectItems(url("/lib/old"), Material, nullptr);
    PlainItem newItem(Material, First);
    newItem.setDirectoryUrl(url("/lib/new"));

    kxtest::CapturedOutput output;
    EXPECT_FALSE(manager.removeOldItemDirectory(kxAssetItemFactory::the().findItem(First), &newItem));

    EXPECT_EQ(output.text(), "deleting: test:/lib/old\ndeleting old directory failed.\n");
    EXPECT_FALSE(manager.exists(url("/lib/new")));
    EXPECT_NE(kxAssetItemFactory::the().findItem(First), nullptr);
}

TEST_F(kxUrlManagerRemovingTest, KeepsTheNewDirectoryWhereTheOldAssetIsGoneThoughItsDirectoryIsNot)
{
    static HalfRemovingManager half; // it stays in the registry
    kxUrlManager::registerManager(&half);
    half.write("/lib/old/a.xml", metadata(First));
    half.write("/lib/new/a.xml", metadata(First));
    PlainItem oldItem(Material, First);
    oldItem.setDirectoryUrl(QUrl("half:/lib/old"));
    PlainItem newItem(Material, First);
    newItem.setDirectoryUrl(QUrl("half:/lib/new"));
    manager.write("/lib/registered/a.xml", metadata(First));
    manager.collectItems(url("/lib"), Material, nullptr);

    kxtest::CapturedOutput output;
    EXPECT_TRUE(half.removeOldItemDirectory(&oldItem, &newItem));

    EXPECT_EQ(output.text(), "deleting: half:/lib/old\n");
    EXPECT_TRUE(half.exists(url("/lib/new")));
    EXPECT_EQ(registered(), Uuids{});
}

TEST_F(kxUrlManagerRemovingTest, RemovesTheOldDirectoryOfAnAssetThatChangedItsCategory)
{
    manager.write("/lib/old/a.xml", metadata(First, "Materials"));
    manager.write("/lib/new/a.xml", metadata(First, "Geometries"));
    PlainItem oldItem(Material, First);
    oldItem.setDirectoryUrl(url("/lib/old"));
    PlainItem newItem(Geometry, First);
    newItem.setDirectoryUrl(url("/lib/new"));

    EXPECT_TRUE(manager.removeOldItemDirectory(&oldItem, &newItem));

    EXPECT_FALSE(manager.exists(url("/lib/old")));
    EXPECT_TRUE(manager.exists(url("/lib/new")));
}

TEST_F(kxUrlManagerRemovingTest, DeletesTheEntryOfTheNewItemWhateverTheOldOneWas)
{
    manager.write("/lib/a/a.xml", metadata(First));
    manager.write("/lib/b/b.xml", metadata(Second));
    manager.collectItems(url("/lib"), Material, nullptr);
    PlainItem newItem(Material, Second);
    newItem.setDirectoryUrl(url("/lib/c"));

    EXPECT_TRUE(manager.removeOldItemDirectory(kxAssetItemFactory::the().findItem(First), &newItem));

    EXPECT_EQ(registered(), (Uuids{First}));
    EXPECT_TRUE(manager.exists(url("/lib/a"))) << "it holds another asset";
}

TEST_F(kxUrlManagerRemovingTest, NeedsBothItemsToRemoveAnOldDirectory)
{
    manager.write("/lib/a/a.xml", metadata(First));
    manager.collectItems(url("/lib"), Material, nullptr);
    PlainItem item(Material, First);

    EXPECT_FALSE(manager.removeOldItemDirectory(nullptr, &item));
    EXPECT_FALSE(manager.removeOldItemDirectory(&item, nullptr));

    EXPECT_EQ(registered(), (Uuids{First}));
}

TEST_F(kxUrlManagerRemovingTest, KeepsAnOldDirectoryThatItCannotBeSureOf)
{
    manager.write("/lib/old/a.xml", metadata(First));
    manager.write("/lib/new/a.xml", metadata(First));
    manager.write("/lib/foreign/a.xml", metadata(Second));
    PlainItem oldItem(Material, First);
    oldItem.setDirectoryUrl(url("/lib/old"));
    const auto isKept = [&](const QUrl &newDirectory, kxAssetCategoryType newCategory) {
        PlainItem newItem(newCategory, First);
        newItem.setDirectoryUrl(newDirectory);
        return manager.removeOldItemDirectory(&oldItem, &newItem) && manager.exists(url("/lib/old"));
    };

    kxtest::CapturedOutput output;
    EXPECT_TRUE(isKept(QUrl("nowhere:/lib/new"), Material)) << "of another back-end";
    EXPECT_TRUE(isKept(url("/lib/foreign"), Material)) << "the new directory holds another asset";
    EXPECT_TRUE(isKept(url("/lib/none"), Material)) << "the new directory holds none";
    EXPECT_TRUE(isKept(url("/lib/new"), Geometry)) << "the asset there is of another category";
    oldItem.setDirectoryUrl(url("/lib/foreign"));
    EXPECT_TRUE(isKept(url("/lib/new"), Material)) << "the old directory holds another asset";
    EXPECT_TRUE(manager.exists(url("/lib/foreign")));
    EXPECT_EQ(output.text(), "");
}
