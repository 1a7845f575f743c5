// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxUrlManager.h"

#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxLocalUrlManager.h"
#include "PlainItem.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "UrlManagerFixture.h"

#include <QBuffer>
#include <QDomDocument>
#include <QImage>
#include <QPixmap>

#include <array>
#include <cstdlib>

namespace {

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

using kxUrlManagerTest = UrlManagerFixture;

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

TEST_F(kxUrlManagerTest, ShowsNoProgressUntilToldTo)
{
    EXPECT_FALSE(manager.showMaterialLoadProgress());
    manager.setShowMaterialLoadProgress(true);
    EXPECT_TRUE(manager.showMaterialLoadProgress());
    EXPECT_FALSE(TestUrlManager().showMaterialLoadProgress()) << "each has its own";
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
