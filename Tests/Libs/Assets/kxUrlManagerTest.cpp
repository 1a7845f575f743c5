// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxUrlManager.h"

#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxLocalUrlManager.h"
#include "Kernel/kxLogRecorder.h"
#include "PlainItem.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "Support/CapturedOutput.h"
#include "TestUrlManager.h"

#include <QBuffer>
#include <QDomDocument>
#include <QImage>
#include <QPixmap>
#include <QProgressDialog>
#include <QTimer>

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>

namespace {

const std::string First = "10000000-0000-4000-8000-000000000001";
const std::string Second = "20000000-0000-4000-8000-000000000002";
const std::string Third = "30000000-0000-4000-8000-000000000003";

QByteArray metadata(const std::string &uuid, const char *category = "Materials", const char *name = "Red")
{
    const QByteArray material = QByteArray(category) == "Materials"
                                    ? QByteArray("<material><type>UBRDFMaterial</type></material>")
                                    : QByteArray();
    return QByteArray("<!DOCTYPE SARNAsset><item><category>") + category + "</category><uuid>" +
           QByteArray::fromStdString(uuid) + "</uuid><name>" + name + "</name>" + material + "</item>";
}

QByteArray png(QRgb color)
{
    QImage image(2, 2, QImage::Format_RGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

/// One back-end for the process, as it can never be taken out of the registry; emptied for each test.
TestUrlManager &backEnd()
{
    static TestUrlManager manager;
    return manager;
}

class kxUrlManagerTest : public testing::Test
{
protected:
    kxUrlManagerTest()
    {
        kxAssetItemFactory::the().deleteAllItems();
        manager = TestUrlManager();
        kxUrlManager::registerManager(&manager);
    }
    ~kxUrlManagerTest() override { kxAssetItemFactory::the().deleteAllItems(); }

    static QUrl url(const char *path) { return TestUrlManager::url(QString::fromUtf8(path)); }
    static std::vector<std::string> registered()
    {
        std::vector<std::string> uuids;
        uuids.reserve(static_cast<std::size_t>(kxAssetItemFactory::the().itemCount()));
        for (int i = 0; i < kxAssetItemFactory::the().itemCount(); ++i)
            uuids.push_back(kxAssetItemFactory::the().itemFromIndex(i)->uuid());
        return uuids;
    }

    TestUrlManager &manager = backEnd();
};

using Uuids = std::vector<std::string>;

} // namespace

TEST_F(kxUrlManagerTest, FindsTheBackEndThatAcceptsTheUrl)
{
    EXPECT_EQ(kxUrlManager::getUrlManager(url("/a")), &manager);
    EXPECT_EQ(kxUrlManager::getUrlManager(QUrl("nowhere:/a")), nullptr);
    EXPECT_EQ(kxUrlManager::getUrlManager(QUrl()), nullptr);
}

TEST_F(kxUrlManagerTest, IgnoresNullAndSecondRegistrations)
{
    kxUrlManager::registerManager(nullptr);
    kxUrlManager::registerManager(&manager);

    EXPECT_EQ(kxUrlManager::getUrlManager(url("/a")), &manager);
}

TEST_F(kxUrlManagerTest, PrefersTheBackEndWithTheLowerAddress)
{
    class Accepting final : public TestUrlManager
    {
        bool accepts(const QUrl &url) const override { return url.scheme() == QLatin1String("both"); }
    };
    static std::array<Accepting, 3> managers; // they stay in the registry

    for (const std::size_t i : {1U, 0U, 2U})
        kxUrlManager::registerManager(&managers[i]);

    EXPECT_EQ(kxUrlManager::getUrlManager(QUrl("both:/a")), managers.data()) << "neither the first nor the last added";
}

TEST_F(kxUrlManagerTest, AsksABackEndOnceHoweverOftenItWasRegistered)
{
    class Refusing final : public TestUrlManager
    {
    public:
        bool accepts(const QUrl &) const override
        {
            ++asked;
            return false;
        }
        mutable int asked = 0;
    };
    static Refusing refusing; // it stays in the registry
    kxUrlManager::registerManager(&refusing);
    kxUrlManager::registerManager(&refusing);
    refusing.asked = 0;

    kxUrlManager::getUrlManager(QUrl("nowhere:/a"));

    EXPECT_EQ(refusing.asked, 1);
}

TEST_F(kxUrlManagerTest, KnowsTheLocalBackEndOnlyWhenSomebodyRegistersIt)
{
    // In a process of its own: other tests register it for good.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            kxUrlManager *local = kxLocalUrlManager::the();
            const bool isUnknown = !kxUrlManager::getUrlManager(QUrl("file:///"));
            kxUrlManager::registerManager(local);
            std::_Exit(isUnknown && kxUrlManager::getUrlManager(QUrl("file:///")) == local ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(kxUrlManagerTest, ShowsUrlsAsTheirBackEndDoesAndOthersAsTheyAre)
{
    EXPECT_EQ(kxUrlManager::getUiString(url("/a b")), "memory/a b");
    EXPECT_EQ(kxUrlManager::getUiString(QUrl("nowhere:/x")), "nowhere:/x");
}

TEST_F(kxUrlManagerTest, TakesTheDigitsAtTheEndAsNumber)
{
    EXPECT_EQ(TestUrlManager::getNumberSuffix("Chair12"), "12");
    EXPECT_EQ(TestUrlManager::getNumberSuffix("Chair007"), "007");
    EXPECT_EQ(TestUrlManager::getNumberSuffix("C1hair2"), "2");
    for (const char *text : {"12", "Chair", "", "Chair12 ", "Chair12345678901"})
        EXPECT_TRUE(TestUrlManager::getNumberSuffix(text).isNull()) << text;
}

TEST_F(kxUrlManagerTest, LooksForPreviewsNamedAfterThePayloadThenTheMetadata)
{
    manager.write("/both/a.osb", "1");
    manager.write("/both/b.xml", "<x/>");
    manager.write("/meta/b.xml", "<x/>");

    EXPECT_EQ(manager.getImageFileFilter(url("/both")), (QStringList{"a.png", "a.vif"}));
    EXPECT_EQ(manager.getImageFileFilter(url("/meta")), (QStringList{"b.png", "b.vif"}));
    EXPECT_EQ(manager.getImageFileFilter(url("/none")), (QStringList{"*.png", "*.vif"}));
}

TEST_F(kxUrlManagerTest, LoadsThePreviewOfADirectory)
{
    manager.write("/a/Red.osb", "1");
    manager.write("/a/Red.png", png(0xFFFF0000));
    manager.write("/a/Other.png", png(0xFF00FF00));

    QImage image;
    QPixmap pixmap;
    EXPECT_TRUE(manager.loadImageFromDir(url("/a"), &image));
    EXPECT_TRUE(manager.loadPixmapFromDir(url("/a"), pixmap));
    EXPECT_EQ(image.pixel(0, 0), 0xFFFF0000U);
    EXPECT_EQ(pixmap.toImage().pixel(0, 0), 0xFFFF0000U);
}

TEST_F(kxUrlManagerTest, LeavesTheImageAloneWithoutAPreview)
{
    QImage image(3, 3, QImage::Format_RGB32);

    EXPECT_FALSE(manager.loadImageFromDir(url("/none"), &image));
    EXPECT_EQ(image.size(), QSize(3, 3));
    EXPECT_FALSE(manager.loadImageFromDir(url("/none"), nullptr));
}

TEST_F(kxUrlManagerTest, TriesOnlyTheFirstPreview)
{
    manager.write("/a/Red.osb", "1");
    manager.write("/a/Red.png", "broken");
    manager.write("/a/Red.vif", png(0xFFFF0000));

    QImage image;
    EXPECT_FALSE(manager.loadImageFromDir(url("/a"), &image));
}

TEST_F(kxUrlManagerTest, LoadsTheFirstDocumentThatCanBeRead)
{
    manager.write("/a/1.xml", "<broken");
    manager.write("/a/2.xml", metadata(First));
    manager.write("/a/3.xml", metadata(Second));

    QDomDocument document;
    QUrl file;
    EXPECT_TRUE(manager.loadDocumentFromDir(url("/a"), document, file));
    EXPECT_EQ(file, url("/a/2.xml"));
    EXPECT_EQ(document.documentElement().firstChildElement("uuid").text().toStdString(), First);
    EXPECT_EQ(manager.documentReads[QStringLiteral("/a/3.xml")], 0);
    EXPECT_TRUE(manager.loadDocumentFromDir(url("/a"), document));
    EXPECT_FALSE(manager.loadDocumentFromDir(url("/none"), document));
}

TEST_F(kxUrlManagerTest, LoadsTheFirstMaterialThatCanBeRead)
{
    manager.write("/a/1.osb", "broken");
    manager.write("/a/2.osb", "0.5");

    osg::MaterialPtr material;
    EXPECT_TRUE(manager.loadMaterialFromDir(url("/a"), material));
    EXPECT_TRUE(osg::UBRDFMaterialPtr::dcast(material));
    osg::subRef(material);
}

TEST_F(kxUrlManagerTest, CountsALoadedNullAsLoaded)
{
    manager.write("/a/1.osb", "null");

    osg::MaterialPtr material;
    EXPECT_TRUE(manager.loadMaterialFromDir(url("/a"), material));
    EXPECT_FALSE(material);
}

TEST_F(kxUrlManagerTest, RebuildsACompositeThatHasNoPayload)
{
    manager.write("/a/a.xml", "<item><category>Materials</category><uuid>" + QByteArray::fromStdString(First) +
                                  "</uuid><name>Colours</name><material><type>SwitchMaterial</type></material></item>");

    osg::MaterialPtr material;
    EXPECT_TRUE(manager.loadMaterialFromDir(url("/a"), material));
    EXPECT_STREQ(material->getType().getCName(), "SwitchMaterial");
    EXPECT_EQ(material->getRefCount(), 1);
    osg::subRef(material);
}

TEST_F(kxUrlManagerTest, CannotRebuildAPlainMaterial)
{
    manager.write("/a/a.xml", metadata(First));

    osg::MaterialPtr material;
    EXPECT_FALSE(manager.loadMaterialFromDir(url("/a"), material));
    EXPECT_FALSE(material);
}

TEST_F(kxUrlManagerTest, CollectsAssetsThroughPlainFoldersAndStopsAtAssets)
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

TEST_F(kxUrlManagerTest, ReadsEachMetadataFileOnce)
{
    manager.write("/lib/MAT_A/a.xml", metadata(First));
    manager.write("/lib/Folder/MAT_B/b.xml", metadata(Second));
    manager.write("/lib/Folder/broken.xml", "<broken");

    manager.collectItems(url("/lib"), Undefined, nullptr);

    for (const char *path : {"/lib/MAT_A/a.xml", "/lib/Folder/MAT_B/b.xml", "/lib/Folder/broken.xml"})
        EXPECT_EQ(manager.documentReads[QString::fromUtf8(path)], 1) << path;
}

TEST_F(kxUrlManagerTest, AsksASlowPlaceOnlyWhatItMust)
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

TEST_F(kxUrlManagerTest, SearchesBelowAssetsOfOtherCategories)
{
    manager.write("/lib/GEO_A/a.xml", metadata(First, "Geometries"));
    manager.write("/lib/GEO_A/MAT_B/b.xml", metadata(Second));

    manager.collectItems(url("/lib"), Material, nullptr);

    EXPECT_EQ(registered(), (Uuids{Second}));
}

TEST_F(kxUrlManagerTest, RegistersEveryMetadataFileOfADirectory)
{
    manager.write("/lib/MAT_A/a.xml", metadata(First));
    manager.write("/lib/MAT_A/b.xml", metadata(Second));

    manager.collectItems(url("/lib/MAT_A"), Material, nullptr);

    EXPECT_EQ(registered(), (Uuids{First, Second}));
}

TEST_F(kxUrlManagerTest, ReadsOnlyTheDirectoryItselfWhenAskedTo)
{
    manager.write("/lib/a.txt", "");
    manager.write("/lib/MAT_A/a.xml", metadata(First));

    std::set<kxAssetItem *> items;
    manager.collectItems(url("/lib"), Material, items, nullptr, true);

    EXPECT_TRUE(items.empty());
    EXPECT_EQ(manager.log, (std::vector<QString>{"files /lib"}));
}

TEST_F(kxUrlManagerTest, PassesOverDocumentsThatDescribeNoAsset)
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

TEST_F(kxUrlManagerTest, HasMetadataReadIntoEmptyDocumentsOfOneName)
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

TEST_F(kxUrlManagerTest, DeletesNoItemThatAScanDoesNotFindAgain)
{
    manager.write("/lib/MAT_A/a.xml", metadata(First));
    manager.collectItems(url("/lib"), Undefined, nullptr);
    manager.removeDirectory(url("/lib"));

    manager.collectItems(url("/lib"), Undefined, nullptr);

    EXPECT_EQ(registered(), (Uuids{First}));
}

TEST_F(kxUrlManagerTest, ListsMetadataInTheOrderOfThePlace)
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

TEST_F(kxUrlManagerTest, DoesNothingWhenCancelledBefore)
{
    manager.write("/lib/MAT_A/a.xml", metadata(First));
    QProgressDialog dialog;
    dialog.cancel();

    manager.collectItems(url("/lib"), Material, &dialog);

    EXPECT_TRUE(manager.log.empty());
}

TEST_F(kxUrlManagerTest, StopsBetweenFilesWhenCancelledAndKeepsWhatItHas)
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

TEST_F(kxUrlManagerTest, ReadsNoOtherFileAndGoesNoDeeperWhenCancelled)
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

TEST_F(kxUrlManagerTest, LeavesTheRangeValueAndTextOfTheDialogAlone)
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

TEST_F(kxUrlManagerTest, ToleratesThatTheRegistryIsEmptiedDuringAScan)
{
    manager.write("/lib/MAT_A/a.xml", metadata(First));
    manager.write("/lib/MAT_B/b.xml", metadata(Second));
    QProgressDialog dialog;
    QTimer::singleShot(0, &dialog, [] { kxAssetItemFactory::the().deleteAllItems(); });

    manager.collectItems(url("/lib"), Material, &dialog);

    EXPECT_EQ(kxAssetItemFactory::the().findItem(Second)->uuid(), Second);
}

TEST_F(kxUrlManagerTest, UpdatesItemsInPlace)
{
    manager.write("/lib/MAT_A/a.xml", metadata(First));
    manager.collectItems(url("/lib"), Material, nullptr);
    kxAssetItem *item = kxAssetItemFactory::the().findItem(First);

    manager.write("/lib/MAT_A/a.xml", metadata(First, "Materials", "Blue"));
    manager.collectItems(url("/lib"), Material, nullptr);

    EXPECT_EQ(kxAssetItemFactory::the().findItem(First), item);
    EXPECT_EQ(item->name(), "Blue");
}

TEST_F(kxUrlManagerTest, TellsWhatADirectoryItselfContains)
{
    manager.write("/lib/1.xml", "<broken");
    manager.write("/lib/2.xml", metadata(First));
    manager.write("/lib/below/3.xml", metadata(Second));

    EXPECT_TRUE(manager.containsItems(url("/lib"), Undefined));
    EXPECT_TRUE(manager.containsItems(url("/lib"), Material));
    EXPECT_FALSE(manager.containsItems(url("/lib"), Geometry));
    EXPECT_TRUE(manager.containsItem(url("/lib"), Material, First));
    EXPECT_TRUE(manager.containsItem(url("/lib"), Undefined, First));
    EXPECT_FALSE(manager.containsItem(url("/lib"), Geometry, First));
    EXPECT_FALSE(manager.containsItem(url("/lib"), Undefined, Second));
    EXPECT_EQ(kxAssetItemFactory::the().itemCount(), 0);
}

TEST_F(kxUrlManagerTest, LooksNoFurtherThanTheFirstAssetThatItWasAskedFor)
{
    manager.write("/lib/1.xml", metadata(First));
    manager.write("/lib/2.xml", metadata(First));
    manager.write("/lib/3.xml", metadata(Second));

    EXPECT_TRUE(manager.containsItems(url("/lib"), Material));
    EXPECT_TRUE(manager.containsItem(url("/lib"), Material, First));

    EXPECT_EQ(manager.documentReads[QStringLiteral("/lib/1.xml")], 2);
    EXPECT_EQ(manager.documentReads[QStringLiteral("/lib/2.xml")], 0);
    EXPECT_TRUE(manager.containsItem(url("/lib"), Material, Second)) << "behind two others";
}

TEST_F(kxUrlManagerTest, RereadsAnItemWhateverItsCategory)
{
    manager.write("/lib/a/1.xml", "<x/>");
    manager.write("/lib/a/2.xml", metadata(First, "Materials", "Blue"));
    manager.write("/lib/a/3.xml", metadata(First, "Materials", "Second"));
    PlainItem item(Geometry, First);
    item.setDirectoryUrl(url("/lib/a"));

    EXPECT_TRUE(kxUrlManager::updateItem(&item));

    EXPECT_EQ(item.name(), "Blue") << "of the first file";
    EXPECT_EQ(item.category(), Material);
}

TEST_F(kxUrlManagerTest, RereadsNoItemFromMetadataThatIsNotValid)
{
    manager.write("/lib/a/1.xml", metadata(First, "Nonsense", "Blue"));
    PlainItem item(Material, First);
    item.setName("Kept");
    item.setLastModified(QDateTime(QDate(2001, 1, 1), QTime(1, 1)));
    item.setDirectoryUrl(url("/lib/a"));

    EXPECT_FALSE(kxUrlManager::updateItem(&item));

    EXPECT_EQ(item.name(), "Kept");
    EXPECT_EQ(item.directoryUrl(), url("/lib/a"));
    EXPECT_EQ(item.lastModified(), QDateTime(QDate(2001, 1, 1), QTime(1, 1)));
}

TEST_F(kxUrlManagerTest, RereadsAnItemFromItsOwnMetadata)
{
    manager.write("/lib/MAT_A/1.xml", metadata(Second, "Materials", "Wrong"));
    manager.write("/lib/MAT_A/2.xml", metadata(First, "Materials", "Blue"));
    PlainItem item(Material, First);
    item.setDirectoryUrl(url("/lib/MAT_A"));

    EXPECT_TRUE(kxUrlManager::updateItem(&item));
    EXPECT_EQ(item.name(), "Blue");
    EXPECT_EQ(item.directoryUrl(), url("/lib/MAT_A"));
    EXPECT_EQ(item.lastModified(), QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5)));
}

TEST_F(kxUrlManagerTest, LeavesAnItemAloneThatIsNotThereAnyMore)
{
    PlainItem item(Material, First);
    item.setName("Kept");
    item.setDirectoryUrl(url("/lib/MAT_A"));

    EXPECT_FALSE(kxUrlManager::updateItem(&item));
    EXPECT_EQ(item.name(), "Kept");
    EXPECT_FALSE(kxUrlManager::updateItem(nullptr));
    item.setDirectoryUrl(QUrl("nowhere:/x"));
    EXPECT_FALSE(kxUrlManager::updateItem(&item));
}

TEST_F(kxUrlManagerTest, RemovesTheOldDirectoryOfAnAssetThatMoved)
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

TEST_F(kxUrlManagerTest, KeepsTheDirectoryButNotTheEntryWhenAnAssetStays)
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

TEST_F(kxUrlManagerTest, RemovesTheNewDirectoryWhenTheOldOneStays)
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

namespace {

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

TEST_F(kxUrlManagerTest, KeepsTheNewDirectoryWhereTheOldAssetIsGoneThoughItsDirectoryIsNot)
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

TEST_F(kxUrlManagerTest, RemovesTheOldDirectoryOfAnAssetThatChangedItsCategory)
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

TEST_F(kxUrlManagerTest, DeletesTheEntryOfTheNewItemWhateverTheOldOneWas)
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

TEST_F(kxUrlManagerTest, NeedsBothItemsToRemoveAnOldDirectory)
{
    manager.write("/lib/a/a.xml", metadata(First));
    manager.collectItems(url("/lib"), Material, nullptr);
    PlainItem item(Material, First);

    EXPECT_FALSE(manager.removeOldItemDirectory(nullptr, &item));
    EXPECT_FALSE(manager.removeOldItemDirectory(&item, nullptr));

    EXPECT_EQ(registered(), (Uuids{First}));
}

TEST_F(kxUrlManagerTest, ShowsNoProgressUntilToldTo)
{
    EXPECT_FALSE(manager.showMaterialLoadProgress());
    manager.setShowMaterialLoadProgress(true);
    EXPECT_TRUE(manager.showMaterialLoadProgress());
    EXPECT_FALSE(TestUrlManager().showMaterialLoadProgress()) << "each has its own";
}

TEST_F(kxUrlManagerTest, KeepsAnOldDirectoryThatItCannotBeSureOf)
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

namespace {

/// Sceneplates: "null" loads and is none, "plate" is one.
class PlateManager : public TestUrlManager
{
public:
    bool loadSceneplateFromFile(const QUrl &file, osg::NodePtr &node) const override
    {
        loaded.push_back(file.fileName());
        if (file.fileName() == QLatin1String("2.osb"))
            node = plate;
        return file.fileName() != QLatin1String("0.osb");
    }

    mutable std::vector<QString> loaded;
    osg::FCRef<osg::Node> plate{osg::Node::create()};
};

} // namespace

TEST_F(kxUrlManagerTest, LoadsTheFirstSceneplateThatIsOne)
{
    PlateManager plates;
    for (const char *name : {"/plate/0.osb", "/plate/1.osb", "/plate/2.osb", "/plate/3.osb", "/empty/1.osb"})
        plates.write(QString::fromUtf8(name), "");

    osg::NodePtr node;
    EXPECT_FALSE(plates.loadSceneplateFromDir(url("/none"), node));
    EXPECT_FALSE(plates.loadSceneplateFromDir(url("/empty"), node)) << "it loads, and is null";
    EXPECT_FALSE(node);
    EXPECT_TRUE(plates.loadSceneplateFromDir(url("/plate"), node));

    EXPECT_EQ(node, plates.plate);
    EXPECT_EQ(plates.loaded, (std::vector<QString>{"1.osb", "0.osb", "1.osb", "2.osb"}));
}

TEST_F(kxUrlManagerTest, NamesPreviewsWithTwoExtensionsHoweverManyBackEndsThereAre)
{
    TestUrlManager another;

    EXPECT_EQ(another.getImageFileFilter(url("/none")), (QStringList{"*.png", "*.vif"}));
}

TEST_F(kxUrlManagerTest, AsksTheFileSystemAgainForEachScan)
{
    manager.write("/lib/MAT_A/a.xml", metadata(First));
    manager.collectItems(url("/lib"), Material, nullptr);
    manager.write("/lib/MAT_B/b.xml", metadata(Second));

    manager.collectItems(url("/lib"), Material, nullptr);

    EXPECT_EQ(registered(), (Uuids{First, Second}));
}
