// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxSceneOpener.h"

#include "AssetSession/kxAssetSession.h"
#include "Kernel/NodeUtils.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxNodeKeys.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSceneplateUtils.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/MaterialPool.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/SceneFile.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"
#include "SceneGraph/USkyEnvironmentMaterial.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

class kxSceneOpenerTest : public testing::Test
{
protected:
    osg::NodePtr add(const osg::NodeCorePtr &core, const osg::NodePtr &parent = nullptr)
    {
        const osg::NodePtr node = NodeUtils::createNodeWithCore(core, parent, "");
        if (!parent)
            _owned.emplace_back(node);
        return node;
    }
    static osg::EnvironmentPtr environmentWith(const osg::MaterialPtr &material)
    {
        const auto core = osg::Environment::create();
        const osg::CPEditor edit(core, osg::Environment::MaterialFieldMask);
        core->setMaterial(material);
        return core;
    }
    static osg::MaterialPtr sky(const std::string &name)
    {
        const osg::MaterialPtr material = osg::USkyEnvironmentMaterial::create();
        osg::setName(material, name);
        return material;
    }
    auto open(const std::vector<osg::FieldContainerPtr> &roots)
    {
        EXPECT_TRUE(osg::writeSceneFile(file, roots));
        return kxSceneOpener::open(QString::fromStdString(file));
    }

    kxAssetSession session;
    kxtest::TemporaryFolder _folder;
    std::string file = _folder.file("scene.osb");
    std::vector<osg::FCRef<osg::Node>> _owned;
};

TEST_F(kxSceneOpenerTest, HangsEverythingWhereItBelongs)
{
    const osg::NodePtr plates = add(osg::Group::create());
    add(osg::Sceneplate::create(), plates);
    const osg::FCRef<osg::Material> paint(osg::UBRDFMaterial::create());

    const auto opened = open({add(osg::Group::create()), plates, add(environmentWith(sky("Dawn"))), paint.get()});

    ASSERT_TRUE(opened);
    const auto &contents = opened.value();
    ASSERT_EQ(contents.nodes.size(), 1U);
    EXPECT_EQ(contents.nodes[0]->getParent(), kxScenegraph::getRoot());
    ASSERT_EQ(contents.plates.size(), 1U);
    EXPECT_EQ(contents.plates[0]->getParent(), kxSceneplateUtils::getSceneplateRoot());
    ASSERT_EQ(contents.environments.size(), 1U);
    EXPECT_EQ(contents.environments[0]->getParent(), kxScenegraph::environmentGeometrySwitch());
    EXPECT_EQ(osg::getName(kxDefaultEnvironment::getSwitch()->getCurrentMaterial()), "Dawn");
    ASSERT_EQ(contents.materials.size(), 1U);
    EXPECT_FALSE(kxScenegraph::addToMaterialPool(contents.materials[0])) << "it is there";
    EXPECT_EQ(contents.allNodes().size(), 3U);
}

TEST_F(kxSceneOpenerTest, TakesTheCurrentChoiceOfASwitchAndTheLastEnvironment)
{
    const osg::FCRef<osg::UEnvironmentSwitchMaterial> choices(osg::UEnvironmentSwitchMaterial::create());
    {
        const osg::CPEditor edit(choices.get(), osg::AllFieldMask);
        choices->addMaterial(sky("Noon"));
        choices->addMaterial(sky("Dusk"));
        choices->setChoice(1);
    }

    const auto opened = open({add(environmentWith(sky("Dawn"))), add(environmentWith(choices.get()))});

    ASSERT_TRUE(opened);
    EXPECT_EQ(osg::getName(kxDefaultEnvironment::getSwitch()->getCurrentMaterial()), "Dusk");
    EXPECT_EQ(kxDefaultEnvironment::getSwitch()->getMaterials().size(), 3U);
}

TEST_F(kxSceneOpenerTest, HangsAnEnvironmentWithoutMaterialBelowTheRoot)
{
    const auto opened = open({add(osg::Environment::create())});

    ASSERT_TRUE(opened);
    EXPECT_EQ(opened.value().environments[0]->getParent(), kxScenegraph::getRoot());
}

TEST_F(kxSceneOpenerTest, MovesTheContentsOfPoolsIntoTheScenes)
{
    const osg::NodePtr group = add(osg::Group::create());
    const auto pool = osg::MaterialPool::create();
    {
        const osg::CPEditor edit(pool, osg::MaterialPool::ConstraintsFieldMask);
        pool->editConstraints().push_back(osg::Constraint::create());
    }
    add(pool, group);

    const auto opened = open({group});

    ASSERT_TRUE(opened);
    EXPECT_EQ(opened.value().nodes[0]->getNChildren(), 0U);
    EXPECT_EQ(kxScenegraph::getMaterialPool()->getConstraints().size(), 1U);
}

TEST_F(kxSceneOpenerTest, TakesOverAPoolThatIsARootAndWhatItSaysOfOtherRoots)
{
    const osg::NodePtr chair = add(osg::Group::create());
    const auto pool = osg::MaterialPool::create();
    const auto constraint = osg::Constraint::create();
    {
        const osg::CPEditor edit(constraint, osg::Constraint::EndsFieldMask);
        constraint->editEnds().push_back(kxNodeKeys::make(chair));
    }
    {
        const osg::CPEditor edit(pool, osg::MaterialPool::ConstraintsFieldMask);
        pool->editConstraints().push_back(constraint);
    }

    const auto opened = open({add(pool), chair});

    ASSERT_TRUE(opened);
    ASSERT_EQ(opened.value().nodes.size(), 1U);
    ASSERT_EQ(kxScenegraph::getMaterialPool()->getConstraints().size(), 1U);
    EXPECT_EQ(kxScenegraph::getMaterialPool()->getConstraints()[0]->getEnds()[0],
              kxNodeKeys::get(opened.value().nodes[0]));
}

TEST_F(kxSceneOpenerTest, ChangesNothingWhenTheFileCannotBeRead)
{
    _folder.write("scene.osb", "no scene");
    const osg::FCRef<osg::FieldContainer> before(osg::deepClone(osg::FieldContainerPtr(kxScenegraph::getRoot()), {}));

    const auto opened = kxSceneOpener::open(QString::fromStdString(file));

    ASSERT_FALSE(opened);
    EXPECT_THAT(opened.reason(), HasSubstr("scene.osb"));
    EXPECT_EQ(osg::findDifference(before.get(), kxScenegraph::getRoot()), std::nullopt);
}

} // namespace
