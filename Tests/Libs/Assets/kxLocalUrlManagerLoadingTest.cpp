// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxLocalUrlManager.h"
#include "Kernel/kxController.h"
#include "Kernel/kxControllerNotifier.h"
#include "Kernel/kxScenegraph.h"
#include "NodeFixture.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Image.h"
#include "SceneGraph/MaterialPool.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/ReferenceAttachment.h"
#include "SceneGraph/SceneFile.h"

#include <QCoreApplication>
#include <QDomDocument>
#include <QImage>
#include <QPixmap>

#include <gmock/gmock.h>

#include <array>
#include <cstdlib>
#include <fstream>

namespace fs = std::filesystem;

namespace {

class kxLocalUrlManagerLoadingTest : public NodeFixture
{
protected:
    static std::vector<std::string> namesInScenePool()
    {
        std::vector<std::string> names;
        for (const osg::MaterialPtr &material : kxScenegraph::getMaterialPool()->getMaterials())
            names.push_back(osg::getName(material));
        return names;
    }
    /// A mouse pointer of one pixel: a format that a plug-in of Qt reads, and the host does not.
    void writeCursor(const std::string &name) const
    {
        constexpr std::array<char, 70> Bytes{0, 0, 2, 0,  1, 0, 1, 1, 0, 0, 0, 0, 0, 0, 48, 0, 0, 0,  22,
                                             0, 0, 0, 40, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0,  1, 0, 32, 0};
        std::ofstream(_folder.file(name), std::ios::binary).write(Bytes.data(), Bytes.size());
    }
    void write(const std::string &name, const std::vector<osg::FieldContainerPtr> &roots) const
    {
        EXPECT_TRUE(osg::writeSceneFile(_folder.file(name), roots));
    }

    kxLocalUrlManager &manager = *kxLocalUrlManager::the();
};

} // namespace

TEST_F(kxLocalUrlManagerLoadingTest, ReadsWithTheHostWhatQtCannotThoughItsNameSaysSo)
{
    const osg::FCRef<osg::Image> picture(osg::Image::create());
    ASSERT_TRUE(picture->set(3, 2, 3, osg::PixelType::Half));
    ASSERT_TRUE(picture->write(_folder.file("a.exr")));
    fs::rename(_folder.file("a.exr"), _folder.file("a.png"));
    ASSERT_FALSE(QImage().load(QString::fromStdString(_folder.file("a.png"))));

    QImage image;
    QPixmap pixmap;
    EXPECT_TRUE(manager.loadImageFromFile(url("a.png"), &image));
    EXPECT_TRUE(manager.loadPixmapFromFile(url("a.png"), pixmap));

    EXPECT_EQ(image.size(), QSize(3, 2));
    EXPECT_EQ(pixmap.size(), QSize(3, 2));
}

TEST_F(kxLocalUrlManagerLoadingTest, ReadsWithQtWhatItCanWhateverTheCaseOfTheExtension)
{
    QImage picture(2, 2, QImage::Format_RGB32);
    picture.fill(Qt::red);
    picture.setText("Title", "only Qt reads this");
    for (const char *name : {"a.png", "b.PnG"})
        ASSERT_TRUE(picture.save(QString::fromStdString(_folder.file(name)), "PNG"));

    for (const char *name : {"a.png", "b.PnG"}) {
        QImage image;
        EXPECT_TRUE(manager.loadImageFromFile(url(name), &image)) << name;
        EXPECT_EQ(image.text("Title"), "only Qt reads this") << name;
    }
}

TEST_F(kxLocalUrlManagerLoadingTest, ReadsWithTheHostWhatHasNoExtensionOfQts)
{
    QImage picture(2, 2, QImage::Format_RGB32);
    picture.fill(Qt::red);
    picture.setText("Title", "only Qt reads this");
    ASSERT_TRUE(picture.save(QString::fromStdString(_folder.file("picture")), "PNG"));

    QImage image;
    QPixmap pixmap;
    EXPECT_TRUE(manager.loadImageFromFile(url("picture"), &image));
    EXPECT_TRUE(manager.loadPixmapFromFile(url("picture"), pixmap));

    EXPECT_EQ(image.text("Title"), "");
    EXPECT_EQ(image.pixel(0, 0), 0xFFFF0000U);
    EXPECT_EQ(pixmap.toImage().pixel(0, 0), 0xFFFF0000U);
}

TEST_F(kxLocalUrlManagerLoadingTest, ReadsPixmapsWithQtOnlyByTheirExtension)
{
    QImage picture(2, 2, QImage::Format_RGB32);
    picture.fill(Qt::red);
    for (const char *name : {"a.xpm", "b.XPM", "picture"}) // a format that the host does not know
        ASSERT_TRUE(picture.save(QString::fromStdString(_folder.file(name)), "XPM"));

    QPixmap pixmap;
    EXPECT_TRUE(manager.loadPixmapFromFile(url("a.xpm"), pixmap));
    EXPECT_TRUE(manager.loadPixmapFromFile(url("b.XPM"), pixmap));
    EXPECT_FALSE(manager.loadPixmapFromFile(url("picture"), pixmap));

    EXPECT_EQ(pixmap.toImage().pixel(1, 1), 0xFFFF0000U);
}

TEST_F(kxLocalUrlManagerLoadingTest, AsksQtOnceForItsFormatsInEachOperation)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a fresh process
    EXPECT_EXIT(
        {
            writeCursor("a.cur");
            const QStringList plugins = QCoreApplication::libraryPaths();
            QCoreApplication::setLibraryPaths({});
            QImage image;
            QPixmap pixmap;
            const bool isUnknown = !manager.loadPixmapFromFile(url("a.cur"), pixmap);
            QCoreApplication::setLibraryPaths(plugins);
            const bool isLate = !manager.loadPixmapFromFile(url("a.cur"), pixmap);
            const bool isKnown = manager.loadImageFromFile(url("a.cur"), &image);
            std::exit(isUnknown && isLate && isKnown && image.size() == QSize(1, 1) ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(kxLocalUrlManagerLoadingTest, ReadsDocumentsWithoutRegardToNamespaces)
{
    writeFile("a.xml", "<item xmlns=\"urn:x\" xmlns:y=\"urn:y\"><y:name>x</y:name></item>");

    QDomDocument document;
    ASSERT_TRUE(manager.loadDocumentFromFile(url("a.xml"), document));

    EXPECT_TRUE(document.documentElement().namespaceURI().isNull());
    EXPECT_EQ(document.documentElement().firstChildElement("y:name").text(), "x");
}

TEST_F(kxLocalUrlManagerLoadingTest, LoadsMaterialsOutsideTheScenesPool)
{
    write("red.osb", {makeSurface("Red").get()});

    osg::MaterialPtr material;
    ASSERT_TRUE(manager.loadMaterialFromFile(url("red.osb"), material));
    const Owned loaded = Owned::adopt(material);

    EXPECT_THAT(namesInScenePool(), testing::Not(testing::Contains("Red")));
}

TEST_F(kxLocalUrlManagerLoadingTest, LoadsANodeOutsideTheSceneAndNotesNoFile)
{
    const osg::FCRef<osg::Node> chair(addPlaced(nullptr, "Chair", {1, 2, 3}));
    write("chair.osb", {chair.get()});

    osg::NodePtr node;
    ASSERT_TRUE(manager.loadNodeFromFile(url("chair.osb"), node));
    const osg::FCRef<osg::Node> loaded(node);

    EXPECT_EQ(osg::getName(loaded.get()), "Chair");
    EXPECT_EQ(loaded->getRefCount(), 1) << "nobody else's";
    EXPECT_FALSE(loaded->getParent());
    EXPECT_FALSE(osg::findAttachment<osg::ReferenceAttachment>(loaded.get()));
}

TEST_F(kxLocalUrlManagerLoadingTest, ShowsTheProgressOfNodesWhateverIsSaidOfMaterials)
{
    const osg::FCRef<osg::Node> chair(addGroup(nullptr, "Chair"));
    write("chair.osb", {chair.get()});
    QStringList shown;
    QObject context;
    QObject::connect(&kxController::notifier(), &kxControllerNotifier::fileLoadingStarted, &context,
                     [&shown](const QString &path) { shown << path; });

    osg::NodePtr node;
    ASSERT_TRUE(manager.loadNodeFromFile(url("chair.osb"), node));
    const osg::FCRef<osg::Node> loaded(node);

    EXPECT_FALSE(manager.showMaterialLoadProgress());
    EXPECT_EQ(shown, QStringList{QString::fromStdString(_folder.file("chair.osb"))});
}

TEST_F(kxLocalUrlManagerLoadingTest, MovesThePoolsOfANodeIntoTheScene)
{
    const osg::FCRef<osg::Node> chair(addGroup(nullptr, "Chair"));
    const auto pool = osg::MaterialPool::create();
    {
        const osg::CPEditor edit(pool, osg::MaterialPool::MaterialsFieldMask);
        pool->editMaterials().push_back(makeSurface("Spare").get());
    }
    addNode(chair, pool, "Pool");
    write("chair.osb", {chair.get()});

    osg::NodePtr node;
    ASSERT_TRUE(manager.loadNodeFromFile(url("chair.osb"), node));
    const osg::FCRef<osg::Node> loaded(node);

    EXPECT_EQ(describe(loaded), "Chair");
    EXPECT_THAT(namesInScenePool(), testing::Contains("Spare"));
}

TEST_F(kxLocalUrlManagerLoadingTest, AnswersNullForANodeThatDoesNotLoad)
{
    const osg::FCRef<osg::Node> former(addGroup(nullptr, "Former"));

    osg::NodePtr node = former.get();
    EXPECT_FALSE(manager.loadNodeFromFile(url("missing.osb"), node));

    EXPECT_FALSE(node);
}

TEST_F(kxLocalUrlManagerLoadingTest, LoadsTheFirstSceneplateOfAFileAndReleasesTheOthers)
{
    {
        const Owned material = makeSurface("Red");
        const osg::FCRef<osg::Node> first(addGroup(nullptr, "First"));
        const osg::FCRef<osg::Node> second(addGroup(nullptr, "Second"));
        write("plates.osb", {material.get(), first.get(), second.get()});
    }
    const std::size_t before = osg::FieldContainerFactory::the().livingContainerCount();

    osg::NodePtr node;
    ASSERT_TRUE(manager.loadSceneplateFromFile(url("plates.osb"), node));
    {
        const osg::FCRef<osg::Node> loaded(node);
        EXPECT_EQ(osg::getName(node), "First");
        EXPECT_EQ(node->getRefCount(), 1) << "nobody else's";
    }

    EXPECT_EQ(osg::FieldContainerFactory::the().livingContainerCount(), before);
}

TEST_F(kxLocalUrlManagerLoadingTest, FindsNoSceneplateInAFileWithoutNodes)
{
    write("red.osb", {makeSurface("Red").get()});

    osg::NodePtr node;
    EXPECT_FALSE(manager.loadSceneplateFromFile(url("red.osb"), node));

    EXPECT_FALSE(node);
}
