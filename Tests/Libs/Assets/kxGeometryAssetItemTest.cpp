// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxGeometryAssetItem.h"

#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxUrlManager.h"
#include "Kernel/kxController.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxLogRecorder.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxModalQuestion.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxSceneReferenceService.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSelectionManager.h"
#include "NodeFixture.h"
#include "Rendering/kxOffscreenView.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/ReferenceAttachment.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"
#include "SceneGraph/USphereEnvironmentMaterial.h"
#include "SceneGraph/UberMaterial.h"
#include "Support/CapturedOutput.h"

#include <QFileInfo>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

using Question = kxModalQuestion::Question;

class kxGeometryAssetItemTest : public NodeFixture
{
protected:
    kxGeometryAssetItemTest()
    {
        kxModalQuestion::setAnswerer([this](const Question &question) {
            questions.push_back(question);
            if (whileAsked)
                whileAsked();
            return answers.empty() ? QMessageBox::Cancel : answers[std::min(questions.size(), answers.size()) - 1];
        });
    }
    ~kxGeometryAssetItemTest() override { kxModalQuestion::setAnswerer({}); }

    static osg::NodePtr root() { return kxScenegraph::getRoot(); }

    /// A placed node with a square below it.
    osg::NodePtr addChair()
    {
        const osg::NodePtr chair = addPlaced(root(), "Chair", {1.0, 2.0, 3.0});
        addSquare(chair, "Seat", paint.get());
        return chair;
    }
    std::string save(const osg::NodePtr &node)
    {
        kxGeometryAssetItem item;
        item.initFrom(node, {}, true);
        EXPECT_TRUE(item.save(url()));
        return item.uuid();
    }
    static kxGeometryAssetItem *registered(const std::string &uuid)
    {
        return dynamic_cast<kxGeometryAssetItem *>(kxAssetItemFactory::the().findItem(uuid));
    }

    Owned paint = makeSurface("Paint");
    std::vector<Question> questions;
    std::vector<QMessageBox::StandardButton> answers;
    std::function<void()> whileAsked;
};

} // namespace

TEST_F(kxGeometryAssetItemTest, KnowsAValidRoot)
{
    const osg::NodePtr leaf = addPlaced(root(), "Leaf", {0.0, 0.0, 0.0});

    EXPECT_FALSE(kxGeometryAssetItem::isValidAssetRoot(nullptr));
    EXPECT_FALSE(kxGeometryAssetItem::isValidAssetRoot(leaf)) << "it has no child";
    EXPECT_FALSE(kxGeometryAssetItem::isValidAssetRoot(root())) << "it is a group";
    EXPECT_TRUE(kxGeometryAssetItem::isValidAssetRoot(addChair()));
}

TEST_F(kxGeometryAssetItemTest, IsOfGeometryAndShowsANode)
{
    kxGeometryAssetItem item;

    EXPECT_EQ(item.category(), Geometry);
    EXPECT_EQ(item.mimeType(), "application/sarn-geometry-asset");
    EXPECT_EQ(item.data(kxAssetCategory::getTypeColumn(), Qt::DisplayRole), "Node");
    EXPECT_EQ(item.data(kxAssetCategory::getTypeColumn(), Qt::ToolTipRole), "Node");
    EXPECT_FALSE(item.data(kxAssetCategory::getTypeColumn(), Qt::DecorationRole).isValid());
    EXPECT_FALSE(item.getNode());
}

TEST_F(kxGeometryAssetItemTest, TakesNodeNameAndUuidFromTheScene)
{
    const osg::NodePtr chair = addChair();
    setUuid(chair, "10000000-0000-4000-8000-000000000000");
    kxGeometryAssetItem item;

    item.initFrom(chair, {}, true);
    EXPECT_EQ(item.getNode(), chair);
    EXPECT_EQ(item.name(), "Chair");
    EXPECT_EQ(item.uuid(), "10000000-0000-4000-8000-000000000000");

    item.initFrom(paint.get(), {}, true);
    EXPECT_FALSE(item.getNode()) << "a material is no node";
    EXPECT_EQ(item.category(), Geometry);
    EXPECT_EQ(item.name(), "unnamed");
    EXPECT_EQ(item.uuid(), "");
}

TEST_F(kxGeometryAssetItemTest, ReadsADestroyedNodeAsNone)
{
    const osg::NodePtr chair = addChair();
    kxGeometryAssetItem item;
    item.initFrom(chair, {}, true);

    {
        const osg::CPEditor edit(root(), osg::Node::ChildrenFieldMask);
        root()->subChild(chair);
    }

    EXPECT_FALSE(item.getNode());
    EXPECT_FALSE(item.makeNodeValidForSave());
    EXPECT_FALSE(item.save(url()));
}

TEST_F(kxGeometryAssetItemTest, SavesWithoutAQuestionWhereThereIsARoot)
{
    const osg::NodePtr chair = addChair();
    kxtest::CapturedOutput output;

    const std::string uuid = save(chair);

    EXPECT_EQ(questions.size(), 0U);
    const std::string path = _folder.file("GEO_Chair/");
    EXPECT_EQ(output.text(), "--------------\nkxLocalUrlManager::saveSceneNodeAsset Chair\n   save node to path: " +
                                 path + "\n--------------\n");
    EXPECT_TRUE(QFileInfo::exists(QString::fromStdString(path + "Chair.osb")));
    EXPECT_TRUE(QFileInfo::exists(QString::fromStdString(path + "Chair.xml")));
    EXPECT_FALSE(QFileInfo::exists(QString::fromStdString(path + "Chair.png"))) << "there is no view";
    ASSERT_TRUE(registered(uuid));
    const auto attachment = osg::AssetAttachment::getAssetAttachment(chair);
    ASSERT_TRUE(attachment);
    EXPECT_EQ(attachment->getUuid(), uuid);
    EXPECT_EQ(attachment->getChecksum(), registered(uuid)->checksum());
    EXPECT_TRUE(registered(uuid)->hasSameChecksum(chair));
}

TEST_F(kxGeometryAssetItemTest, AsksForARootAndMakesOne)
{
    const osg::NodePtr group = addGroup(root(), "Bühne");
    addSquare(group, "Floor");
    setUuid(group, "10000000-0000-4000-8000-000000000000");
    answers = {QMessageBox::Yes};
    kxGeometryAssetItem item;
    item.initFrom(group, {}, true);
    const std::int32_t place = root()->findChild(group);

    EXPECT_TRUE(item.makeNodeValidForSave());

    ASSERT_EQ(questions.size(), 1U);
    EXPECT_EQ(questions[0].icon, QMessageBox::Warning);
    EXPECT_EQ(questions[0].title, "Asset Manager");
    EXPECT_EQ(questions[0].text,
              QString::fromUtf8("Bühne:\nThe node to be saved does not have a valid Asset Root node.\n"
                                "Create one?"));
    EXPECT_EQ(questions[0].buttons, QMessageBox::Yes | QMessageBox::Cancel);
    EXPECT_EQ(questions[0].defaultButton, QMessageBox::Yes);
    const osg::NodePtr made = item.getNode();
    EXPECT_EQ(describe(made), "Bühne(Bühne(Floor))");
    EXPECT_EQ(root()->findChild(made), place);
    EXPECT_EQ(uuidOfNode(made), "10000000-0000-4000-8000-000000000000") << "the identity sits on the root";
    EXPECT_EQ(uuidOfNode(group), "none");
    EXPECT_TRUE(kxGeometryAssetItem::isValidAssetRoot(made));
}

TEST_F(kxGeometryAssetItemTest, LeavesTheSceneAloneWhenThatIsDeclined)
{
    const osg::NodePtr leaf = addPlaced(root(), "Leaf", {0.0, 0.0, 0.0});
    const std::string before = describe(root());
    kxGeometryAssetItem item;
    item.initFrom(leaf, {}, true);

    EXPECT_FALSE(item.save(url()));

    EXPECT_EQ(questions.size(), 1U) << "a leaf is asked about even when it has a placement";
    EXPECT_EQ(describe(root()), before);
    EXPECT_EQ(item.getNode(), leaf);
}

TEST_F(kxGeometryAssetItemTest, SurvivesANodeThatGoesWhileItAsks)
{
    const osg::NodePtr group = addGroup(root(), "Group");
    answers = {QMessageBox::Yes};
    whileAsked = [&] {
        const osg::CPEditor edit(root(), osg::Node::ChildrenFieldMask);
        root()->subChild(group);
    };
    kxGeometryAssetItem item;
    item.initFrom(group, {}, true);

    EXPECT_FALSE(item.save(url()));
}

TEST_F(kxGeometryAssetItemTest, AsksBeforeItTurnsReferencesIntoOrdinaryNodes)
{
    auto service = std::make_unique<kxSceneReferenceService>();
    kxKernelServiceFactory::the().setService<kxReferenceService>(service.get());
    const osg::NodePtr chair = addChair();
    const auto reference = osg::ReferenceAttachment::create();
    {
        const osg::CPEditor edit(chair->getChild(0), osg::AttachmentContainer::AttachmentsFieldMask);
        chair->getChild(0)->addAttachment(reference);
    }
    kxGeometryAssetItem item;
    item.initFrom(chair, {}, true);

    EXPECT_FALSE(item.makeNodeValidForSave());
    ASSERT_EQ(questions.size(), 1U);
    EXPECT_EQ(questions[0].title, "Save Geometry Asset");
    EXPECT_EQ(questions[0].text,
              "You are attempting to add an asset containing references. References are not supported in assets. "
              "Continuing will add the asset to the Asset Manager, removing all references.  This action is not "
              "undoable. Select Ok to continue.");
    EXPECT_EQ(questions[0].buttons, QMessageBox::Ok | QMessageBox::Cancel);
    EXPECT_EQ(questions[0].defaultButton, QMessageBox::Cancel);
    EXPECT_TRUE(osg::findAttachment<osg::ReferenceAttachment>(chair->getChild(0)));

    answers = {QMessageBox::Ok};
    EXPECT_TRUE(item.makeNodeValidForSave());
    EXPECT_FALSE(osg::findAttachment<osg::ReferenceAttachment>(chair->getChild(0)));
    kxKernelServiceFactory::the().setService<kxReferenceService>(nullptr);
}

TEST_F(kxGeometryAssetItemTest, LoadsWhatItSaved)
{
    const osg::NodePtr chair = addChair();
    const std::string uuid = save(chair);
    kxtest::CapturedOutput output;

    const osg::FCRef<osg::Node> loaded(kxGeometryAssetItem::loadNodeFromUUID(uuid));

    EXPECT_THAT(output.text(), HasSubstr("[loadNode] updated attachment\n"));
    ASSERT_TRUE(loaded);
    EXPECT_NE(loaded.get(), chair);
    EXPECT_FALSE(loaded->getParent());
    EXPECT_EQ(describe(loaded), "Chair(Seat)");
    EXPECT_EQ(uuidOfNode(loaded), uuid);
    EXPECT_TRUE(registered(uuid)->hasSameChecksum(loaded.get()));
    EXPECT_EQ(osg::Transform3DPtr::dcast(loaded->getCore())->getTranslation(), (osg::Vec3d{1.0, 2.0, 3.0}));
    const auto seat = osg::GeometryPtr::dcast(loaded->getChild(0)->getCore());
    EXPECT_EQ(seat->getIndices().size(), 6U) << "polygons are cut on the way in";
    EXPECT_EQ(osg::getName(seat->getMaterial()), "Paint");
    EXPECT_TRUE(kxController::isRenderUpdateEnabled());
}

TEST_F(kxGeometryAssetItemTest, LoadsAnotherCopyEachTimeAndTheFormerWhenItFails)
{
    const std::string uuid = save(addChair());

    const osg::FCRef<osg::Node> first(kxGeometryAssetItem::loadNodeFromUUID(uuid));
    const osg::FCRef<osg::Node> second(kxGeometryAssetItem::loadNodeFromUUID(uuid));
    ASSERT_TRUE(first && second);
    EXPECT_NE(first.get(), second.get());
    ASSERT_TRUE(QFile::remove(QString::fromStdString(_folder.file("GEO_Chair/Chair.osb"))));
    EXPECT_EQ(kxGeometryAssetItem::loadNodeFromUUID(uuid), second.get());
}

TEST_F(kxGeometryAssetItemTest, SavesTheSameBytesAgainButForTheAttachment)
{
    const std::string uuid = save(addChair());
    const auto saveLoaded = [&] {
        const osg::FCRef<osg::Node> loaded(kxGeometryAssetItem::loadNodeFromUUID(uuid));
        const auto attachment = osg::AssetAttachment::getAssetAttachment(loaded.get());
        {
            const osg::CPEditor edit(attachment, osg::AllFieldMask);
            attachment->setChecksum(0); // of what was stored before: it changes with every save
        }
        EXPECT_EQ(save(loaded.get()), uuid);
        return readFile("GEO_Chair/Chair.osb");
    };

    const std::string first = saveLoaded();
    EXPECT_EQ(saveLoaded(), first);
    EXPECT_GT(first.size(), 100U);
}

TEST_F(kxGeometryAssetItemTest, WrapsALoadedGroupInARootOfItsOwn)
{
    // Written without asking, as another program might.
    const osg::FCRef<osg::Node> group(osg::makeNodeFor(osg::Group::create()));
    osg::setName(group.get(), "Plain");
    addSquare(group, "Floor");
    setUuid(group, "10000000-0000-4000-8000-000000000000");
    writeAsset("GEO_Plain", "<uuid>10000000-0000-4000-8000-000000000000</uuid><category>Geometries</category>"
                            "<name>Stage</name>");
    ASSERT_TRUE(kxNodeUtils::writeNode(group, _folder.file("GEO_Plain/Plain.osb").c_str(), true));
    kxUrlManager::getUrlManager(url())->collectItems(url(), Undefined, nullptr);
    auto *item = registered("10000000-0000-4000-8000-000000000000");
    ASSERT_TRUE(item);

    EXPECT_TRUE(item->loadNode());

    const osg::FCRef<osg::Node> loaded(item->getNode());
    EXPECT_EQ(describe(loaded), "Stage(Plain(Floor))") << "the root is named after the item";
    EXPECT_TRUE(isOfType(loaded->getCore(), osg::Transform3D::getClassType()));
    EXPECT_EQ(uuidOfNode(loaded), "10000000-0000-4000-8000-000000000000");
    EXPECT_EQ(uuidOfNode(loaded->getChild(0)), "none");
}

TEST_F(kxGeometryAssetItemTest, WrapsNestedAssetsAndKeepsTheirIdentity)
{
    const osg::NodePtr chair = addChair();
    setUuid(chair->getChild(0), "20000000-0000-4000-8000-000000000000");
    const std::string uuid = save(chair);

    const osg::FCRef<osg::Node> loaded(kxGeometryAssetItem::loadNodeFromUUID(uuid));

    EXPECT_EQ(describe(loaded), "Chair(Asset(Seat))") << "an unknown item gives no name";
    EXPECT_EQ(uuidOfNode(loaded->getChild(0)), "20000000-0000-4000-8000-000000000000");
    EXPECT_EQ(uuidOfNode(loaded->getChild(0)->getChild(0)), "none");
}

TEST_F(kxGeometryAssetItemTest, LoadsPoolsWithinPools)
{
    // The inner one went with the outer one, and was then taken out once more.
    const osg::NodePtr chair = addChair();
    const osg::NodePtr outer = addNode(chair, osg::MaterialPool::create(), "Outer");
    const auto inner = osg::MaterialPool::create();
    {
        const osg::CPEditor edit(inner, osg::MaterialPool::MaterialsFieldMask);
        inner->editMaterials().push_back(makeSurface("Spare").get());
    }
    addNode(outer, inner, "Inner");
    const std::string uuid = save(chair);
    kxScenegraph::newDocument();

    const osg::FCRef<osg::Node> loaded(kxGeometryAssetItem::loadNodeFromUUID(uuid));

    EXPECT_EQ(describe(loaded), "Chair(Seat)");
    EXPECT_EQ(osg::getName(kxScenegraph::getMaterialPool()->getMaterials().values().back()), "Spare");
}

TEST_F(kxGeometryAssetItemTest, LightsLoadedOverridesByTheDefaultEnvironment)
{
    const osg::NodePtr chair = addChair();
    const osg::FCRef<osg::UberMaterial> over(osg::UberMaterial::create());
    const osg::FCRef<osg::UBRDFMaterial> layer(osg::UBRDFMaterial::create());
    {
        const osg::CPEditor edit(over.get(), osg::UberMaterial::BRDFMaterialsFieldMask);
        over->editBRDFMaterials().push_back(layer.get());
    }
    kxMaterials::setOverrideMaterial(chair, over.get());
    const std::string uuid = save(chair);

    const osg::FCRef<osg::Node> loaded(kxGeometryAssetItem::loadNodeFromUUID(uuid));

    std::set<osg::MaterialPtr> materials;
    kxMaterials::getOverrideMaterialsRecursive(loaded, materials, false);
    ASSERT_EQ(materials.size(), 1U);
    const auto uber = osg::UberMaterialPtr::dcast(*materials.begin());
    EXPECT_EQ(uber->getBRDFMaterials()[0]->getEnvironment(), kxDefaultEnvironment::getDefault());
}

TEST_F(kxGeometryAssetItemTest, LightsNoOverrideThatIsNoUberMaterial)
{
    const osg::NodePtr chair = addChair();
    kxMaterials::setOverrideMaterial(chair, makeSurface("Over"));
    const std::string uuid = save(chair);

    const osg::FCRef<osg::Node> loaded(kxGeometryAssetItem::loadNodeFromUUID(uuid));

    std::set<osg::MaterialPtr> materials;
    kxMaterials::getOverrideMaterialsRecursive(loaded, materials, false);
    ASSERT_EQ(materials.size(), 1U);
    EXPECT_FALSE(osg::dcast<osg::UBRDFMaterialPtr>(*materials.begin())->getEnvironment());
}

TEST_F(kxGeometryAssetItemTest, SaysWhatItCannotFind)
{
    const std::string material = store(paint);
    kxtest::CapturedOutput output;
    const kxLogRecorder log;

    EXPECT_FALSE(kxGeometryAssetItem::loadNodeFromUUID("nobody"));
    EXPECT_FALSE(kxGeometryAssetItem::loadNodeFromUUID(material)) << "of another kind";

    EXPECT_EQ(output.text(), "[loadNodeFromUUID] did not find item with uuid 'nobody'\n");
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(kxGeometryAssetItemTest, FailsToLoadWhatIsNotThere)
{
    const std::string uuid = save(addChair());
    ASSERT_TRUE(QFile::remove(QString::fromStdString(_folder.file("GEO_Chair/Chair.osb"))));
    kxController::enableRenderUpdate(false);

    EXPECT_FALSE(registered(uuid)->loadNode());

    EXPECT_FALSE(kxController::isRenderUpdateEnabled()) << "as it was before";
    kxController::enableRenderUpdate(true);
    EXPECT_FALSE(kxGeometryAssetItem().loadNode()) << "without a directory";
}

TEST_F(kxGeometryAssetItemTest, BringsClonesUpToDateWhenItSaves)
{
    const osg::NodePtr chair = addChair();
    const osg::NodePtr clone = addNode(root(), chair->getCore(), "Clone");

    const std::string uuid = save(chair);

    EXPECT_EQ(describe(clone), "Chair(Seat)");
    EXPECT_EQ(uuidOfNode(clone), uuid);
}

TEST_F(kxGeometryAssetItemTest, ReplacesTheRegisteredItemWhenItSavesAgain)
{
    const osg::NodePtr chair = addChair();
    const std::string uuid = save(chair);
    addSquare(chair, "Back");

    EXPECT_TRUE(registered(uuid)->hasSameChecksum(chair));
    EXPECT_TRUE(save(chair) == uuid);

    EXPECT_EQ(kxAssetItemFactory::the().itemCount(), 1);
    EXPECT_TRUE(registered(uuid));
    const osg::FCRef<osg::Node> loaded(kxGeometryAssetItem::loadNodeFromUUID(uuid));
    EXPECT_EQ(describe(loaded), "Chair(Seat Back)");
}

TEST_F(kxGeometryAssetItemTest, SavesItselfWhileItIsRegistered)
{
    const osg::NodePtr chair = addChair();
    const std::string uuid = save(chair);
    kxGeometryAssetItem *item = registered(uuid);
    item->setNode(chair);

    EXPECT_TRUE(item->save(url()));

    ASSERT_TRUE(registered(uuid));
    EXPECT_TRUE(registered(uuid)->hasSameChecksum(chair)) << "marked although the item that was saved is gone";
    EXPECT_EQ(kxAssetItemFactory::the().itemCount(), 1);
}

TEST_F(kxGeometryAssetItemTest, LeavesTheSceneAsItWas)
{
    const osg::NodePtr chair = addChair();
    save(chair);
    const osg::FCRef<osg::FieldContainer> before(osg::deepClone(osg::FieldContainerPtr(root()), {}));
    const std::int32_t count = chair->getRefCount();
    const std::size_t living = osg::FieldContainerFactory::the().livingContainerCount();

    save(chair);

    // What is stored notes the checksum of what was stored before, so that this changes each time.
    EXPECT_EQ(osg::findDifference(before.get(), root(), {&osg::AssetAttachment::getClassType()}), std::nullopt);
    EXPECT_EQ(chair->getRefCount(), count);
    EXPECT_EQ(osg::FieldContainerFactory::the().livingContainerCount(), living);
}

TEST_F(kxGeometryAssetItemTest, LeavesClonesAloneThatLieAboveOrBelow)
{
    // They were made to correspond as well: the saved node went with its place, or grew without an end.
    const osg::NodePtr outer = addPlaced(root(), "Outer", {1.0, 0.0, 0.0});
    const osg::NodePtr inner = addNode(addGroup(outer, "Middle"), outer->getCore(), "Inner");
    addGroup(inner, "Leaf");

    save(inner);
    EXPECT_EQ(describe(outer), "Outer(Middle(Inner(Leaf)))");
    save(outer);
    EXPECT_EQ(describe(outer), "Outer(Middle(Inner(Leaf)))");
}

TEST_F(kxGeometryAssetItemTest, RendersTheNodeAloneAndRestoresTheView)
{
    kxOffscreenView view;
    const osg::NodePtr chair = addChair();
    const osg::NodePtr other = addChair();
    const auto sphere = osg::USphereEnvironmentMaterial::create();
    const auto choices = kxDefaultEnvironment::getSwitch();
    {
        const osg::CPEditor edit(choices, osg::AllFieldMask);
        choices->addMaterial(sphere);
        choices->setChoice(1);
    }
    view.setRenderRoots({other});
    view.setIsolateViewOverlayVisible(false);
    kxSelectionManager::selectNodes({other, chair});
    const osg::FCRef<osg::UberCamera> camera(osg::deepClone(view.getUberCamera(), {}));
    kxGeometryAssetItem item;

    const auto picture = osg::FCRef<osg::Image>::adopt(item.renderPreview(chair));

    ASSERT_TRUE(picture);
    EXPECT_EQ(picture.get()->getRefCount(), 1);
    EXPECT_EQ(picture->getWidth(), 512U);
    EXPECT_EQ(picture->getHeight(), 384U);
    EXPECT_EQ(picture->pixel(0, 0)[3], 0.0F) << "nothing but the node";
    EXPECT_EQ(picture->pixel(256, 192)[3], 1.0F);
    EXPECT_THAT(view.getRenderRoots(), ElementsAre(other));
    EXPECT_TRUE(view.isIsolateViewOverlayVisible()) << "shown again, whatever it was";
    EXPECT_THAT(kxSelectionManager::getSelectedNodes(), ElementsAre(other, chair));
    EXPECT_EQ(osg::findDifference(view.getUberCamera(), camera.get()), std::nullopt);
    EXPECT_TRUE(sphere->getIsVisible());
    {
        const osg::CPEditor edit(sphere, osg::USphereEnvironmentMaterial::IsVisibleFieldMask);
        sphere->setIsVisible(false);
    }
    const auto again = osg::FCRef<osg::Image>::adopt(item.renderPreview(chair));
    EXPECT_FALSE(sphere->getIsVisible()) << "hidden before, hidden afterwards";
    EXPECT_FALSE(item.renderPreview(nullptr));
}

TEST_F(kxGeometryAssetItemTest, WritesThePreviewThatTheViewShows)
{
    const kxOffscreenView view;
    kxtest::CapturedOutput output;

    save(addChair());

    EXPECT_THAT(output.text(), HasSubstr("saving preview of Chair\n--------------\n"));
    const QImage preview(QString::fromStdString(_folder.file("GEO_Chair/Chair.png")));
    EXPECT_EQ(preview.size(), QSize(512, 384));
    EXPECT_TRUE(preview.hasAlphaChannel());
}

TEST_F(kxGeometryAssetItemTest, HasNoPreviewWithoutAViewOrACamera)
{
    const osg::NodePtr chair = addChair();
    EXPECT_FALSE(kxGeometryAssetItem().renderPreview(chair));

    const kxOffscreenView view;
    const osg::NodePtr cameraNode = kxScenegraph::getCameraNode();
    {
        const osg::CPEditor edit(root(), osg::Node::ChildrenFieldMask);
        root()->subChild(cameraNode);
    }
    EXPECT_FALSE(kxGeometryAssetItem().renderPreview(chair));
}

TEST_F(kxGeometryAssetItemTest, LeavesANodeAliveThatNobodyOwns)
{
    const std::string uuid = save(addChair());
    const osg::NodePtr loaded = kxGeometryAssetItem::loadNodeFromUUID(uuid);
    ASSERT_TRUE(loaded);
    ASSERT_EQ(loaded->getRefCount(), 0U);
    const std::uint32_t id = loaded.getFieldContainerId();

    EXPECT_EQ(save(loaded), uuid);

    ASSERT_TRUE(kxNodeUtils::getNodeFromId(id));
    EXPECT_EQ(uuidOfNode(loaded), uuid);
    const osg::FCRef<osg::Node> owned(loaded);
}

TEST_F(kxGeometryAssetItemTest, MarksTheRootThatItMadeForANodeWithoutParent)
{
    const osg::FCRef<osg::Node> group(osg::makeNodeFor(osg::Group::create()));
    addSquare(group, "Seat", paint.get());
    answers = {QMessageBox::Yes};
    kxGeometryAssetItem item;
    item.initFrom(group.get(), {}, true);

    EXPECT_TRUE(item.save(url()));

    const osg::FCRef<osg::Node> root(item.getNode());
    ASSERT_TRUE(root);
    EXPECT_EQ(root->getChild(0), group.get());
    EXPECT_EQ(uuidOfNode(root), item.uuid());
}

TEST_F(kxGeometryAssetItemTest, GivesUpWhenItIsDeletedWhileItAsks)
{
    const std::string uuid = save(addChair());
    const osg::NodePtr group = addGroup(root(), "Group");
    registered(uuid)->setNode(group);
    whileAsked = [] { kxAssetItemFactory::the().deleteAllItems(); };
    answers = {QMessageBox::Yes};

    EXPECT_FALSE(registered(uuid)->makeNodeValidForSave());

    EXPECT_EQ(describe(group->getParent()).find("Asset"), std::string::npos) << "nothing was wrapped";
    EXPECT_EQ(questions.size(), 1U);
}

TEST_F(kxGeometryAssetItemTest, KeepsNestedIdentitiesWhenItHasNoneItself)
{
    const osg::NodePtr chair = addChair();
    const osg::NodePtr cushion = addPlaced(chair, "Cushion", {0.0, 1.0, 0.0});
    addSquare(cushion, "Cover");
    setUuid(cushion, "cushion-uuid");
    const std::string uuid = save(chair);
    kxGeometryAssetItem item;
    item.setDirectoryUrl(registered(uuid)->directoryUrl());

    ASSERT_TRUE(item.loadNode());

    const osg::FCRef<osg::Node> loaded(item.getNode());
    EXPECT_EQ(uuidOfNode(loaded->getChild(1)), "cushion-uuid");
}

TEST_F(kxGeometryAssetItemTest, LosesNothingWhenTheSavedNodeHasACloneBelowOrAboveIt)
{
    const osg::NodePtr chair = addChair();
    const osg::NodePtr small = addNode(chair, chair->getCore(), "Small chair");
    addSquare(small, "Small seat");

    save(chair);
    EXPECT_EQ(describe(chair), "Chair(Seat Small chair(Small seat))");
    save(small);
    EXPECT_EQ(describe(chair), "Chair(Seat Small chair(Small seat))");
}

TEST_F(kxGeometryAssetItemTest, MovesToAnotherFolder)
{
    const osg::NodePtr chair = addChair();
    const std::string uuid = save(chair);
    kxGeometryAssetItem item;
    item.initFrom(chair, {}, true);

    EXPECT_TRUE(item.save(url("other")));

    EXPECT_FALSE(_folder.contains("GEO_Chair"));
    EXPECT_TRUE(_folder.contains("other/GEO_Chair/Chair.osb"));
    EXPECT_EQ(kxAssetItemFactory::the().itemCount(), 1);
    EXPECT_EQ(registered(uuid)->directoryUrl(), url("other/GEO_Chair"));
    EXPECT_TRUE(registered(uuid)->hasSameChecksum(chair));
}

TEST_F(kxGeometryAssetItemTest, LeavesTheSceneAsItWasWhenThePayloadCannotBeWritten)
{
    const osg::NodePtr chair = addChair();
    kxGeometryAssetItem item;
    item.initFrom(chair, {}, true);
    writeAsset("GEO_Chair", "<category>Geometries</category><uuid>" + item.uuid() + "</uuid><name>Chair</name>");
    writeFile("GEO_Chair/Chair.osb/in the way", "x");
    const osg::FCRef<osg::Node> before(osg::NodePtr::dcast(osg::deepClone(osg::FieldContainerPtr(chair), {})));
    const kxLogRecorder log;

    EXPECT_FALSE(item.save(url()));

    EXPECT_THAT(log.lines(kxLogLevel::Error), ElementsAre(HasSubstr("Failed to write file '")));
    EXPECT_EQ(osg::findDifference(before.get(), chair), std::nullopt);
    EXPECT_TRUE(item.directoryUrl().isEmpty());
}

TEST_F(kxGeometryAssetItemTest, LoadsNothingWithoutACategory)
{
    class Uncategorised final : public kxGeometryAssetItem
    {
    public:
        Uncategorised() { setCategory(Undefined); }
    };
    const std::string uuid = save(addChair());
    Uncategorised item;
    item.setDirectoryUrl(registered(uuid)->directoryUrl());
    kxController::enableRenderUpdate(true);
    const kxLogRecorder log;

    EXPECT_FALSE(item.loadNode());

    EXPECT_THAT(log.lines(kxLogLevel::Error), ElementsAre("Bad category in loadNode"));
    EXPECT_TRUE(kxController::isRenderUpdateEnabled());
    EXPECT_FALSE(item.getNode());
}

TEST_F(kxGeometryAssetItemTest, GivesNestedAssetsARootNamedLikeTheirItem)
{
    const osg::NodePtr wheel = addPlaced(root(), "Rad", {0.0, 0.0, 0.0});
    addSquare(wheel, "Tyre");
    const std::string wheelUuid = save(wheel);
    const osg::NodePtr chair = addChair();
    const osg::NodePtr known = addGroup(chair, "Group");
    addSquare(known, "Tyre");
    setUuid(known, wheelUuid);
    const osg::NodePtr stranger = addGroup(chair, "Other");
    setUuid(stranger, "stranger-uuid");
    const osg::NodePtr placed = addPlaced(chair, "Placed", {1.0, 0.0, 0.0});
    addSquare(placed, "Cushion");
    setUuid(placed, "placed-uuid");

    const osg::FCRef<osg::Node> loaded(kxGeometryAssetItem::loadNodeFromUUID(save(chair)));

    ASSERT_TRUE(loaded);
    EXPECT_EQ(describe(loaded), "Chair(Seat Rad(Group(Tyre)) Asset(Other) Placed(Cushion))");
    EXPECT_EQ(uuidOfNode(loaded->getChild(1)), wheelUuid);
    EXPECT_EQ(uuidOfNode(loaded->getChild(1)->getChild(0)), "none") << "it sits on the root only";
    EXPECT_EQ(uuidOfNode(loaded->getChild(2)), "stranger-uuid");
    EXPECT_EQ(uuidOfNode(loaded->getChild(3)), "placed-uuid") << "a valid root stays as it is";
}

TEST_F(kxGeometryAssetItemTest, TakesItsOwnIdentityFromWhatLiesBelowAndNoOther)
{
    const osg::NodePtr chair = addChair();
    const std::string uuid = save(chair);
    const osg::NodePtr own = addPlaced(chair, "Own", {0.0, 0.0, 0.0});
    addSquare(own, "A");
    setUuid(own, uuid);
    const osg::NodePtr other = addPlaced(chair, "Other", {0.0, 0.0, 0.0});
    addSquare(other, "B");
    setUuid(other, "other-uuid");
    ASSERT_EQ(save(chair), uuid);

    const osg::FCRef<osg::Node> loaded(kxGeometryAssetItem::loadNodeFromUUID(uuid));

    EXPECT_EQ(uuidOfNode(loaded), uuid);
    EXPECT_EQ(uuidOfNode(loaded->getChild(1)), "none");
    EXPECT_EQ(uuidOfNode(loaded->getChild(2)), "other-uuid");
}

TEST_F(kxGeometryAssetItemTest, KeepsReferencesRemovedWhenTheSecondQuestionIsCancelled)
{
    kxSceneReferenceService references;
    kxKernelServiceFactory::the().setService<kxReferenceService>(&references);
    const osg::NodePtr group = addGroup(root(), "Gruppe ü");
    {
        const osg::CPEditor edit(group, osg::AttachmentContainer::AttachmentsFieldMask);
        group->addAttachment(osg::ReferenceAttachment::create());
    }
    answers = {QMessageBox::Ok, QMessageBox::Cancel};
    kxGeometryAssetItem item;
    item.initFrom(group, {}, true);

    EXPECT_FALSE(item.makeNodeValidForSave());

    EXPECT_EQ(questions.size(), 2U);
    EXPECT_FALSE(osg::findAttachment<osg::ReferenceAttachment>(group));
    EXPECT_EQ(group->getParent(), root()) << "no root was made";
    EXPECT_EQ(item.getNode(), group);
    kxKernelServiceFactory::the().setService<kxReferenceService>(nullptr);
}

TEST_F(kxGeometryAssetItemTest, AsksByTheNodesNameAndNamesTheRootLikeTheItem)
{
    const osg::NodePtr group = addGroup(root(), "Before");
    kxGeometryAssetItem item;
    item.initFrom(group, {}, true);
    kxNodeUtils::setName(group, "Später", false, nullptr);
    answers = {QMessageBox::Yes};

    EXPECT_TRUE(item.makeNodeValidForSave());

    ASSERT_EQ(questions.size(), 1U);
    EXPECT_EQ(questions[0].text, QString::fromUtf8("Später:\nThe node to be saved does not have a valid Asset Root "
                                                   "node.\nCreate one?"));
    EXPECT_EQ(osg::getName(item.getNode()), "Before");
    EXPECT_EQ(item.getNode()->getChild(0), group);
}
