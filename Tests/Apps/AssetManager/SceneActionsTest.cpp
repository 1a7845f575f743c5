// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/SceneActions.h"

#include "Kernel/kxController.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSceneplateUtils.h"
#include "Kernel/kxSelectionManager.h"
#include "SceneFixture.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Group.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/Switch.h"
#include "SceneGraph/Transform3D.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class SceneActionsTest : public SceneFixture
{
protected:
    static std::string currentEnvironment()
    {
        return kxMaterials::getName(kxDefaultEnvironment::getSwitch()->getCurrentMaterial());
    }
    static void takeAway(const osg::NodePtr &node)
    {
        const osg::NodePtr parent = node->getParent();
        const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
        parent->subChild(node);
    }
};

TEST_F(SceneActionsTest, AssignsAnAssetsMaterialToSeveralNodesAsOneStep)
{
    const std::string red = storeMaterial("Red");
    const osg::NodePtr a = addChair("A");
    const osg::NodePtr b = addChair("B");
    kxController::setModified(false);

    actions.assignMaterial(red, {a, b->getChild(0), nullptr});

    EXPECT_EQ(materialNameOf(a->getChild(0)), "Red");
    EXPECT_EQ(materialOf(a->getChild(0)), materialOf(b->getChild(0)));
    EXPECT_TRUE(kxController::isModified());
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(stack.undoText(), "Assign \"Red\"");
    EXPECT_EQ(loaded, QStringList(QString::fromStdString(red)));
    stack.undo();
    EXPECT_FALSE(materialOf(a->getChild(0)));
    EXPECT_FALSE(materialOf(b->getChild(0)));
    stack.redo();
    EXPECT_EQ(materialNameOf(b->getChild(0)), "Red");
    EXPECT_THAT(failures, testing::IsEmpty());
}

TEST_F(SceneActionsTest, SaysWhyAMaterialWasNotAssignedAndAssignsItToTheOthers)
{
    const std::string red = storeMaterial("Red");
    const osg::NodePtr empty = add(osg::Group::create(), root(), "Nothing");
    const osg::NodePtr chair = addChair("Chair");

    actions.assignMaterial(red, {empty, chair});

    EXPECT_EQ(failures, QStringList("\"Nothing\" has nothing that a material can be put on."));
    EXPECT_EQ(materialNameOf(chair->getChild(0)), "Red");
}

TEST_F(SceneActionsTest, ChangesTheMaterialThatCoversTheNode)
{
    const std::string red = storeMaterial("Red");
    const osg::NodePtr chair = addChair("Chair");
    const osg::FCRef<osg::Material> cover(osg::UBRDFMaterial::create());
    kxMaterials::setOverrideMaterial(chair, cover);

    actions.assignMaterial(red, {chair});

    std::set<osg::MaterialPtr> covering;
    kxMaterials::getOverrideMaterialsRecursive(chair, covering, false);
    ASSERT_EQ(covering.size(), 1U);
    EXPECT_EQ(kxMaterials::getName(*covering.begin()), "Red");
    EXPECT_FALSE(materialOf(chair->getChild(0)));
    stack.undo();
    covering.clear();
    kxMaterials::getOverrideMaterialsRecursive(chair, covering, false);
    EXPECT_EQ(*covering.begin(), cover.get());
}

TEST_F(SceneActionsTest, LoadsGeometryAndGoesOnAfterOneThatIsMissing)
{
    const std::string chair = storeGeometry("Chair");
    const osg::NodePtr room = add(osg::Transform3D::create(), root(), "Room");

    actions.loadGeometry({"00000000-0000-4000-8000-000000000000", chair}, room);

    EXPECT_THAT(childNames(room), ElementsAre("Chair"));
    ASSERT_EQ(failures.size(), 1);
    EXPECT_EQ(failures[0], "An asset was not loaded, because its library is not open or it was deleted.");
    EXPECT_EQ(loaded, QStringList(QString::fromStdString(chair)));
    const std::uint32_t id = room->getChild(0).getFieldContainerId();
    stack.undo();
    EXPECT_EQ(room->getNChildren(), 0U);
    stack.redo();
    ASSERT_EQ(room->getNChildren(), 1U);
    EXPECT_EQ(room->getChild(0).getFieldContainerId(), id);
}

TEST_F(SceneActionsTest, LoadsGeometryBelowTheRootWithoutAParent)
{
    actions.loadGeometry({storeGeometry("Chair")}, nullptr);

    EXPECT_THAT(childNames(root()), Contains("Chair"));
}

TEST_F(SceneActionsTest, TakesALoadedEnvironmentOutOfTheChoicesAgainAndRestoresTheChoice)
{
    const std::string dawn = storeEnvironment("Dawn");

    actions.loadEnvironment({dawn});

    EXPECT_EQ(currentEnvironment(), "Dawn");
    EXPECT_EQ(kxDefaultEnvironment::getSwitch()->getMaterials().size(), 2U);
    EXPECT_EQ(kxScenegraph::environmentGeometrySwitch()->getNChildren(), 2U);
    stack.undo();
    EXPECT_EQ(currentEnvironment(), "Sky");
    EXPECT_EQ(kxDefaultEnvironment::getSwitch()->getMaterials().size(), 1U);
    EXPECT_EQ(kxScenegraph::environmentGeometrySwitch()->getNChildren(), 1U);
    stack.redo();
    EXPECT_EQ(currentEnvironment(), "Dawn");
    EXPECT_EQ(kxScenegraph::environmentGeometrySwitch()->getNChildren(), 2U);
    EXPECT_EQ(osg::SwitchPtr::dcast(kxScenegraph::environmentGeometrySwitch()->getCore())->getChoice(), 1);
}

TEST_F(SceneActionsTest, SwitchesAndRemovesEnvironments)
{
    actions.loadEnvironment({storeEnvironment("Dawn"), storeEnvironment("Dusk")});

    actions.switchEnvironment(1);
    EXPECT_EQ(currentEnvironment(), "Dawn");
    actions.removeNodes({kxScenegraph::environmentGeometrySwitch()->getChild(1)});
    EXPECT_EQ(currentEnvironment(), "Sky") << "the current one was removed";
    EXPECT_EQ(kxDefaultEnvironment::getSwitch()->getMaterials().size(), 2U);
    stack.undo();
    EXPECT_EQ(currentEnvironment(), "Dawn");
    EXPECT_EQ(kxMaterials::getName(kxDefaultEnvironment::getSwitch()->getMaterial(2)), "Dusk");
    stack.undo();
    EXPECT_EQ(currentEnvironment(), "Dusk");
}

TEST_F(SceneActionsTest, LoadsAndHidesPlates)
{
    actions.loadPlates({storePlate("Logo")}, nullptr);
    const osg::NodePtr plate = kxSceneplateUtils::getSceneplateRoot()->getChild(0);
    ASSERT_TRUE(plate);

    actions.setVisible({plate}, false);

    EXPECT_FALSE(osg::SceneplatePtr::dcast(plate->getCore())->getIsVisible());
    stack.undo();
    EXPECT_TRUE(osg::SceneplatePtr::dcast(plate->getCore())->getIsVisible());
    stack.undo();
    EXPECT_EQ(kxSceneplateUtils::getSceneplateRoot()->getNChildren(), 0U);
}

TEST_F(SceneActionsTest, RemovesNodesAndPutsThemBackInTheirPlaces)
{
    const osg::NodePtr room = add(osg::Group::create(), root(), "Room");
    const osg::NodePtr a = addChair("A", room);
    addChair("B", room);
    const osg::NodePtr c = addChair("C", room);
    kxSelectionManager::selectNodes({a->getChild(0), c});

    actions.removeNodes({a, a->getChild(0), c, kxScenegraph::getCameraNode()});

    EXPECT_THAT(childNames(room), ElementsAre("B"));
    EXPECT_TRUE(kxSelectionManager::getSelectedNodes().empty()) << "what is gone is not selected";
    EXPECT_EQ(failures, QStringList("\"Camera\" belongs to every scene and stays where it is."));
    stack.undo();
    EXPECT_THAT(childNames(room), ElementsAre("A", "B", "C"));
    stack.redo();
    EXPECT_THAT(childNames(room), ElementsAre("B"));
}

TEST_F(SceneActionsTest, RenamesAndRefusesNoName)
{
    const osg::NodePtr chair = addChair("Chair");

    actions.renameNode(chair, "Stuhl");
    actions.renameNode(chair, " ");

    EXPECT_EQ(kxNodeUtils::getName(chair), "Stuhl");
    EXPECT_EQ(failures.size(), 1);
    stack.undo();
    EXPECT_EQ(kxNodeUtils::getName(chair), "Chair");
    stack.redo();
    EXPECT_EQ(kxNodeUtils::getName(chair), "Stuhl");
}

TEST_F(SceneActionsTest, SetsAnyFieldOfSeveralContainersAndMergesOneGesture)
{
    const osg::NodePtr a = addChair("A");
    const osg::NodePtr b = addChair("B");
    const std::vector<std::uint32_t> cores = {a->getCore().getFieldContainerId(), b->getCore().getFieldContainerId()};
    const auto place = [](const osg::NodePtr &node) {
        return osg::Transform3DPtr::dcast(node->getCore())->getTranslation()[0];
    };

    actions.setField(cores, "Translation", osg::Vec3d{{1, 0, 0}}, "Move", 7);
    actions.setField(cores, "Translation", osg::Vec3d{{2, 0, 0}}, "Move", 7);
    actions.setField(cores, "Translation", osg::Vec3d{{3, 0, 0}}, "Move", 8);

    EXPECT_EQ(stack.count(), 2);
    stack.undo();
    EXPECT_EQ(place(a), 2.0);
    stack.undo();
    EXPECT_EQ(place(b), 0.0);
    stack.redo();
    EXPECT_EQ(place(b), 2.0);
}

TEST_F(SceneActionsTest, SaysThatAFieldDoesNotTakeTheValue)
{
    const osg::NodePtr chair = addChair("Chair");

    actions.setField({chair->getCore().getFieldContainerId()}, "Translation", true, "Move");

    EXPECT_EQ(failures, QStringList("The property \"Translation\" does not take this value."));
    EXPECT_EQ(stack.count(), 0);
}

TEST_F(SceneActionsTest, MarksTheAssetOfAnEditedMaterialAndUnmarksItWithUndo)
{
    const osg::NodePtr chair = addChair("Chair");
    actions.assignMaterial(storeMaterial("Red"), {chair});
    const osg::MaterialPtr red = materialOf(chair->getChild(0));
    const auto asset = osg::AssetAttachment::getAssetAttachment(red);

    actions.setField({red.getFieldContainerId()}, "Roughness", 0.1F, "Roughness");

    EXPECT_TRUE(asset->getUserEdited());
    stack.undo();
    EXPECT_FALSE(asset->getUserEdited());
}

TEST_F(SceneActionsTest, MovesNodesAndKeepsThemWhereTheyStand)
{
    const osg::NodePtr room = add(osg::Transform3D::create(), root(), "Room");
    actions.setField({room->getCore().getFieldContainerId()}, "Translation", osg::Vec3d{{5, 0, 0}}, "Move");
    const osg::NodePtr a = addChair("A");
    const osg::NodePtr b = addChair("B", room);

    actions.moveNodes({a}, room, 0);

    EXPECT_THAT(childNames(room), ElementsAre("A", "B"));
    EXPECT_EQ(a->getToWorld().at(0, 3), 0.0);
    EXPECT_EQ(osg::Transform3DPtr::dcast(a->getCore())->getTranslation()[0], -5.0);
    actions.moveNodes({a}, room, 2);
    EXPECT_THAT(childNames(room), ElementsAre("B", "A"));
    stack.undo();
    stack.undo();
    EXPECT_EQ(a->getParent(), root());
    EXPECT_EQ(osg::Transform3DPtr::dcast(a->getCore())->getTranslation()[0], 0.0);
    actions.moveNodes({room}, b, -1);
    EXPECT_EQ(failures, QStringList("\"Room\" cannot become a part of itself."));
}

TEST_F(SceneActionsTest, GroupsNodesInThePlaceOfTheFirst)
{
    const osg::NodePtr room = add(osg::Group::create(), root(), "Room");
    const osg::NodePtr a = addChair("A", room);
    addChair("B", room);
    const osg::NodePtr c = addChair("C", room);

    const osg::NodePtr group = actions.group({a, c});

    ASSERT_TRUE(group);
    EXPECT_THAT(childNames(room), ElementsAre("Group", "B"));
    EXPECT_THAT(childNames(group), ElementsAre("A", "C"));
    stack.undo();
    EXPECT_THAT(childNames(room), ElementsAre("A", "B", "C"));
    stack.redo();
    EXPECT_THAT(childNames(room), ElementsAre("Group", "B"));
    EXPECT_FALSE(actions.group({}));
}

TEST_F(SceneActionsTest, NeitherGroupsNorMovesEnvironmentsAndWhatIsFixed)
{
    actions.loadEnvironment({storeEnvironment("Dawn")});
    const osg::NodePtr dawn = kxScenegraph::environmentGeometrySwitch()->getChild(1);
    const int steps = stack.count();

    EXPECT_FALSE(actions.group({dawn, kxScenegraph::getCameraNode()}));
    EXPECT_EQ(failures, (QStringList{"\"Dawn\" is an environment and stays among the environments.",
                                     "\"Camera\" belongs to every scene and stays where it is."}));
    failures.clear();
    actions.moveNodes({dawn}, root(), 0);
    actions.moveNodes({addChair("Chair")}, kxScenegraph::environmentGeometrySwitch(), 0);

    EXPECT_EQ(failures, (QStringList{"\"Dawn\" is an environment and stays among the environments.",
                                     "Nothing can be moved into \"Environments\"."}));
    EXPECT_EQ(stack.count(), steps);
}

TEST_F(SceneActionsTest, GroupsNodesOfSeveralParentsWhereTheyStand)
{
    const osg::NodePtr room = add(osg::Transform3D::create(), root(), "Room");
    actions.setField({room->getCore().getFieldContainerId()}, "Translation", osg::Vec3d{{5, 0, 0}}, "Move");
    const osg::NodePtr a = addChair("A", room);
    const osg::NodePtr b = addChair("B");

    const osg::NodePtr group = actions.group({a, b});

    EXPECT_EQ(group->getParent(), root());
    EXPECT_EQ(a->getToWorld().at(0, 3), 5.0);
    EXPECT_EQ(b->getToWorld().at(0, 3), 0.0);
    stack.undo();
    EXPECT_EQ(a->getParent(), room);
    EXPECT_EQ(a->getToWorld().at(0, 3), 5.0);
}

TEST_F(SceneActionsTest, UndoesWhatIsLeftAfterTheNodeWasRemovedElsewhere)
{
    const osg::NodePtr room = add(osg::Group::create(), root(), "Room");
    const osg::NodePtr chair = addChair("Chair", room);
    actions.renameNode(chair, "Stuhl");
    actions.removeNodes({chair});
    takeAway(room);

    stack.undo();
    EXPECT_EQ(failures, QStringList("\"Stuhl\" cannot go back to its place, because what it belonged to is gone."));
    stack.undo();
    EXPECT_FALSE(stack.canUndo());
}

TEST_F(SceneActionsTest, TakesWhatWasDoneInTheSceneOffTheStackWithTheDocument)
{
    actions.loadGeometry({storeGeometry("Chair")}, nullptr);

    actions.newScene();

    EXPECT_EQ(stack.count(), 0);
    EXPECT_THAT(childNames(root()), Not(Contains("Chair")));
    EXPECT_FALSE(kxController::isModified());
}

} // namespace
