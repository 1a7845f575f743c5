// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxSaveNode.h"

#include "ActionModule.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxNodeKeys.h"
#include "Kernel/kxScenegraph.h"
#include "NodeFixture.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/JsonAttachment.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"
#include "SceneGraph/UberMaterial.h"

#include <optional>

namespace {

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
    static void addConstraint(const osg::NodePtr &a, const osg::NodePtr &b)
    {
        const auto constraint = osg::Constraint::create();
        {
            const osg::CPEditor edit(constraint, osg::Constraint::EndsFieldMask);
            constraint->editEnds() = std::vector{kxNodeKeys::make(a), kxNodeKeys::make(b)};
        }
        const osg::MaterialPoolPtr pool = kxScenegraph::getMaterialPool();
        const osg::CPEditor edit(pool, osg::MaterialPool::ConstraintsFieldMask);
        pool->editConstraints().push_back(constraint);
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
