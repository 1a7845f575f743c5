// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "PlainItem.h"
#include "UrlManagerFixture.h"

#include <QDomDocument>
#include <QProgressDialog>
#include <QTimer>

namespace {

using kxUrlManagerCollectingTest = UrlManagerFixture;

} // namespace

TEST_F(kxUrlManagerCollectingTest, CollectsAssetsThroughPlainFoldersAndStopsAtAssets)
{
    manager.write("/lib/MAT_A/a.xml", metadata(First));
    manager.write("/lib/MAT_A/inner/MAT_X/x.xml", metadata(Third));
    manager.write("/lib/Folder/MAT_B/b.xml", metadata(Second));

    std::set<kxAssetItem *> items;
    manager.collectItems(url("/lib"), Material, items, nullptr, false);

    EXPECT_EQ(registered(), (Uuids{First, Second}));
    EXPECT_EQ(items.size(), 2U);
    kxAssetItem *item = kxAssetItemFactory::the().findItem(Second);
    EXPECT_EQ(item->directoryUrl(), url("/lib/Folder/MAT_B"));
    EXPECT_EQ(item->lastModified(), QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5)));
}

TEST_F(kxUrlManagerCollectingTest, ReadsEachMetadataFileOnce)
{
    manager.write("/lib/MAT_A/a.xml", metadata(First));
    manager.write("/lib/Folder/MAT_B/b.xml", metadata(Second));
    manager.write("/lib/Folder/broken.xml", "<broken");

    manager.collectItems(url("/lib"), Undefined, nullptr);

    for (const char *path : {"/lib/MAT_A/a.xml", "/lib/Folder/MAT_B/b.xml", "/lib/Folder/broken.xml"})
        EXPECT_EQ(manager.documentReads[QString::fromUtf8(path)], 1) << path;
}

TEST_F(kxUrlManagerCollectingTest, AsksASlowPlaceOnlyWhatItMust)
{
    manager.delayInMilliseconds = 1;
    for (int i = 0; i < 20; ++i)
        manager.write(QStringLiteral("/lib/MAT_%1/a.xml").arg(i),
                      metadata("40000000-0000-4000-8000-0000000000" + std::to_string(10 + i)));

    manager.collectItems(url("/lib"), Material, nullptr);

    // The root's files and sub-directories, then each asset's files and its one document.
    EXPECT_EQ(manager.calls, 2 + 20 * 2);
    EXPECT_EQ(kxAssetItemFactory::the().itemCount(), 20);
}

TEST_F(kxUrlManagerCollectingTest, SearchesBelowAssetsOfOtherCategories)
{
    manager.write("/lib/GEO_A/a.xml", metadata(First, "Geometries"));
    manager.write("/lib/GEO_A/MAT_B/b.xml", metadata(Second));

    manager.collectItems(url("/lib"), Material, nullptr);

    EXPECT_EQ(registered(), (Uuids{Second}));
}

TEST_F(kxUrlManagerCollectingTest, RegistersEveryMetadataFileOfADirectory)
{
    manager.write("/lib/MAT_A/a.xml", metadata(First));
    manager.write("/lib/MAT_A/b.xml", metadata(Second));

    manager.collectItems(url("/lib/MAT_A"), Material, nullptr);

    EXPECT_EQ(registered(), (Uuids{First, Second}));
}

TEST_F(kxUrlManagerCollectingTest, ReadsOnlyTheDirectoryItselfWhenAskedTo)
{
    manager.write("/lib/a.txt", "");
    manager.write("/lib/MAT_A/a.xml", metadata(First));

    std::set<kxAssetItem *> items;
    manager.collectItems(url("/lib"), Material, items, nullptr, true);

    EXPECT_TRUE(items.empty());
    EXPECT_EQ(manager.log, (std::vector<QString>{"files /lib"}));
}

TEST_F(kxUrlManagerCollectingTest, PassesOverDocumentsThatDescribeNoAsset)
{
    manager.write("/lib/1.xml", "<x/>");
    manager.write("/lib/2.xml", metadata("", "Materials"));
    manager.write("/lib/3.xml", metadata(Third, "Materials").replace("UBRDFMaterial", "ChunkMaterial"));
    manager.write("/lib/below/a.xml", metadata(First));

    manager.collectItems(url("/lib"), Undefined, nullptr);

    EXPECT_EQ(registered(), (Uuids{First}));
    EXPECT_FALSE(manager.containsItems(url("/lib"), Undefined));
    EXPECT_FALSE(manager.containsItem(url("/lib"), Undefined, Third));
}

TEST_F(kxUrlManagerCollectingTest, HasMetadataReadIntoEmptyDocumentsOfOneName)
{
    /// Notes into what it is to read, which stays empty.
    class Noting final : public TestUrlManager
    {
    public:
        bool accepts(const QUrl &url) const override { return url.scheme() == QLatin1String("noting"); }
        bool loadDocumentFromFile(const QUrl &, QDomDocument &document) const override
        {
            names.push_back(document.doctype().name());
            areEmpty = areEmpty && document.documentElement().isNull();
            return false;
        }
        mutable QStringList names;
        mutable bool areEmpty = true;
    };
    static Noting noting; // it stays in the registry
    kxUrlManager::registerManager(&noting);
    noting.write("/a/Red.xml", metadata(First));
    const auto namesAfter = [](auto operation) {
        noting.names.clear();
        operation();
        return noting.names;
    };
    PlainItem item(Material, First);
    item.setDirectoryUrl(QUrl("noting:/a"));
    osg::MaterialPtr material;
    const QStringList once{"document"};

    EXPECT_EQ(namesAfter([] { noting.collectItems(url("/a"), Undefined, nullptr); }), once);
    EXPECT_EQ(namesAfter([] { noting.containsItems(url("/a"), Undefined); }), once);
    EXPECT_EQ(namesAfter([] { noting.containsItem(url("/a"), Undefined, First); }), once);
    EXPECT_EQ(namesAfter([&item] { kxUrlManager::updateItem(&item); }), once);
    EXPECT_EQ(namesAfter([&material] { noting.loadMaterialFromDir(url("/a"), material); }), once);
    EXPECT_TRUE(noting.areEmpty);
}

TEST_F(kxUrlManagerCollectingTest, DeletesNoItemThatAScanDoesNotFindAgain)
{
    manager.write("/lib/MAT_A/a.xml", metadata(First));
    manager.collectItems(url("/lib"), Undefined, nullptr);
    manager.removeDirectory(url("/lib"));

    manager.collectItems(url("/lib"), Undefined, nullptr);

    EXPECT_EQ(registered(), (Uuids{First}));
}

TEST_F(kxUrlManagerCollectingTest, ListsMetadataInTheOrderOfThePlace)
{
    class Listing final : public TestUrlManager
    {
    public:
        std::vector<QUrl> files(const QUrl &url, const QStringList &nameFilters, QDir::SortFlags sort) override
        {
            isAsWanted = isAsWanted && nameFilters == QStringList{"*.xml"} && sort == QDir::NoSort;
            return TestUrlManager::files(url, nameFilters, sort);
        }
        bool isAsWanted = true;
    } listing;

    listing.collectItems(url("/lib"), Material, nullptr);
    EXPECT_TRUE(listing.isAsWanted);
    listing.containsItem(url("/lib"), Material, First);
    EXPECT_TRUE(listing.isAsWanted);
}

TEST_F(kxUrlManagerCollectingTest, DoesNothingWhenCancelledBefore)
{
    manager.write("/lib/MAT_A/a.xml", metadata(First));
    QProgressDialog dialog;
    dialog.cancel();

    manager.collectItems(url("/lib"), Material, &dialog);

    EXPECT_TRUE(manager.log.empty());
}

TEST_F(kxUrlManagerCollectingTest, StopsBetweenFilesWhenCancelledAndKeepsWhatItHas)
{
    manager.write("/lib/MAT_A/a.xml", metadata(First));
    manager.write("/lib/MAT_B/b.xml", metadata(Second));
    manager.write("/lib/MAT_C/c.xml", metadata(Third));
    QProgressDialog dialog;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &dialog, [&dialog] {
        if (kxAssetItemFactory::the().itemCount() == 1)
            dialog.cancel();
    });
    timer.start(0);

    std::set<kxAssetItem *> items;
    manager.collectItems(url("/lib"), Material, items, &dialog, false);

    EXPECT_EQ(registered(), (Uuids{First}));
    EXPECT_EQ(items.size(), 1U);
    EXPECT_EQ(manager.documentReads[QStringLiteral("/lib/MAT_C/c.xml")], 0);
}

TEST_F(kxUrlManagerCollectingTest, ReadsNoOtherFileAndGoesNoDeeperWhenCancelled)
{
    manager.write("/lib/1.xml", "<broken");
    manager.write("/lib/2.xml", metadata(First));
    manager.write("/lib/below/3.xml", metadata(Second));
    QProgressDialog dialog;
    int passes = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &dialog, [&] {
        if (++passes == 2)
            dialog.cancel();
    });
    timer.start(0);

    manager.collectItems(url("/lib"), Material, &dialog);

    EXPECT_EQ(manager.log, (std::vector<QString>{"files /lib", "loadDocumentFromFile /lib/1.xml"}));
}

TEST_F(kxUrlManagerCollectingTest, LeavesTheRangeValueAndTextOfTheDialogAlone)
{
    manager.write("/lib/MAT_A/a.xml", metadata(First));
    QProgressDialog dialog("Scanning", "Stop", 3, 17);
    dialog.setValue(5);

    manager.collectItems(url("/lib"), Material, &dialog);

    EXPECT_EQ(registered(), (Uuids{First}));
    EXPECT_EQ(dialog.minimum(), 3);
    EXPECT_EQ(dialog.maximum(), 17);
    EXPECT_EQ(dialog.value(), 5);
    EXPECT_EQ(dialog.labelText(), "Scanning");
}

TEST_F(kxUrlManagerCollectingTest, ToleratesThatTheRegistryIsEmptiedDuringAScan)
{
    manager.write("/lib/MAT_A/a.xml", metadata(First));
    manager.write("/lib/MAT_B/b.xml", metadata(Second));
    QProgressDialog dialog;
    QTimer::singleShot(0, &dialog, [] { kxAssetItemFactory::the().deleteAllItems(); });

    manager.collectItems(url("/lib"), Material, &dialog);

    EXPECT_EQ(kxAssetItemFactory::the().findItem(Second)->uuid(), Second);
}

TEST_F(kxUrlManagerCollectingTest, UpdatesItemsInPlace)
{
    manager.write("/lib/MAT_A/a.xml", metadata(First));
    manager.collectItems(url("/lib"), Material, nullptr);
    kxAssetItem *item = kxAssetItemFactory::the().findItem(First);

    manager.write("/lib/MAT_A/a.xml", metadata(First, "Materials", "Blue"));
    manager.collectItems(url("/lib"), Material, nullptr);

    EXPECT_EQ(kxAssetItemFactory::the().findItem(First), item);
    EXPECT_EQ(item->name(), "Blue");
}

TEST_F(kxUrlManagerCollectingTest, AsksTheFileSystemAgainForEachScan)
{
    manager.write("/lib/MAT_A/a.xml", metadata(First));
    manager.collectItems(url("/lib"), Material, nullptr);
    manager.write("/lib/MAT_B/b.xml", metadata(Second));

    manager.collectItems(url("/lib"), Material, nullptr);

    EXPECT_EQ(registered(), (Uuids{First, Second}));
}
