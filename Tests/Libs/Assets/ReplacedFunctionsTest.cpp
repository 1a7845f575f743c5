// SPDX-License-Identifier: Apache-2.0
#include "ReplacedFunctions.h"

#include "Assets/kxAssetItemDocument.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxEnvironmentNodeAssetItem.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Assets/kxLocalUrlManager.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Assets/kxSaveNode.h"
#include "Assets/kxSceneplateAssetItem.h"
#include "Kernel/kxAssetsService.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxTypeConverter.h"
#include "NodeFixture.h"
#include "NodeManager.h"
#include "Rendering/kxOSGWidget.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/UberMaterial.h"

#include <QImage>
#include <QPixmap>

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <future>
#include <memory>
#include <utility>

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Has a camera until something is to be rendered through it, which would take its time.
class BlindView final : public kxOSGWidget
{
public:
    osg::UberCameraPtr getUberCamera() const override
    {
        return isIsolateViewOverlayVisible() ? kxOSGWidget::getUberCamera() : osg::UberCameraPtr();
    }

private:
    void cancelRefinement() override {}
};

class ReplacedFunctionsTest : public NodeFixture
{
protected:
    static kxAssetItemDocument documentOf(kxAssetCategoryType category)
    {
        kxAssetItemDocument document;
        document.setAssetType(category);
        document.setAssetUUID("10000000-0000-4000-8000-000000000000");
        document.setAssetName("Name");
        document.setMaterialType(osg::SwitchMaterial::getClassType());
        document.setMaterialTags("tag");
        document.setSceneplateType(kxSceneplateTypes::Switch);
        return document;
    }
    static osg::NodePtr addPlate()
    {
        return addNode(kxScenegraph::getSceneplateRoot(), osg::Sceneplate::create(), "Plate");
    }

    void writeImage(const std::string &name) const
    {
        QImage image(4, 2, QImage::Format_ARGB32);
        image.fill(Qt::red);
        ASSERT_TRUE(image.save(QString::fromStdString(_folder.file(name))));
    }

    ReplacedFunctions replaced;
};

} // namespace

TEST_F(ReplacedFunctionsTest, LetMaterialsReadNothingWhereTheBaseFails)
{
    kxMaterialAssetItem item;
    replaced.readingMetadataFails = true;

    EXPECT_FALSE(item.readMetaData(documentOf(Material)));

    EXPECT_EQ(item.materialType(), nullptr);
    EXPECT_EQ(item.data(4, 0), QVariant(QString()));
    replaced.readingMetadataFails = false;
    EXPECT_TRUE(item.readMetaData(documentOf(Material)));
    EXPECT_EQ(item.materialType(), &osg::SwitchMaterial::getClassType());
}

TEST_F(ReplacedFunctionsTest, LetMaterialsWriteNothingWhereTheBaseFails)
{
    const Owned material = makeSurface("Paint");
    kxMaterialAssetItem item;
    item.initFrom(material.get(), {}, true);
    kxAssetItemDocument document;
    replaced.writingMetadataFails = true;

    EXPECT_FALSE(item.writeMetaData(document));

    EXPECT_EQ(document.getMaterialType(), nullptr);
    replaced.writingMetadataFails = false;
    EXPECT_TRUE(item.writeMetaData(document));
    EXPECT_EQ(document.getMaterialType(), &osg::UBRDFMaterial::getClassType());
}

TEST_F(ReplacedFunctionsTest, LetSceneplatesReadNothingWhereTheBaseFails)
{
    kxSceneplateAssetItem item;
    replaced.readingMetadataFails = true;

    EXPECT_FALSE(item.readMetaData(documentOf(Sceneplate)));

    EXPECT_EQ(item.sceneplateTypeName(), "Group") << "as it was";
    replaced.readingMetadataFails = false;
    EXPECT_TRUE(item.readMetaData(documentOf(Sceneplate)));
    EXPECT_EQ(item.sceneplateTypeName(), "Switch");
}

TEST_F(ReplacedFunctionsTest, LetSceneplatesWriteNothingWhereTheBaseFails)
{
    kxSceneplateAssetItem item;
    item.setNode(addPlate());
    kxAssetItemDocument document;
    const kxSceneplateTypes::NodeType none = document.getSceneplateType();
    replaced.writingMetadataFails = true;

    EXPECT_FALSE(item.writeMetaData(document));

    EXPECT_EQ(document.getSceneplateType(), none);
    replaced.writingMetadataFails = false;
    EXPECT_TRUE(item.writeMetaData(document));
    EXPECT_NE(document.getSceneplateType(), none);
}

TEST_F(ReplacedFunctionsTest, LetTheRegistryAnswerAnItemThatItDidNotTake)
{
    kxAssetItemFactory &factory = kxAssetItemFactory::the();
    replaced.addingItemsFails = true;

    const std::unique_ptr<kxAssetItem> item(factory.createOrUpdateItem(documentOf(Material)));

    EXPECT_EQ(factory.itemCount(), 0);
    ASSERT_TRUE(item);
    EXPECT_EQ(item->name(), "Name");
}

TEST_F(ReplacedFunctionsTest, LetItemsReadTheirPreviewsAtOnceWhereThereIsNoLoader)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // in a process in which nobody has made one
    const QUrl directory = writeAsset("GEO_x", "");
    writeImage("GEO_x/asset.png");

    EXPECT_EXIT(
        {
            replaced.previewLoaderIsMissing = true;
            kxGeometryAssetItem item;
            item.setDirectoryUrl(directory);
            kxGeometryAssetItem without;
            without.setDirectoryUrl(url("missing"));
            const bool isLoaded = item.loadPreviewImage(true) && item.previewImage().size() == QSize(4, 2);
            std::_Exit(isLoaded && !without.loadPreviewImage(true) ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(ReplacedFunctionsTest, LightNoLayerByItself)
{
    const osg::FCRef<osg::UBRDFMaterial> glowing(osg::UBRDFMaterial::create());
    const osg::FCRef<osg::UBRDFMaterial> other(osg::UBRDFMaterial::create());
    const osg::FCRef<osg::UberMaterial> over(osg::UberMaterial::create());
    {
        const osg::CPEditor edit(over.get(), osg::UberMaterial::BRDFMaterialsFieldMask);
        over->editBRDFMaterials().push_back(glowing.get());
        over->editBRDFMaterials().push_back(other.get());
    }
    const osg::NodePtr chair = addPlaced(kxScenegraph::getRoot(), "Chair", {});
    kxMaterials::setOverrideMaterial(addSquare(chair, "Seat"), over.get());
    NodeManager &manager = NodeManager::fresh();
    manager.load = [&chair](osg::NodePtr &node) {
        node = chair;
        return true;
    };
    kxGeometryAssetItem item;
    item.setDirectoryUrl(NodeManager::url("/x"));
    replaced.defaultEnvironment = osg::MaterialPtr(glowing.get());

    EXPECT_TRUE(item.loadNode());

    EXPECT_FALSE(glowing->getEnvironment());
    EXPECT_EQ(other->getEnvironment(), glowing.get());
    manager.load = nullptr;
}

TEST_F(ReplacedFunctionsTest, SeeTheActionsAskedForByAttributesThatReplace)
{
    const kxSaveNode preparation(addGroup(kxScenegraph::getRoot(), "Chair"));

    EXPECT_THAT(replaced.messageAttributes, ElementsAre("node replaces", "addActionAttachment replaces"));
}

TEST_F(ReplacedFunctionsTest, SeeNothingTakenFromTheParentOfAPoolThatHangsNowhere)
{
    const osg::NodePtr chair = addGroup(kxScenegraph::getRoot(), "Chair");
    const osg::NodePtr seat = addGroup(chair, "Seat");
    addConstraint(seat, chair);
    kxSaveNode preparation(chair);
    const osg::FCRef<osg::Node> pool(chair->getChild(1));
    {
        const osg::CPEditor edit(chair, osg::Node::ChildrenFieldMask);
        chair->subChild(pool.get());
    }
    kxSaveNode another(chair);
    replaced.relieved.clear();

    preparation.cleanup();

    EXPECT_THAT(replaced.relieved, IsEmpty());
    another.cleanup();
    EXPECT_THAT(replaced.relieved, ElementsAre(chair)) << "its pool hangs there";
}

TEST_F(ReplacedFunctionsTest, SeeTheHostAskedForTypeNamesByAnEmptyMessage)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // in a process in which nobody has asked yet
    EXPECT_EXIT(
        {
            kxMaterialAssetItem::UIMaterialTypeName("UBRDFMaterial");
            const std::vector<std::string> answer{"names replaces"};
            std::_Exit(replaced.messageAttributes == answer ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(ReplacedFunctionsTest, SeeMessagesCarryTheirAttributesAndNoOthers)
{
    const auto attributes = [this] { return std::exchange(replaced.messageAttributes, {}); };
    kxKernelServiceFactory::the().startKernel();
    auto *service = kxKernelServiceFactory::the().getService<kxAssetsService>();
    const osg::NodePtr chair = addGroup(kxScenegraph::getRoot(), "Chair");
    setUuid(chair, "chair");
    const std::vector<kxdNodePtr> nodes{kxTypeConverter::convertNode(chair)};

    service->selectAssets(nodes);
    EXPECT_THAT(attributes(), ElementsAre("uuid replaces", "clearSelection replaces"));
    service->overwriteAssets(nodes);
    EXPECT_THAT(attributes(), ElementsAre("containerIds replaces"));
    service->queryAssetChanges(nodes);
    EXPECT_THAT(attributes(), ElementsAre("assets replaces"));
    service->loadSceneplateAssets({"plate"}, nullptr);
    EXPECT_THAT(attributes(), ElementsAre("uuid replaces", "parentid replaces"));
    const Owned paint = makeSurface("Paint");
    kxMaterialAssetItem().initFrom(paint.get(), {}, true);
    EXPECT_THAT(attributes(), ElementsAre("materials replaces", "showProgress replaces"));
}

TEST_F(ReplacedFunctionsTest, SeeALoadedEnvironmentFollowTheSwitchQuietly)
{
    const Owned sky = makeSky("sky");
    const osg::FCRef<osg::Node> hills(addNode(nullptr, osg::Environment::create(), "Hills"));
    kxNodeUtils::setMaterial(hills, sky.get(), false, true);
    NodeManager &manager = NodeManager::fresh();
    manager.load = [&hills](osg::NodePtr &node) {
        node = hills;
        return true;
    };
    kxEnvironmentNodeAssetItem item;
    item.setDirectoryUrl(NodeManager::url("/x"));
    replaced.assignments.clear();

    EXPECT_TRUE(item.loadEnvironmentNode(true));

    EXPECT_THAT(replaced.assignments, ElementsAre("quietly, replacing"));
    manager.load = nullptr;
}

TEST_F(ReplacedFunctionsTest, SeeTheMainViewAskedForWhereverAPreviewNeedsAView)
{
    const BlindView view;
    kxGeometryAssetItem item;

    EXPECT_FALSE(item.renderPreview(addPlaced(kxScenegraph::getRoot(), "Chair", {})));

    EXPECT_THAT(replaced.viewsAskedFor, SizeIs(testing::Ge(3U))) << "to begin, and twice to bring it back";
    EXPECT_THAT(replaced.viewsAskedFor, Each(-1));
}

TEST_F(ReplacedFunctionsTest, SeeTheRootOfPlatesAskedForOnceBetweenTheBackEndAndTheWriting)
{
    std::vector<std::string> steps;
    replaced.whenSceneplateRootIsAskedFor = [&steps] { steps.emplace_back("root"); };
    NodeManager &manager = NodeManager::fresh();
    manager.store = [&steps](kxGeometrySceneplateCommon &) {
        steps.emplace_back("writing");
        return false;
    };
    kxSceneplateAssetItem item;

    EXPECT_FALSE(item.save(NodeManager::url("/library"))) << "it has no node";
    item.setNode(addPlate());
    EXPECT_FALSE(item.save(QUrl("nobody:/library")));
    EXPECT_THAT(steps, IsEmpty());
    EXPECT_FALSE(item.save(NodeManager::url("/library")));

    EXPECT_THAT(steps, ElementsAre("root", "writing"));
    manager.store = nullptr;
}

TEST_F(ReplacedFunctionsTest, SeeADescriptionSummedUpInTheEncodingOfItsDocument)
{
    kxMaterialAssetItem item;
    item.setDirectoryUrl(writeAsset("MAT_x", "<material><type>SwitchMaterial</type></material>"));

    EXPECT_NE(item.checksum(), 0U);

    EXPECT_THAT(replaced.writings, ElementsAre(ReplacedFunctions::Writing{"UTF-8", 2, QDomNode::EncodingFromDocument}));
}

TEST_F(ReplacedFunctionsTest, SeeEachOperationAskForTheFormatsOfQtOnceOnHoweverManyThreads)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // in a process in which nobody has read an image
    writeImage("image.png");

    EXPECT_EXIT(
        {
            const kxUrlManager *const manager = kxLocalUrlManager::the();
            std::atomic_int asked = 0;
            std::future<bool> other;
            replaced.whenFormatsAreAskedFor = [&] {
                if (++asked > 1)
                    return;
                other = std::async(std::launch::async, [&] {
                    QImage image;
                    return manager->loadImageFromFile(url("image.png"), &image);
                });
                other.wait_for(std::chrono::milliseconds(100)); // in vain: it waits for the list that is being made
            };

            QImage image;
            const bool areLoaded = manager->loadImageFromFile(url("image.png"), &image) && other.get();
            const int askedForImages = asked;
            QPixmap pixmap;
            const bool arePainted = manager->loadPixmapFromFile(url("image.png"), pixmap) &&
                                    manager->loadPixmapFromFile(url("image.png"), pixmap);
            std::_Exit(areLoaded && arePainted && askedForImages == 1 && asked == 2 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}
