// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxSaveNode.h"

#include "ActionModule.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxMessage.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "NodeFixture.h"
#include "SceneGraph/CameraCore.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/JsonAttachment.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"
#include "SceneGraph/UberMaterial.h"

#include <memory>
#include <optional>

namespace {

/// Notes how many children the node has by the time that it is asked for its actions.
class ChildCounter final : public kxModuleBase
{
public:
    std::vector<std::size_t> counts;

private:
    void doReceive(const kxMessage &message) override
    {
        counts.push_back(message.get<osg::NodePtr>("node").value()->getNChildren());
    }
};

class kxSaveNodeTest : public NodeFixture
{
protected:
    kxSaveNodeTest()
    {
        const osg::CPEditor edit(uber.get(), osg::UberMaterial::BRDFMaterialsFieldMask);
        uber->editBRDFMaterials().push_back(layer.get());
    }

    static void light(const osg::UBRDFMaterialPtr &material)
    {
        const osg::CPEditor edit(material, osg::UBRDFMaterial::EnvironmentFieldMask);
        material->setEnvironment(kxDefaultEnvironment::getDefault());
    }
    static bool isLit(const Owned &material)
    {
        return static_cast<bool>(osg::UBRDFMaterialPtr::dcast(material.get())->getEnvironment());
    }
    /// A camera of the scene, and below the parent a node that shows through it.
    static osg::UberCameraPtr addCamera(const osg::NodePtr &parent)
    {
        const auto camera = osg::UberCamera::create();
        {
            const osg::MaterialPoolPtr pool = kxScenegraph::getMaterialPool();
            const osg::CPEditor edit(pool, osg::MaterialPool::CamerasFieldMask);
            pool->editCameras().push_back(camera);
        }
        const auto core = osg::CameraCore::create();
        {
            const osg::CPEditor edit(core, osg::CameraCore::CameraFieldMask);
            core->setCamera(camera);
        }
        addNode(parent, core, "Eye");
        return camera;
    }

    osg::FCRef<osg::UBRDFMaterial> layer{osg::UBRDFMaterial::create()};
    osg::FCRef<osg::UberMaterial> uber{osg::UberMaterial::create()};
    osg::NodePtr car = addGroup(kxScenegraph::getRoot(), "Car");
    osg::NodePtr body = addSquare(car, "Body", uber.get());
    ActionModule actions;
};

} // namespace

TEST_F(kxSaveNodeTest, DetachesMaterialsFromTheScenesEnvironments)
{
    light(layer.get());
    {
        const kxSaveNode preparation(car);
        EXPECT_FALSE(layer->getEnvironment());
        EXPECT_FALSE(osg::UBRDFMaterial::getIgnoreDefaultEnvironment()) << "as it was";
    }
    EXPECT_EQ(layer->getEnvironment(), kxDefaultEnvironment::getDefault());
}

TEST_F(kxSaveNodeTest, DetachesOverrideMaterialsToo)
{
    const osg::FCRef<osg::UBRDFMaterial> other(osg::UBRDFMaterial::create());
    const osg::FCRef<osg::UberMaterial> over(osg::UberMaterial::create());
    {
        const osg::CPEditor edit(over.get(), osg::UberMaterial::BRDFMaterialsFieldMask);
        over->editBRDFMaterials().push_back(other.get());
    }
    light(other.get());
    kxMaterials::setOverrideMaterial(car, over.get());

    kxSaveNode preparation(car);
    EXPECT_FALSE(other->getEnvironment());
    preparation.cleanup();

    EXPECT_TRUE(other->getEnvironment());
}

TEST_F(kxSaveNodeTest, LeavesTheFlagSetThatWasSetBefore)
{
    osg::UBRDFMaterial::setIgnoreDefaultEnvironment(true);

    const kxSaveNode preparation(car);
    const bool isStillSet = osg::UBRDFMaterial::getIgnoreDefaultEnvironment();
    osg::UBRDFMaterial::setIgnoreDefaultEnvironment(false);

    EXPECT_TRUE(isStillSet);
}

TEST_F(kxSaveNodeTest, DetachesUberMaterialsOnly)
{
    const Owned assigned = makeSurface("assigned");
    const Owned over = makeSurface("over");
    light(osg::UBRDFMaterialPtr::dcast(assigned.get()));
    light(osg::UBRDFMaterialPtr::dcast(over.get()));
    light(layer.get());
    addSquare(car, "Door", assigned.get());
    kxMaterials::setOverrideMaterial(body, over.get());

    const kxSaveNode preparation(car);

    EXPECT_TRUE(isLit(assigned));
    EXPECT_TRUE(isLit(over));
    EXPECT_FALSE(layer->getEnvironment()) << "they do not stop it";
}

TEST_F(kxSaveNodeTest, LeavesUberMaterialsWithinCompositesAlone)
{
    const Owned composite = makeSwitch("composite", {Owned(uber.get())});
    const osg::NodePtr other = addSquare(kxScenegraph::getRoot(), "Other", composite.get());
    light(layer.get());

    const kxSaveNode preparation(other);

    EXPECT_TRUE(layer->getEnvironment());
}

TEST_F(kxSaveNodeTest, GathersACameraWithoutAnyConstraint)
{
    const osg::UberCameraPtr camera = addCamera(car);

    kxSaveNode preparation(car);

    ASSERT_EQ(describe(car), "Car(Body Eye )") << "the pool has no name";
    const auto pool = osg::MaterialPoolPtr::dcast(car->getChild(2)->getCore());
    ASSERT_TRUE(pool);
    EXPECT_EQ(pool->getCameras().values(), std::vector{camera});
    EXPECT_TRUE(pool->getConstraints().empty());
    preparation.cleanup();
    EXPECT_EQ(describe(car), "Car(Body Eye)");
    EXPECT_FALSE(osg::findAttachment<osg::JsonAttachment>(car));
    EXPECT_EQ(kxScenegraph::getMaterialPool()->getCameras().values(), std::vector{camera});
}

TEST_F(kxSaveNodeTest, GathersConstraintsBesidesCameras)
{
    addCamera(car);
    addConstraint(body, car);
    kxSaveNode preparation(car);
    ASSERT_EQ(car->getNChildren(), 3U);
    const osg::FCRef<osg::MaterialPool> pool(osg::MaterialPoolPtr::dcast(car->getChild(2)->getCore()));

    EXPECT_EQ(pool->getCameras().size(), 1U);
    EXPECT_EQ(pool->getConstraints().size(), 1U);
    preparation.cleanup();

    EXPECT_TRUE(pool->getCameras().empty());
    EXPECT_TRUE(pool->getConstraints().empty());
}

TEST_F(kxSaveNodeTest, AsksForTheActionsWhenThePoolIsThere)
{
    addConstraint(body, car);
    const ChildCounter counter;

    const kxSaveNode preparation(car);

    EXPECT_EQ(counter.counts, std::vector<std::size_t>{2});
}

TEST_F(kxSaveNodeTest, TakesThePoolAndTheActionsFromWhereThePoolIsThen)
{
    addConstraint(body, car);
    const osg::NodePtr other = addGroup(kxScenegraph::getRoot(), "Other");
    kxSaveNode(other).cleanup();
    ASSERT_TRUE(osg::findAttachment<osg::JsonAttachment>(other));
    kxSaveNode preparation(car);
    {
        const osg::CPEditor edit(other, osg::Node::ChildrenFieldMask);
        other->addChild(car->getChild(1));
    }

    preparation.cleanup();

    EXPECT_EQ(describe(other), "Other");
    EXPECT_FALSE(osg::findAttachment<osg::JsonAttachment>(other));
    EXPECT_TRUE(osg::findAttachment<osg::JsonAttachment>(car)) << "it is no longer the pool's parent";
}

TEST_F(kxSaveNodeTest, LeavesTheActionsWhenThePoolHangsNowhere)
{
    addConstraint(body, car);
    kxSaveNode preparation(car);
    const osg::FCRef<osg::Node> pool(car->getChild(1));
    {
        const osg::CPEditor edit(car, osg::Node::ChildrenFieldMask);
        car->subChild(pool.get());
    }

    preparation.cleanup();

    EXPECT_TRUE(osg::findAttachment<osg::JsonAttachment>(car));
}

TEST_F(kxSaveNodeTest, AddsNoPoolWhereNothingIsNeededAndLeavesTheActions)
{
    kxSaveNode preparation(car);

    EXPECT_EQ(describe(car), "Car(Body)");
    EXPECT_EQ(actions.asked, std::vector{car.getFieldContainerId()});
    preparation.cleanup();
    EXPECT_TRUE(osg::findAttachment<osg::JsonAttachment>(car)) << "it goes together with a pool only";
}

TEST_F(kxSaveNodeTest, GathersConstraintsInAPoolAndTakesItAwayAgain)
{
    addConstraint(body, car);
    const osg::FCRef<osg::FieldContainer> before(osg::deepClone(osg::FieldContainerPtr(car), {}));
    const std::int32_t count = car->getRefCount();
    std::optional<kxSaveNode> preparation(std::in_place, car);

    ASSERT_EQ(car->getNChildren(), 2U);
    const auto pool = osg::MaterialPoolPtr::dcast(car->getChild(1)->getCore());
    ASSERT_TRUE(pool) << "as the last child";
    EXPECT_EQ(pool->getConstraints().size(), 1U);
    EXPECT_EQ(osg::findAttachment<osg::JsonAttachment>(car)->getText(), "actions");

    preparation->cleanup();
    EXPECT_EQ(osg::findDifference(before.get(), car), std::nullopt);
    EXPECT_EQ(car->getRefCount(), count);
    EXPECT_EQ(kxScenegraph::getMaterialPool()->getConstraints().size(), 1U);
    preparation.reset();
    EXPECT_EQ(osg::findDifference(before.get(), car), std::nullopt);
}

TEST_F(kxSaveNodeTest, DoesNothingForNull)
{
    kxSaveNode preparation(nullptr);
    preparation.cleanup();

    EXPECT_TRUE(actions.asked.empty());
}

TEST_F(kxSaveNodeTest, FindsNothingToDoInACopyThatComesSecond)
{
    light(layer.get());
    addConstraint(body, car);
    kxSaveNode first(car);
    kxSaveNode second = first;

    first.cleanup();
    {
        const osg::CPEditor edit(layer.get(), osg::UBRDFMaterial::EnvironmentFieldMask);
        layer->setEnvironment(kxDefaultEnvironment::getSwitch()->getMaterial(0));
    }
    second.cleanup();

    EXPECT_EQ(layer->getEnvironment(), kxDefaultEnvironment::getSwitch()->getMaterial(0));
    EXPECT_EQ(describe(car), "Car(Body)");
}

TEST_F(kxSaveNodeTest, RestoresThroughACopyAndThroughWhatItIsAssignedTo)
{
    light(layer.get());
    addConstraint(body, car);
    const osg::MaterialPtr before = layer->getEnvironment();
    for (const bool isAssigned : {false, true}) {
        const kxSaveNode original(car);
        EXPECT_FALSE(layer->getEnvironment());
        ASSERT_EQ(car->getNChildren(), 2U);
        if (isAssigned) {
            kxSaveNode other(nullptr);
            other = original;
        } else {
            std::make_unique<kxSaveNode>(original).reset();
        }

        EXPECT_EQ(layer->getEnvironment(), before) << "since the other is gone";
        EXPECT_EQ(describe(car), "Car(Body)");
        EXPECT_FALSE(ActionModule::hasActions(car));
    }
}

TEST_F(kxSaveNodeTest, SurvivesANodeThatGoesMeanwhile)
{
    addConstraint(body, car);
    kxSaveNode preparation(car);
    {
        const osg::CPEditor edit(kxScenegraph::getRoot(), osg::Node::ChildrenFieldMask);
        kxScenegraph::getRoot()->subChild(car);
    }
    preparation.cleanup();
}
