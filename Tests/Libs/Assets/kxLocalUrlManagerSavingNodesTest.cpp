// SPDX-License-Identifier: Apache-2.0
#include "ActionModule.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxEnvironmentNodeAssetItem.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Assets/kxLocalUrlManager.h"
#include "Assets/kxSceneplateAssetItem.h"
#include "Kernel/kxController.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxLogRecorder.h"
#include "Kernel/kxMessage.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSceneplateUtils.h"
#include "NodeFixture.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"
#include "SceneGraph/UberMaterial.h"
#include "Support/CapturedOutput.h"
#include "Support/FileSizeLimit.h"

#include <gmock/gmock.h>

#include <functional>

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

namespace {

constexpr const char *Uuid = "0a1b2c3d-4e5f-4a6b-8c7d-9e0f1a2b3c4d";

/// Renders previews in place of the host.
class Renderer final : public kxModuleBase
{
public:
    using Rendering = std::function<void(const osg::MaterialPtr &)>;

    explicit Renderer(Rendering render)
    {
        registerHandler("renderPreviewImages", [render = std::move(render)](kxMessage &message) {
            const auto materials = message.get<std::vector<osg::MaterialPtr>>("materials").value();
            for (const osg::MaterialPtr &material : materials)
                render(material);
        });
    }
};

/// An item of which the test says what happens when it writes its metadata, and when it renders its preview.
template <class Item> class ScriptedItem : public Item
{
public:
    bool writeMetaData(kxAssetItemDocument &document) const override
    {
        return Item::writeMetaData(document) && hasMetaData;
    }

    bool hasMetaData = true;
};

class ScriptedGeometryItem final : public ScriptedItem<kxGeometryAssetItem>
{
public:
    osg::ImagePtr renderPreview(osg::NodePtr node) override { return render ? render(node) : osg::ImagePtr(); }

    std::function<osg::ImagePtr(const osg::NodePtr &)> render;
};

class kxLocalUrlManagerSavingNodesTest : public NodeFixture
{
protected:
    static osg::NodePtr root() { return kxScenegraph::getRoot(); }

    static osg::NodePtr addEnvironment(const std::string &name, const osg::MaterialPtr &material)
    {
        const auto core = osg::Environment::create();
        {
            const osg::CPEditor edit(core, osg::Environment::MaterialFieldMask);
            core->setMaterial(material);
        }
        return addNode(root(), core, name);
    }
    static osg::MaterialPtr materialOf(const osg::NodePtr &node)
    {
        return osg::EnvironmentPtr::dcast(node->getCore())->getMaterial();
    }
    /// A placed node with a square below it.
    static osg::NodePtr addChair(const std::string &name = "Chair")
    {
        const osg::NodePtr chair = addPlaced(root(), name, {1.0, 2.0, 3.0});
        addSquare(chair, "Seat");
        return chair;
    }
    static osg::NodePtr addPlate(const std::string &name)
    {
        return addNode(kxSceneplateUtils::getSceneplateRoot(), osg::Sceneplate::create(), name);
    }
    static osg::ImagePtr makePicture()
    {
        osg::FCRef<osg::Image> image(osg::Image::create());
        image->set(2, 2, 3, osg::PixelType::UInt8);
        return image.take();
    }

    bool save(kxEnvironmentNodeAssetItem &item) const { return manager.saveEnvironmentNodeAsset(url(), &item); }
    bool save(kxGeometrySceneplateCommon &item) const { return manager.saveSceneNodeAsset(url(), &item); }

    std::vector<std::string> entries(const std::string &directory = {}) const
    {
        std::vector<std::string> names;
        for (const fs::directory_entry &entry : fs::directory_iterator(_folder.path() / directory))
            names.push_back(entry.path().filename().string());
        return names;
    }
    /// Puts an asset of this kind there whose payload is a folder, which no file can replace.
    void writeAssetWithoutRoomForAPayload(const std::string &directory, const std::string &name,
                                          const std::string &category) const
    {
        writeAsset(directory, "<category>" + category + "</category><uuid>" + Uuid + "</uuid><name>old</name>");
        writeFile(directory + "/" + name + ".osb/in the way", "x");
    }
    /// The lines with which a save begins; \a search is what the search for its directory says.
    std::string savingEnvironment(const std::string &name, const std::string &search = {}) const
    {
        return "--------------\nkxLocalUrlManager::saveEnvironmentNodeAsset " + name + "\n" + search +
               "   save environment to path: " + _folder.file("ENV_" + name + "/") + "\n";
    }
    std::string savingGeometry(const std::string &name, const std::string &search = {}) const
    {
        return "--------------\nkxLocalUrlManager::saveSceneNodeAsset " + name + "\n" + search +
               "   save node to path: " + _folder.file("GEO_" + name + "/") + "\n";
    }

    const std::string end = "--------------\n";
    const std::string found = "[makeUniqueDirectory] - contains item with same uuid\n";
    const std::string prepared = "[prepareEnvironmentSwitches] # replacements (switch by choice) = 0\n";
    Owned dawn = makeSky("dawn");
    const kxLocalUrlManager &manager = *kxLocalUrlManager::the();
};

/// Saves of both kinds.
class kxLocalUrlManagerSavingNodesPreconditionsTest : public kxLocalUrlManagerSavingNodesTest
{
protected:
    kxLocalUrlManagerSavingNodesPreconditionsTest()
    {
        environment.initFrom(addEnvironment("Hills", dawn.get()), Uuid, true);
        geometry.initFrom(addChair(), Uuid, true);
    }

    ScriptedItem<kxEnvironmentNodeAssetItem> environment;
    ScriptedGeometryItem geometry;
    kxLogRecorder log;
    kxtest::CapturedOutput output;
};

} // namespace

TEST_F(kxLocalUrlManagerSavingNodesPreconditionsTest, RefusesSilentlyWhatCannotBeSaved)
{
    writeFile("file", "x");
    kxEnvironmentNodeAssetItem noEnvironment;
    kxGeometryAssetItem noGeometry;

    EXPECT_FALSE(manager.saveEnvironmentNodeAsset(url("lib"), nullptr));
    EXPECT_FALSE(manager.saveSceneNodeAsset(url("lib"), nullptr));
    for (const QUrl &parent : {QUrl("http://example.org/lib"), QUrl(), QUrl("file:"), url("file/below")}) {
        EXPECT_FALSE(manager.saveEnvironmentNodeAsset(parent, &environment)) << parent.toString().toStdString();
        EXPECT_FALSE(manager.saveSceneNodeAsset(parent, &geometry)) << parent.toString().toStdString();
    }
    EXPECT_FALSE(manager.saveEnvironmentNodeAsset(url("lib"), &noEnvironment));
    EXPECT_FALSE(manager.saveSceneNodeAsset(url("lib"), &noGeometry));

    EXPECT_EQ(output.text(), "");
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_THAT(entries(), ElementsAre("file"));
    EXPECT_TRUE(environment.directoryUrl().isEmpty());
    EXPECT_TRUE(geometry.directoryUrl().isEmpty());
}

TEST_F(kxLocalUrlManagerSavingNodesPreconditionsTest, ReportsMetadataThatCannotBeProduced)
{
    environment.hasMetaData = false;
    geometry.hasMetaData = false;

    EXPECT_FALSE(save(environment));
    EXPECT_FALSE(save(geometry));

    EXPECT_EQ(output.text(), "");
    EXPECT_THAT(log.lines(), ElementsAre("Failed to write meta data.", "Failed to write meta data."));
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(kxLocalUrlManagerSavingNodesPreconditionsTest, FailsWhereNoDirectoryCanBeMade)
{
    // Nobody can make directories there, not even root.
    const QUrl parent = QUrl::fromLocalFile("/proc");

    EXPECT_FALSE(manager.saveEnvironmentNodeAsset(parent, &environment));
    EXPECT_FALSE(manager.saveSceneNodeAsset(parent, &geometry));

    EXPECT_EQ(output.text(), "--------------\nkxLocalUrlManager::saveEnvironmentNodeAsset Hills\n"
                             "--------------\nkxLocalUrlManager::saveSceneNodeAsset Chair\n");
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_TRUE(environment.directoryUrl().isEmpty());
    EXPECT_TRUE(geometry.directoryUrl().isEmpty());
}

TEST_F(kxLocalUrlManagerSavingNodesPreconditionsTest, LeavesEmptyDirectoriesWhenTheMetadataCannotBeWritten)
{
    output.text(); // ends the capture, whose file could not grow either
    {
        const kxtest::FileSizeLimit fullDisk(0, kxtest::FileSizeLimit::Fails);
        EXPECT_FALSE(save(environment));
        EXPECT_FALSE(save(geometry));
    }

    EXPECT_THAT(log.lines(kxLogLevel::Error),
                ElementsAre("Failed to write file '" + _folder.file("ENV_Hills/Hills.xml") + "'.",
                            "Failed to write file '" + _folder.file("GEO_Chair/Chair.xml") + "'."));
    EXPECT_THAT(entries(), UnorderedElementsAre("ENV_Hills", "GEO_Chair"));
    EXPECT_THAT(entries("ENV_Hills"), IsEmpty());
    EXPECT_THAT(entries("GEO_Chair"), IsEmpty());
    EXPECT_TRUE(environment.directoryUrl().isEmpty());
    EXPECT_TRUE(geometry.directoryUrl().isEmpty());
}

TEST_F(kxLocalUrlManagerSavingNodesTest, NamesFilesAfterTheItemAsAFileNameMayBe)
{
    const osg::NodePtr hills = addEnvironment("Hills/[far]", dawn.get());
    const osg::NodePtr chair = addChair("Chair: a/b?");
    kxEnvironmentNodeAssetItem environment;
    environment.initFrom(hills, Uuid, true);
    ScriptedGeometryItem geometry;
    geometry.initFrom(chair, Uuid, true);
    kxNodeUtils::setName(hills, "Valley", false, nullptr);
    kxNodeUtils::setName(chair, "Table", false, nullptr);
    geometry.render = [](const osg::NodePtr &) { return makePicture(); };
    kxtest::CapturedOutput output;

    EXPECT_TRUE(save(environment));
    EXPECT_TRUE(save(geometry));

    EXPECT_THAT(entries(), UnorderedElementsAre("ENV_Hills__far_", "GEO_Chair_ a_b_"));
    EXPECT_THAT(entries("ENV_Hills__far_"), UnorderedElementsAre("Hills__far_.xml", "Hills__far_.osb"));
    EXPECT_THAT(entries("GEO_Chair_ a_b_"),
                UnorderedElementsAre("Chair_ a_b_.xml", "Chair_ a_b_.osb", "Chair_ a_b_.png"));
    EXPECT_EQ(environment.directoryUrl(), url("ENV_Hills__far_"));
    EXPECT_EQ(geometry.directoryUrl(), url("GEO_Chair_ a_b_"));
    EXPECT_EQ(output.text(), savingEnvironment("Hills__far_") + prepared + end + savingGeometry("Chair_ a_b_") +
                                 "saving preview of Table\n" + end)
        << "the node's name as it is now";
}

TEST_F(kxLocalUrlManagerSavingNodesTest, AddsASlashOnlyWhereThereIsNone)
{
    class Slashed final : public kxLocalUrlManager
    {
    public:
        QUrl makeUniqueDirectory(const QUrl &url, const QString &name, kxAssetItem *item) override
        {
            return QUrl(kxLocalUrlManager::makeUniqueDirectory(url, name, item).toString() + QLatin1Char('/'));
        }
    };
    ScriptedGeometryItem item;
    item.initFrom(addChair(), Uuid, true);
    kxtest::CapturedOutput output;

    EXPECT_TRUE(Slashed().saveSceneNodeAsset(url(), &item));

    EXPECT_EQ(output.text(), savingGeometry("Chair") + end);
    EXPECT_THAT(entries("GEO_Chair"), UnorderedElementsAre("Chair.xml", "Chair.osb"));
    EXPECT_EQ(item.directoryUrl(), url("GEO_Chair/"));
}

TEST_F(kxLocalUrlManagerSavingNodesTest, SavesThePreviewThatAnEnvironmentHas)
{
    addPreview(dawn.get());
    kxEnvironmentNodeAssetItem item;
    item.initFrom(addEnvironment("Hills", dawn.get()), Uuid, true);
    kxtest::CapturedOutput output;

    EXPECT_TRUE(save(item));

    EXPECT_THAT(_host.previewRequests, IsEmpty());
    EXPECT_EQ(output.text(), savingEnvironment("Hills") + prepared + "saving preview of dawn\n" + end);
    EXPECT_THAT(entries("ENV_Hills"), UnorderedElementsAre("Hills.xml", "Hills.osb", "Hills.png"));
    EXPECT_EQ(QImage(QString::fromStdString(_folder.file("ENV_Hills/Hills.png"))).size(), QSize(2, 2));
}

TEST_F(kxLocalUrlManagerSavingNodesTest, HasAPreviewRenderedOnceTheSceneIsAsItWas)
{
    const osg::MaterialPtr choices = kxDefaultEnvironment::getSwitch();
    const osg::NodePtr node = addEnvironment("Hills", choices);
    ASSERT_TRUE(kxController::addToDefaultEnvironment(dawn.get(), node, false));
    kxEnvironmentNodeAssetItem item;
    item.initFrom(node, Uuid, true);
    const Renderer renderer([&](const osg::MaterialPtr &material) {
        EXPECT_EQ(material, dawn.get());
        EXPECT_EQ(materialOf(node), choices);
        EXPECT_THAT(entries("ENV_Hills"), UnorderedElementsAre("Hills.xml", "Hills.osb"));
        EXPECT_TRUE(item.directoryUrl().isEmpty());
        addPreview(material);
    });
    kxtest::CapturedOutput output;

    EXPECT_TRUE(save(item));

    EXPECT_THAT(output.text(), EndsWith("---> Default Environment\nsaving preview of dawn\n" + end));
    EXPECT_THAT(entries("ENV_Hills"), UnorderedElementsAre("Hills.xml", "Hills.osb", "Hills.png"));
    EXPECT_EQ(item.directoryUrl(), url("ENV_Hills"));
}

TEST_F(kxLocalUrlManagerSavingNodesTest, RendersAPreviewOfGeometryOnceTheSceneIsAsItWas)
{
    const osg::UberMaterialPtr paint = osg::UberMaterial::create();
    const osg::UBRDFMaterialPtr layer = osg::UBRDFMaterial::create();
    {
        const osg::CPEditor edit(paint, osg::UberMaterial::BRDFMaterialsFieldMask);
        paint->editBRDFMaterials().push_back(layer);
    }
    {
        const osg::CPEditor edit(layer, osg::UBRDFMaterial::EnvironmentFieldMask);
        layer->setEnvironment(dawn.get());
    }
    const osg::NodePtr chair = addChair();
    addSquare(chair, "Back", paint);
    ScriptedGeometryItem item;
    item.initFrom(chair, Uuid, true);
    int rendered = 0;
    item.render = [&](const osg::NodePtr &node) {
        ++rendered;
        EXPECT_EQ(node, chair);
        EXPECT_EQ(layer->getEnvironment(), dawn.get());
        EXPECT_THAT(entries("GEO_Chair"), UnorderedElementsAre("Chair.xml", "Chair.osb"));
        EXPECT_TRUE(item.directoryUrl().isEmpty());
        return makePicture();
    };

    EXPECT_TRUE(save(item));

    EXPECT_EQ(rendered, 1);
    EXPECT_THAT(entries("GEO_Chair"), UnorderedElementsAre("Chair.xml", "Chair.osb", "Chair.png"));
}

TEST_F(kxLocalUrlManagerSavingNodesTest, KeepsTheMetadataOfAnEnvironmentThatCannotBePrepared)
{
    kxEnvironmentNodeAssetItem item;
    item.initFrom(addEnvironment("Empty", nullptr), Uuid, true);
    const kxLogRecorder log;
    kxtest::CapturedOutput output;

    EXPECT_FALSE(save(item));

    EXPECT_THAT(log.lines(), ElementsAre("Failed to prepare environment node for saving."));
    EXPECT_EQ(output.text(),
              savingEnvironment("Empty") + "[prepareEnvironmentSwitches] no env material under envNode found\n");
    EXPECT_THAT(entries("ENV_Empty"), ElementsAre("Empty.xml"));
    EXPECT_TRUE(item.directoryUrl().isEmpty());
    EXPECT_THAT(_host.previewRequests, IsEmpty());
}

TEST_F(kxLocalUrlManagerSavingNodesTest, KeepsTheMetadataWhenThePayloadCannotBeWritten)
{
    writeAssetWithoutRoomForAPayload("ENV_Hills", "Hills", "Environments");
    writeAssetWithoutRoomForAPayload("GEO_Chair", "Chair", "Geometries");
    kxEnvironmentNodeAssetItem environment;
    environment.initFrom(addEnvironment("Hills", dawn.get()), Uuid, true);
    ScriptedGeometryItem geometry;
    geometry.initFrom(addChair(), Uuid, true);
    geometry.render = [](const osg::NodePtr &) { return makePicture(); };
    const kxLogRecorder log;
    kxtest::CapturedOutput output;

    EXPECT_FALSE(save(environment));
    EXPECT_FALSE(save(geometry));

    EXPECT_THAT(log.lines(kxLogLevel::Error),
                ElementsAre("Failed to write file '" + _folder.file("ENV_Hills/Hills.osb") + "'.",
                            "Failed to write file '" + _folder.file("GEO_Chair/Chair.osb") + "'."));
    EXPECT_EQ(output.text(), savingEnvironment("Hills", found) + prepared + savingGeometry("Chair", found));
    EXPECT_THAT(entries("ENV_Hills"), UnorderedElementsAre("asset.xml", "Hills.xml", "Hills.osb"));
    EXPECT_THAT(entries("GEO_Chair"), UnorderedElementsAre("asset.xml", "Chair.xml", "Chair.osb"));
    EXPECT_TRUE(environment.directoryUrl().isEmpty());
    EXPECT_TRUE(geometry.directoryUrl().isEmpty());
}

TEST_F(kxLocalUrlManagerSavingNodesTest, DoesNotMindThatAPlateCannotBeWritten)
{
    writeAssetWithoutRoomForAPayload("SCP_Logo", "Logo", "Sceneplates");
    kxSceneplateAssetItem item;
    item.initFrom(addPlate("Logo"), Uuid, true);
    const kxLogRecorder log;
    kxtest::CapturedOutput output;

    EXPECT_TRUE(save(item));

    EXPECT_THAT(log.lines(kxLogLevel::Error), IsEmpty());
    EXPECT_EQ(item.directoryUrl(), url("SCP_Logo"));
    EXPECT_THAT(output.text(), EndsWith(end));
    EXPECT_THAT(entries("SCP_Logo"), UnorderedElementsAre("asset.xml", "Logo.xml", "Logo.osb"));
}

TEST_F(kxLocalUrlManagerSavingNodesTest, PreparesGeometryButNoPlates)
{
    const ActionModule actions;
    const osg::NodePtr chair = addChair();
    ScriptedGeometryItem geometry;
    geometry.initFrom(chair, Uuid, true);
    kxSceneplateAssetItem plate;
    plate.initFrom(addPlate("Logo"), Uuid, true);

    EXPECT_TRUE(save(geometry));
    EXPECT_TRUE(save(plate));

    EXPECT_THAT(actions.asked, ElementsAre(chair.getFieldContainerId()));
    EXPECT_THAT(entries("SCP_Logo"), UnorderedElementsAre("Logo.xml", "Logo.osb"));
}

TEST_F(kxLocalUrlManagerSavingNodesTest, ReturnsFalseWhenAnEnvironmentItemIsDeletedWhileItsPreviewIsRendered)
{
    kxEnvironmentNodeAssetItem saved;
    const osg::NodePtr node = addEnvironment("Hills", dawn.get());
    saved.initFrom(node, Uuid, true);
    ASSERT_TRUE(saved.save(url()));
    auto *item = dynamic_cast<kxEnvironmentNodeAssetItem *>(kxAssetItemFactory::the().findItem(Uuid));
    ASSERT_TRUE(item);
    item->initFrom(node, Uuid, true);
    const Renderer renderer([](const osg::MaterialPtr &material) {
        kxAssetItemFactory::the().deleteItem(Uuid);
        addPreview(material);
    });
    kxtest::CapturedOutput output;

    EXPECT_FALSE(item->save(url()));

    EXPECT_THAT(output.text(), Not(EndsWith(end)));
    EXPECT_EQ(kxAssetItemFactory::the().itemCount(), 0) << "nothing was registered in its place";
}

TEST_F(kxLocalUrlManagerSavingNodesTest, ReturnsFalseWhenANodeItemIsDeletedWhileItsPreviewIsRendered)
{
    auto item = std::make_unique<ScriptedGeometryItem>();
    item->initFrom(addChair(), Uuid, true);
    kxGeometrySceneplateCommon &saved = *item;
    item->render = [&item](const osg::NodePtr &) {
        const osg::ImagePtr picture = makePicture();
        const std::unique_ptr<ScriptedGeometryItem> deleted = std::move(item);
        return picture;
    };
    kxtest::CapturedOutput output;

    EXPECT_FALSE(save(saved));

    EXPECT_THAT(output.text(), Not(EndsWith(end)));
}
