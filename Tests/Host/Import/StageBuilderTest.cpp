// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/StageBuilder.h"

#include "SceneGraph/CameraCore.h"
#include "SceneGraph/Light.h"
#include "SceneGraph/Transform.h"
#include "SceneGraph/Transform3D.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace kximport;

namespace {

osg::Vec3d shiningDirection(const osg::NodePtr &light)
{
    const osg::Matrix m = light->getToWorld();
    const osg::Vec3d from = osg::transformPoint(m, {0, 0, 0});
    const osg::Vec3d to = osg::transformPoint(m, {0, 0, -1});
    return {to[0] - from[0], to[1] - from[1], to[2] - from[2]};
}

osg::NodePtr lightNode(const osg::NodePtr &node)
{
    return osg::dcast<osg::LightPtr>(node->getCore()) ? node : node->getChild(0);
}

TEST(StageBuilderTest, PlacesByAGroupWhereNothingMoves)
{
    const auto core = buildPlacement(aiMatrix4x4());

    EXPECT_STREQ(core->getType().getCName(), "Group");
}

TEST(StageBuilderTest, PlacesByTranslationAndScaleWhereTheyAreAllThereIs)
{
    aiMatrix4x4 matrix;
    matrix.a1 = 2.0F;
    matrix.c3 = -1.0F;
    matrix.b4 = 7.5F;

    const auto core = osg::dcast<osg::Transform3DPtr>(buildPlacement(matrix).take());
    const osg::FCRef<osg::Transform3D> owner = osg::FCRef<osg::Transform3D>::adopt(core);

    ASSERT_TRUE(core);
    EXPECT_EQ(core->getTranslation(), (osg::Vec3d{0.0, 7.5, 0.0}));
    EXPECT_EQ(core->getScale(), (osg::Vec3d{2.0, 1.0, -1.0}));
    EXPECT_EQ(core->getMatrix().at(1, 3), 7.5);
}

TEST(StageBuilderTest, KeepsAnyOtherMatrixExactly)
{
    aiMatrix4x4 matrix;
    matrix.a2 = 0.1F;
    matrix.c4 = 0.3F;

    const auto core = buildPlacement(matrix);

    const auto transform = osg::dcast<osg::TransformPtr>(core.get());
    ASSERT_TRUE(transform);
    EXPECT_EQ(transform->getMatrix().at(0, 1), static_cast<double>(0.1F));
    EXPECT_EQ(transform->getMatrix().at(2, 3), static_cast<double>(0.3F));
}

TEST(StageBuilderTest, MakesTheVerticalFieldOfViewOfTheHorizontalOne)
{
    aiCamera camera;
    camera.mPosition = {1, 2, 3};
    camera.mLookAt = {0, 0, -1};
    camera.mUp = {0, 1, 0};
    camera.mHorizontalFOV = 1.5707963F;
    camera.mAspect = 2.0F;
    camera.mClipPlaneNear = 0.5F;
    camera.mClipPlaneFar = 50.0F;

    const auto node = buildCamera(camera, false);

    const auto core = osg::dcast<osg::CameraCorePtr>(node->getCore());
    ASSERT_TRUE(core);
    EXPECT_EQ(core->getCamera()->getFrom(), (osg::Vec3d{1, 2, 3}));
    EXPECT_EQ(core->getCamera()->getAt(), (osg::Vec3d{1, 2, 2}));
    EXPECT_NEAR(core->getCamera()->getFieldOfView(), 2.0 * std::atan(0.5), 1e-6);
    EXPECT_EQ(core->getCamera()->getNear(), 0.5);
    EXPECT_EQ(core->getCamera()->getFar(), 50.0);
}

TEST(StageBuilderTest, TakesTheFieldOfViewOfGltfByTheAspectRatio)
{
    aiCamera camera;
    camera.mHorizontalFOV = 1.0F;
    camera.mAspect = 2.0F;

    const auto node = buildCamera(camera, true);

    EXPECT_NEAR(osg::dcast<osg::CameraCorePtr>(node->getCore())->getCamera()->getFieldOfView(), 0.5, 1e-6);
}

TEST(StageBuilderTest, SplitsALightIntoColourAndIntensity)
{
    aiLight light;
    light.mType = aiLightSource_POINT;
    light.mColorDiffuse = aiColor3D(683.0F, 341.5F, 0.0F);

    const auto radiometric = buildLight(light, false);
    const auto photometric = buildLight(light, true);

    const auto core = osg::dcast<osg::LightPtr>(radiometric->getCore());
    ASSERT_TRUE(core);
    EXPECT_EQ(core->getKind(), 0U);
    EXPECT_EQ(core->getColor(), (osg::Color4f{1.0F, 0.5F, 0.0F, 1.0F}));
    EXPECT_FLOAT_EQ(core->getIntensity(), 683.0F);
    EXPECT_FLOAT_EQ(osg::dcast<osg::LightPtr>(photometric->getCore())->getIntensity(), 1.0F);
}

TEST(StageBuilderTest, PutsALightWhereItIsAndTurnsItWhereItShines)
{
    aiLight light;
    light.mType = aiLightSource_SPOT;
    light.mPosition = {1, 2, 3};
    light.mAngleInnerCone = 0.2F;
    light.mAngleOuterCone = 0.4F;
    for (const aiVector3D &direction : {aiVector3D(0, -2, 0), aiVector3D(3, 0, 0), aiVector3D(0, 0, 1),
                                        aiVector3D(0, 0, -1), aiVector3D(0.36F, 0.48F, 0.8F)}) {
        light.mDirection = direction;

        const auto node = buildLight(light, false);

        const osg::Vec3d found = shiningDirection(lightNode(node));
        const double length = static_cast<double>(direction.Length());
        EXPECT_NEAR(found[0], static_cast<double>(direction.x) / length, 1e-6);
        EXPECT_NEAR(found[1], static_cast<double>(direction.y) / length, 1e-6);
        EXPECT_NEAR(found[2], static_cast<double>(direction.z) / length, 1e-6);
        const osg::Vec3d place = osg::transformPoint(lightNode(node)->getToWorld(), {0, 0, 0});
        EXPECT_EQ(place, (osg::Vec3d{1, 2, 3}));
        EXPECT_FLOAT_EQ(osg::dcast<osg::LightPtr>(lightNode(node)->getCore())->getOuterConeAngle(), 0.4F);
    }
}

TEST(StageBuilderTest, MakesNoAmbientLight)
{
    aiLight light;
    light.mType = aiLightSource_AMBIENT;

    EXPECT_FALSE(buildLight(light, false));
}

} // namespace
