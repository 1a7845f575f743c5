// SPDX-License-Identifier: Apache-2.0
// Nodes whose light can be worked out by hand.
#include "Rendering/Internal/SceneBuilding.h"

#include "Kernel/kxNodeKeys.h"
#include "Kernel/kxScenegraph.h"
#include "Rendering/Internal/PathTracer.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/Light.h"
#include "SceneGraph/Switch.h"
#include "SceneGraph/Transform3D.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "Support/SceneTest.h"

#include <gtest/gtest.h>

namespace {

using namespace kxRender;

/// What a wall that reflects 0.6 shows of a light of 10 W/sr that stands 2 before it: 0.6 / pi * 10 / 2^2.
constexpr float Lit = 0.477465F;

/// A wall across the z axis and what lights it, below the root of a fresh document.
class SceneBuildingTest : public kxtest::SceneTest
{
protected:
    static osg::GeometryPtr wallCore()
    {
        const osg::FCRef<osg::UBRDFMaterial> chalk(osg::UBRDFMaterial::create());
        {
            const osg::CPEditor edit(chalk.get(), osg::AllFieldMask);
            chalk->setDiffuseColor({0.6F, 0.6F, 0.6F, 1.0F});
            chalk->setSpecularColor({0.0F, 0.0F, 0.0F, 1.0F});
            chalk->setRoughness(1.0F);
        }
        const osg::GeometryPtr wall = osg::Geometry::create();
        const osg::CPEditor edit(wall, osg::AllFieldMask);
        wall->editPositions() = {osg::Vec3f{-9.0F, -9.0F, 0.0F}, osg::Vec3f{9.0F, -9.0F, 0.0F},
                                 osg::Vec3f{0.0F, 18.0F, 0.0F}};
        wall->editIndices() = {0U, 1U, 2U};
        wall->setMaterial(chalk.get());
        return wall;
    }

    static osg::LightPtr lightCore(float intensity = 10.0F)
    {
        const osg::LightPtr light = osg::Light::create();
        const osg::CPEditor edit(light, osg::Light::IntensityFieldMask);
        light->setIntensity(intensity);
        return light;
    }

    static osg::NodePtr addTransform(const osg::NodePtr &parent, const osg::Vec3d &place,
                                     const osg::Quaternion &rotation = {})
    {
        const osg::Transform3DPtr transform = osg::Transform3D::create();
        {
            const osg::CPEditor edit(transform, osg::AllFieldMask);
            transform->setTranslation(place);
            transform->setRotationAsQuaternion(rotation);
        }
        return addNodeBelow(parent, transform);
    }

    /// Straight before the wall's middle, \a distance away.
    static osg::NodePtr addLight(const osg::NodePtr &parent, double distance = 2.0)
    {
        return addNodeBelow(addTransform(parent, {0.0, 0.0, distance}), lightCore());
    }

    static void addSet(const osg::MaterialPoolPtr &pool, const osg::NodePtr &light, const osg::NodePtr &member,
                       bool isExclusive)
    {
        const osg::LightLinkSetPtr set = osg::LightLinkSet::create();
        {
            const osg::CPEditor edit(set, osg::AllFieldMask);
            set->editLights() = {kxNodeKeys::make(light)};
            set->editMembers() = {kxNodeKeys::make(member)};
            set->setIsExclusive(isExclusive);
        }
        const osg::CPEditor edit(pool, osg::MaterialPool::LightLinkSetsFieldMask);
        pool->editLightLinkSets().push_back(set);
    }

    static void choose(const osg::NodePtr &node, std::int32_t choice)
    {
        const osg::SwitchPtr chooser = osg::SwitchPtr::dcast(node->getCore());
        const osg::CPEditor edit(chooser, osg::Switch::ChoiceFieldMask);
        chooser->setChoice(choice);
    }

    /// The light that comes from the middle of the wall.
    static float seen(const std::vector<osg::NodePtr> &roots = {kxScenegraph::getRoot()})
    {
        RenderScene scene;
        addNodes(scene, roots);
        scene.commit();
        Film film(1, 1);
        EXPECT_TRUE(PathTracer(scene).render({{3.0F, 0.0F, 4.0F}, {}, {0.0F, 1.0F, 0.0F}, 0.0005F}, film, 1, {}));
        return film.color(0, 0).y;
    }
};

TEST_F(SceneBuildingTest, ShowsAWallWithoutLightBlack)
{
    addNode(wallCore());

    EXPECT_EQ(seen(), 0.0F);
}

TEST_F(SceneBuildingTest, PutsLightsWhereTheirNodesStand)
{
    addNode(wallCore());
    const osg::NodePtr group = addTransform(kxScenegraph::getRoot(), {0.0, 0.0, 1.0});
    addLight(group, 1.0);

    EXPECT_NEAR(seen(), Lit, 0.0005F);
}

TEST_F(SceneBuildingTest, AimsLightsWhereTheirNodesAreTurned)
{
    addNode(wallCore());
    const osg::NodePtr turned = addTransform(kxScenegraph::getRoot(), {0.0, 0.0, 2.0}, {0.0, 1.0, 0.0, 0.0});
    const osg::LightPtr spot = lightCore();
    {
        const osg::CPEditor edit(spot, osg::Light::KindFieldMask);
        spot->setKind(static_cast<std::uint32_t>(osg::LightKind::Spot));
    }
    const osg::NodePtr light = addNodeBelow(turned, spot);

    EXPECT_EQ(seen(), 0.0F) << "half a turn away from the wall";

    addNodeBelow(addTransform(turned, {}, {0.0, 1.0, 0.0, 0.0}), spot);
    EXPECT_NEAR(seen(), Lit, 0.0005F) << "and another half: the same light stands at two nodes";
    remove(light);
    EXPECT_NEAR(seen(), Lit, 0.0005F);
}

TEST_F(SceneBuildingTest, LeavesOutLightsThatAreOff)
{
    addNode(wallCore());
    const osg::NodePtr light = addLight(kxScenegraph::getRoot());
    const osg::LightPtr core = osg::LightPtr::dcast(light->getCore());
    {
        const osg::CPEditor edit(core, osg::Light::IsOnFieldMask);
        core->setIsOn(false);
    }

    EXPECT_EQ(seen(), 0.0F);
}

TEST_F(SceneBuildingTest, CountsLightsBelowASwitchWhereTheyAreShown)
{
    addNode(wallCore());
    const osg::NodePtr chooser = addNode(osg::Switch::create());
    addLight(chooser, 2.0);
    addLight(chooser, 4.0);

    choose(chooser, 0);
    EXPECT_NEAR(seen(), Lit, 0.0005F);
    choose(chooser, 1);
    EXPECT_NEAR(seen(), Lit / 4.0F, 0.0005F);
    choose(chooser, osg::Switch::All);
    EXPECT_NEAR(seen(), Lit * 1.25F, 0.0005F);
    choose(chooser, 7);
    EXPECT_EQ(seen(), 0.0F);
}

TEST_F(SceneBuildingTest, FindsLightsOfTheEnvironmentWhereTheRootsContainIt)
{
    const osg::NodePtr wall = addNode(wallCore());
    addLight(kxScenegraph::getDefaultEnvironmentNode());

    EXPECT_NEAR(seen(), Lit, 0.0005F);
    EXPECT_NEAR(seen({wall, kxScenegraph::environmentGeometrySwitch()}), Lit, 0.0005F);
    EXPECT_EQ(seen({wall}), 0.0F);
    choose(kxScenegraph::environmentGeometrySwitch(), 1);
    EXPECT_EQ(seen(), 0.0F) << "another environment is chosen";
}

TEST_F(SceneBuildingTest, CountsALightBelowSeveralRootsOnce)
{
    addNode(wallCore());
    const osg::NodePtr light = addLight(kxScenegraph::getRoot());

    EXPECT_NEAR(seen({kxScenegraph::getRoot(), light, light->getParent(), light}), Lit, 0.0005F);
}

TEST_F(SceneBuildingTest, LightsTheMembersOfALightsSetOnly)
{
    const osg::NodePtr group = addNode(osg::Group::create());
    const osg::NodePtr wall = addNodeBelow(group, wallCore());
    const osg::NodePtr other = addNode(osg::Group::create());
    const osg::NodePtr first = addLight(kxScenegraph::getRoot());
    const osg::NodePtr second = addLight(kxScenegraph::getRoot(), 4.0);
    addSet(kxScenegraph::getMaterialPool(), first, group, false);
    addSet(kxScenegraph::getMaterialPool(), second, other, false);

    EXPECT_NEAR(seen(), Lit, 0.0005F);
    EXPECT_NEAR(seen({wall, first, second}), Lit, 0.0005F) << "what lies above a root counts as well";
}

TEST_F(SceneBuildingTest, LeavesTheMembersOfAnExclusiveSetUnlit)
{
    const osg::NodePtr wall = addNode(wallCore());
    const osg::NodePtr other = addNode(osg::Group::create());
    const osg::NodePtr first = addLight(kxScenegraph::getRoot());
    const osg::NodePtr second = addLight(kxScenegraph::getRoot(), 4.0);
    addSet(kxScenegraph::getMaterialPool(), first, wall, true);
    addSet(kxScenegraph::getMaterialPool(), second, other, true);

    EXPECT_NEAR(seen(), Lit / 4.0F, 0.0005F);
}

TEST_F(SceneBuildingTest, HidesALightAlsoBehindWhatItDoesNotLight)
{
    addNode(wallCore());
    const osg::NodePtr light = addLight(kxScenegraph::getRoot());
    const osg::NodePtr screen = addNodeBelow(addTransform(kxScenegraph::getRoot(), {-5.6, 0.0, 1.0}), wallCore());
    addSet(kxScenegraph::getMaterialPool(), light, screen, true);

    EXPECT_EQ(seen(), 0.0F);
}

TEST_F(SceneBuildingTest, ObeysTheSetsOfPoolsBelowTheRoots)
{
    const osg::NodePtr wall = addNode(wallCore());
    const osg::NodePtr light = addLight(kxScenegraph::getRoot());
    const osg::MaterialPoolPtr pool = osg::MaterialPool::create();
    const osg::NodePtr place = addNodeBelow(kxScenegraph::getDefaultEnvironmentNode(), pool);
    addSet(pool, light, wall, true);

    EXPECT_EQ(seen(), 0.0F);
    EXPECT_NEAR(seen({wall, light}), Lit, 0.0005F);
    remove(place);
    EXPECT_NEAR(seen(), Lit, 0.0005F);
}

} // namespace
