// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxLightLinkSubSets.h"

#include "Kernel/kxNodeKeys.h"
#include "SceneGraph/Light.h"
#include "Support/SceneTest.h"

namespace {

using kxLightLinkSubSetsTest = kxtest::SceneTest;

TEST_F(kxLightLinkSubSetsTest, KeepsTheMembersBelowTheNodeOfSetsThatNameItsLights)
{
    const osg::NodePtr node = addNode(osg::Group::create());
    const osg::NodePtr light = addNodeBelow(node, osg::Light::create());
    const osg::NodePtr lit = addNodeBelow(node, osg::Group::create());
    const osg::NodePtr outside = addNode(osg::Light::create());
    const osg::MaterialPoolPtr scene = kxScenegraph::getMaterialPool();
    const auto add = [&scene](const std::vector<std::string> &lights, const std::vector<std::string> &members) {
        const auto set = osg::LightLinkSet::create();
        {
            const osg::CPEditor edit(set, osg::AllFieldMask);
            set->editLights() = lights;
            set->editMembers() = members;
            set->setIsExclusive(true);
        }
        osg::setName(set, "Set");
        const osg::CPEditor edit(scene, osg::MaterialPool::LightLinkSetsFieldMask);
        scene->editLightLinkSets().push_back(set);
    };
    add({kxNodeKeys::make(outside), kxNodeKeys::make(light)}, {kxNodeKeys::make(lit), kxNodeKeys::make(outside)});
    add({kxNodeKeys::make(outside)}, {kxNodeKeys::make(lit)});
    const osg::FCRef<osg::MaterialPool> core(osg::MaterialPool::create());

    EXPECT_TRUE(kxLightLinkSubSets(core.get()).createSetsFrom(node));

    ASSERT_EQ(core->getLightLinkSets().size(), 1U);
    const osg::LightLinkSetPtr part = core->getLightLinkSets()[0];
    EXPECT_EQ(osg::getName(part), "Set");
    EXPECT_TRUE(part->getIsExclusive());
    ASSERT_EQ(part->getLights().size(), 1U);
    EXPECT_EQ(part->getLights()[0], kxNodeKeys::get(light));
    ASSERT_EQ(part->getMembers().size(), 1U);
    EXPECT_EQ(part->getMembers()[0], kxNodeKeys::get(lit));
    EXPECT_EQ(scene->getLightLinkSets()[0]->getMembers().size(), 2U) << "the scene's set is another";
    EXPECT_FALSE(kxLightLinkSubSets(core.get()).createSetsFrom(lit));
    EXPECT_FALSE(kxLightLinkSubSets(core.get()).createSetsFrom(nullptr));
}

} // namespace
