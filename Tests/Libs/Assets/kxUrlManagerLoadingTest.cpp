// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxLocalUrlManager.h"
#include "Kernel/kxLogRecorder.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "NodeFixture.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/SceneFile.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/UberMaterial.h"
#include "Support/CapturedOutput.h"
#include "TestUrlManager.h"

#include <QCoreApplication>
#include <QDomDocument>
#include <QImage>
#include <QPixmap>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

/// What files() was asked for: the name filters and the order.
using Listing = std::pair<QStringList, QDir::SortFlags>;

/// A back-end that holds nodes: "3.osb" is one, "0.osb" does not load, and the others load and are null.
class NodeManager : public TestUrlManager
{
public:
    std::vector<QUrl> files(const QUrl &url, const QStringList &nameFilters, QDir::SortFlags sort) override
    {
        listings.emplace_back(nameFilters, sort);
        return TestUrlManager::files(url, nameFilters, sort);
    }
    bool loadNodeFromFile(const QUrl &file, osg::NodePtr &node) const override { return load(file, node); }
    bool loadSceneplateFromFile(const QUrl &file, osg::NodePtr &node) const override { return load(file, node); }

    std::vector<Listing> listings;
    mutable std::vector<QString> loaded;
    osg::FCRef<osg::Node> stored{osg::makeNodeFor(osg::Group::create())};

private:
    bool load(const QUrl &file, osg::NodePtr &node) const
    {
        loaded.push_back(file.fileName());
        if (file.fileName() == QLatin1String("0.osb"))
            return false;
        node = file.fileName() == QLatin1String("3.osb") ? stored.get() : osg::NodePtr();
        return true;
    }
};

/// What another library might make of layers.
class VarnishedMaterial final : public osg::UberMaterial
{
    OSG_CONTAINER(VarnishedMaterial, osg::UberMaterial)
};

OSG_CONTAINER_SOURCE(VarnishedMaterial)

/// A back-end that has one material, whatever file is asked for.
class OneMaterialManager final : public TestUrlManager
{
public:
    explicit OneMaterialManager(const osg::MaterialPtr &material) : _material(material) {}
    bool loadMaterialFromFile(const QUrl &, osg::MaterialPtr &material) const override
    {
        material = _material.get();
        return true;
    }

private:
    osg::FCRef<osg::Material> _material;
};

class kxUrlManagerLoadingTest : public NodeFixture
{
protected:
    static QUrl inMemory(const char *path) { return TestUrlManager::url(QString::fromUtf8(path)); }

    void writePayload(const std::string &name, const osg::FieldContainerPtr &root) const
    {
        _folder.makeFolder(name);
        EXPECT_TRUE(osg::writeSceneFile(_folder.file(name + "/x.osb"), {root}));
    }
    /// A node with a square below it, whose material has the tag of a geometry and one of its own.
    osg::FCRef<osg::Node> makeTagged() const
    {
        osg::FCRef<osg::Node> root(osg::makeNodeFor(osg::Group::create()));
        const Owned material = makeSurface("Paint");
        setTags(material, {"Geometry Asset: Chair", "mine"});
        addSquare(root, "Seat", material);
        return root;
    }
    static osg::GeometryPtr meshOf(const osg::NodePtr &node) { return osg::GeometryPtr::dcast(node->getCore()); }

    NodeManager memory;
    const kxLocalUrlManager &local = *kxLocalUrlManager::the();
};

} // namespace

TEST_F(kxUrlManagerLoadingTest, PassesOverNodesThatAreNull)
{
    for (const char *name : {"/a/0.osb", "/a/1.osb", "/a/3.osb", "/a/4.osb"})
        memory.write(QString::fromUtf8(name), "");

    osg::NodePtr node;
    EXPECT_TRUE(memory.loadNodeFromDir(inMemory("/a"), node));

    EXPECT_EQ(node, memory.stored.get());
    EXPECT_THAT(memory.loaded, ElementsAre("0.osb", "1.osb", "3.osb"));
}

TEST_F(kxUrlManagerLoadingTest, LoadsNoNodeWhereAllAreNull)
{
    memory.write(QStringLiteral("/a/1.osb"), "");
    memory.write(QStringLiteral("/a/2.osb"), "");

    osg::NodePtr node;
    EXPECT_FALSE(memory.loadNodeFromDir(inMemory("/a"), node));

    EXPECT_THAT(memory.loaded, ElementsAre("1.osb", "2.osb"));
}

TEST_F(kxUrlManagerLoadingTest, StripsTheTagsOfAssetsFromTheMaterialsOfANode)
{
    writePayload("GEO_Chair", makeTagged().get());

    osg::NodePtr loaded;
    ASSERT_TRUE(local.loadNodeFromDir(url("GEO_Chair"), loaded));
    const osg::FCRef<osg::Node> node(loaded);

    EXPECT_THAT(tagsOf(meshOf(node->getChild(0))->getMaterial()), ElementsAre("mine"));
}

TEST_F(kxUrlManagerLoadingTest, KeepsTheTagsOfMaterialsWithinComposites)
{
    const Owned inner = makeSurface("Inner");
    setTags(inner, {"Geometry Asset: Chair"});
    const Owned composite = makeSwitch("Choices", {inner});
    setTags(composite, {"Geometry Asset: Chair"});
    const osg::FCRef<osg::Node> seat(addSquare(osg::NodePtr(), "Seat", composite));
    writePayload("GEO_Chair", seat.get());

    osg::NodePtr loaded;
    ASSERT_TRUE(local.loadNodeFromDir(url("GEO_Chair"), loaded));
    const osg::FCRef<osg::Node> node(loaded);

    const auto material = osg::dcast<osg::SwitchMaterialPtr>(meshOf(node)->getMaterial());
    EXPECT_THAT(tagsOf(material), testing::IsEmpty());
    EXPECT_THAT(tagsOf(material->getMaterials()[0]), ElementsAre("Geometry Asset: Chair"));
}

TEST_F(kxUrlManagerLoadingTest, LoadsSceneplatesAsTheyWereStored)
{
    writePayload("PLATE_Chair", makeTagged().get());

    osg::NodePtr loaded;
    ASSERT_TRUE(local.loadSceneplateFromDir(url("PLATE_Chair"), loaded));
    const osg::FCRef<osg::Node> node(loaded);

    const osg::GeometryPtr mesh = meshOf(node->getChild(0));
    EXPECT_THAT(tagsOf(mesh->getMaterial()), ElementsAre("Geometry Asset: Chair", "mine"));
    EXPECT_THAT(mesh->getFaceSizes().values(), ElementsAre(4U)) << "no polygon is cut";
}

TEST_F(kxUrlManagerLoadingTest, CutsOnlyTheMeshesOfANodeThatNeedIt)
{
    const osg::FCRef<osg::Node> root(makeTagged());
    addGroup(root, "Empty");
    const osg::GeometryPtr triangles = meshOf(addSquare(addGroup(root, "Deeper"), "Triangles"));
    {
        const osg::CPEditor edit(triangles, osg::AllFieldMask);
        triangles->editIndices() = std::vector<std::uint32_t>{0, 1, 2, 0, 2, 3};
        triangles->editFaceSizes() = std::vector<std::uint32_t>{3, 3};
    }
    writePayload("GEO_Chair", root.get());

    osg::NodePtr loaded;
    ASSERT_TRUE(local.loadNodeFromDir(url("GEO_Chair"), loaded));
    const osg::FCRef<osg::Node> node(loaded);

    EXPECT_THAT(meshOf(node->getChild(0))->getIndices().values(), testing::SizeIs(6)) << "a square is two triangles";
    EXPECT_THAT(meshOf(node->getChild(2)->getChild(0))->getFaceSizes().values(), ElementsAre(3U, 3U)) << "left alone";
}

TEST_F(kxUrlManagerLoadingTest, AsksForNoRefreshWhenItCutsMeshes)
{
    writePayload("GEO_Chair", makeTagged().get());
    QCoreApplication::processEvents();
    int refreshes = 0;
    QObject context;
    QObject::connect(&kxScenegraph::notifier(), &kxScenegraphNotifier::updateRequested, &context,
                     [&refreshes] { ++refreshes; });

    osg::NodePtr loaded;
    ASSERT_TRUE(local.loadNodeFromDir(url("GEO_Chair"), loaded));
    const osg::FCRef<osg::Node> node(loaded);
    QCoreApplication::processEvents();

    EXPECT_EQ(refreshes, 0);
}

TEST_F(kxUrlManagerLoadingTest, UpdatesUberMaterials)
{
    const osg::UberMaterialPtr uber = osg::UberMaterial::create();
    const Owned owner(named(uber, "Uber"));
    {
        const osg::CPEditor edit(uber, osg::UberMaterial::BRDFMaterialsFieldMask);
        const osg::UBRDFMaterialPtr layer = osg::UBRDFMaterial::create();
        uber->editBRDFMaterials().push_back(layer);
        uber->editBRDFMaterials().push_back(layer);
    }
    writePayload("MAT_Uber", uber);
    const auto layersOf = [](const Owned &material) {
        return osg::dcast<osg::UberMaterialPtr>(material.get())->getBRDFMaterials().size();
    };

    osg::MaterialPtr fromFile;
    osg::MaterialPtr fromDirectory;
    ASSERT_TRUE(local.loadMaterialFromFile(url("MAT_Uber/x.osb"), fromFile));
    ASSERT_TRUE(local.loadMaterialFromDir(url("MAT_Uber"), fromDirectory));

    EXPECT_EQ(layersOf(Owned::adopt(fromFile)), 2U) << "as it was stored";
    EXPECT_EQ(layersOf(Owned::adopt(fromDirectory)), 1U) << "a layer counts once";
}

TEST_F(kxUrlManagerLoadingTest, UpdatesMaterialsDerivedFromUberMaterialsToo)
{
    const VarnishedMaterial::Ptr varnished = VarnishedMaterial::create();
    OneMaterialManager manager(varnished);
    manager.write(QStringLiteral("/a/x.osb"), "");
    {
        const osg::CPEditor edit(varnished, osg::UberMaterial::BRDFMaterialsFieldMask);
        const osg::UBRDFMaterialPtr layer = osg::UBRDFMaterial::create();
        varnished->editBRDFMaterials().push_back(layer);
        varnished->editBRDFMaterials().push_back(layer);
    }

    osg::MaterialPtr loaded;
    EXPECT_TRUE(manager.loadMaterialFromDir(inMemory("/a"), loaded));

    EXPECT_EQ(loaded, varnished);
    EXPECT_EQ(varnished->getBRDFMaterials().size(), 1U) << "a layer counts once";
}

TEST_F(kxUrlManagerLoadingTest, LooksForWhatItLoadsByTheseNamesInThisOrder)
{
    memory.write(QStringLiteral("/a/Red.osb"), "0.5");
    memory.write(QStringLiteral("/a/Red.xml"), "<item/>");
    const QStringList previews{"Red.png", "Red.vif"};
    QImage image;
    QPixmap pixmap;
    osg::MaterialPtr material;
    osg::NodePtr node;
    QDomDocument document;
    const auto asked = [this] { return std::exchange(memory.listings, {}); };

    memory.loadPixmapFromDir(inMemory("/a"), pixmap);
    EXPECT_THAT(asked(), ElementsAre(Listing({"*.osb"}, QDir::NoSort), Listing(previews, QDir::NoSort)));
    memory.loadImageFromDir(inMemory("/a"), &image);
    EXPECT_THAT(asked(), ElementsAre(Listing({"*.osb"}, QDir::NoSort), Listing(previews, QDir::Time)));
    memory.loadMaterialFromDir(inMemory("/a"), material);
    osg::subRef(material);
    EXPECT_THAT(asked(), ElementsAre(Listing({"*.osb"}, QDir::NoSort)));
    memory.loadDocumentFromDir(inMemory("/a"), document);
    EXPECT_THAT(asked(), ElementsAre(Listing({"*.xml"}, QDir::NoSort)));
    memory.loadSceneplateFromDir(inMemory("/a"), node);
    EXPECT_THAT(asked(), ElementsAre(Listing({"*.osb"}, QDir::NoSort)));
    memory.loadNodeFromDir(inMemory("/a"), node);
    EXPECT_THAT(asked(), ElementsAre(Listing({"*.osb"}, QDir::NoSort)));
}

TEST_F(kxUrlManagerLoadingTest, NamesPreviewsAfterTheMetadataAsTheFileSystemListsIt)
{
    memory.write(QStringLiteral("/a/Red.xml"), "<item/>");

    EXPECT_EQ(memory.getImageFileFilter(inMemory("/a")), (QStringList{"Red.png", "Red.vif"}));

    EXPECT_THAT(memory.listings, ElementsAre(Listing({"*.osb"}, QDir::NoSort), Listing({"*.xml"}, QDir::NoSort)));
}

TEST_F(kxUrlManagerLoadingTest, LeavesEverythingAloneWhereThereIsNothing)
{
    const QUrl nowhere = inMemory("/none");
    QPixmap pixmap(3, 3);
    const Owned material = makeSurface("Kept");
    osg::MaterialPtr keptMaterial = material.get();
    QDomDocument document;
    document.setContent(QStringLiteral("<kept/>"));
    QUrl file = inMemory("/kept");
    osg::NodePtr plate = memory.stored.get();
    osg::NodePtr node = memory.stored.get();

    EXPECT_FALSE(memory.loadPixmapFromDir(nowhere, pixmap));
    EXPECT_FALSE(memory.loadMaterialFromDir(nowhere, keptMaterial));
    EXPECT_FALSE(memory.loadDocumentFromDir(nowhere, document, file));
    EXPECT_FALSE(memory.loadSceneplateFromDir(nowhere, plate));
    EXPECT_FALSE(memory.loadNodeFromDir(nowhere, node));

    EXPECT_EQ(pixmap.size(), QSize(3, 3));
    EXPECT_EQ(keptMaterial, material.get());
    EXPECT_EQ(document.documentElement().tagName(), "kept");
    EXPECT_EQ(file, inMemory("/kept"));
    EXPECT_EQ(plate, memory.stored.get());
    EXPECT_EQ(node, memory.stored.get());
}

TEST_F(kxUrlManagerLoadingTest, LoadsNoMaterialBehindTheFirstThatLoads)
{
    for (const char *name : {"/a/1.osb", "/a/2.osb", "/a/3.osb"})
        memory.write(QString::fromUtf8(name), name == std::string("/a/1.osb") ? "broken" : "0.5");

    osg::MaterialPtr material;
    EXPECT_TRUE(memory.loadMaterialFromDir(inMemory("/a"), material));
    osg::subRef(material);

    EXPECT_THAT(memory.log, ElementsAre("files /a", "loadMaterialFromFile /a/1.osb", "loadMaterialFromFile /a/2.osb"));
}

TEST_F(kxUrlManagerLoadingTest, TriesOnlyTheFirstPixmap)
{
    memory.write(QStringLiteral("/a/Red.osb"), "1");
    memory.write(QStringLiteral("/a/Red.png"), "broken");
    memory.write(QStringLiteral("/a/Red.vif"), "broken");

    QPixmap pixmap;
    EXPECT_FALSE(memory.loadPixmapFromDir(inMemory("/a"), pixmap));

    EXPECT_THAT(memory.log, ElementsAre("files /a", "files /a", "loadPixmapFromFile /a/Red.png"));
}

TEST_F(kxUrlManagerLoadingTest, LooksForNothingWithoutAnImageToFill)
{
    EXPECT_FALSE(memory.loadImageFromDir(inMemory("/a"), nullptr));

    EXPECT_THAT(memory.log, testing::IsEmpty());
}

TEST_F(kxUrlManagerLoadingTest, SaysNothingOfFilesThatDoNotLoad)
{
    memory.write(QStringLiteral("/a/0.osb"), "broken");
    memory.write(QStringLiteral("/a/0.xml"), "<broken");
    memory.write(QStringLiteral("/a/0.png"), "broken");
    const kxLogRecorder log;
    kxtest::CapturedOutput output;
    QImage image;
    QPixmap pixmap;
    osg::NodePtr node;
    QDomDocument document;

    EXPECT_FALSE(memory.loadImageFromDir(inMemory("/a"), &image));
    EXPECT_FALSE(memory.loadPixmapFromDir(inMemory("/a"), pixmap));
    EXPECT_FALSE(memory.loadDocumentFromDir(inMemory("/a"), document));
    EXPECT_FALSE(memory.loadSceneplateFromDir(inMemory("/a"), node));
    EXPECT_FALSE(memory.loadNodeFromDir(inMemory("/a"), node));

    EXPECT_EQ(output.text(), "");
    EXPECT_THAT(log.lines(), testing::IsEmpty());
}
