// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/StageBuilder.h"

#include "SceneGraph/CameraCore.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Group.h"
#include "SceneGraph/Light.h"
#include "SceneGraph/Transform.h"
#include "SceneGraph/Transform3D.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace kximport {

namespace {

constexpr double Pi = 3.141592653589793;
constexpr float LumensPerWatt = 683.0F;

osg::Matrix toMatrix(const aiMatrix4x4 &m)
{
    osg::Matrix matrix;
    for (unsigned row = 0; row < 4; ++row)
        for (unsigned column = 0; column < 4; ++column)
            matrix.at(row, column) = static_cast<double>(m[row][column]);
    return matrix;
}

osg::Vec3d toVec(const aiVector3D &v)
{
    return {static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.z)};
}

bool neitherTurnsNorShears(const osg::Matrix &m)
{
    for (std::size_t row = 0; row < 4; ++row)
        for (std::size_t column = 0; column < 3; ++column)
            if (row != column && m.at(row, column) != 0.0)
                return false;
    return m.at(3, 3) == 1.0;
}

bool isIdentity(const osg::Matrix &m)
{
    const osg::Matrix identity;
    return std::equal(m.values.begin(), m.values.end(), identity.values.begin());
}

osg::FCRef<osg::Node> makeNode(const osg::NodeCorePtr &core)
{
    return osg::FCRef<osg::Node>(osg::makeNodeFor(core));
}

/// The rotation that takes -Z to \a direction.
osg::Quaternion rotationTo(const aiVector3D &direction)
{
    const osg::Vec3d d = toVec(direction);
    const double length = std::sqrt(d[0] * d[0] + d[1] * d[1] + d[2] * d[2]);
    if (!(length > 0.0) || !std::isfinite(length))
        return {};
    // With half-way vectors: (-Z x d, 1 + -Z . d), normalised.
    const double w = 1.0 - d[2] / length;
    if (w < 1e-9)
        return {0.0, 1.0, 0.0, 0.0};
    const double x = d[1] / length;
    const double y = -d[0] / length;
    const double scale = 1.0 / std::sqrt(x * x + y * y + w * w);
    return {x * scale, y * scale, 0.0, w * scale};
}

/// A node that puts \a child where a light says it is; \a child itself where that changes nothing.
osg::FCRef<osg::Node> placed(const osg::FCRef<osg::Node> &child, const aiLight &light)
{
    const osg::Quaternion rotation =
        light.mType == aiLightSource_POINT ? osg::Quaternion{} : rotationTo(light.mDirection);
    const osg::Vec3d position = toVec(light.mPosition);
    if (rotation == osg::Quaternion{} && position == osg::Vec3d{})
        return child;

    const osg::Transform3DPtr core = osg::Transform3D::create();
    osg::FCRef<osg::Node> node = makeNode(core);
    {
        const osg::CPEditor edit(core);
        core->setTranslation(position);
        core->setRotationAsQuaternion(rotation);
    }
    const osg::CPEditor edit(node.get(), osg::Node::ChildrenFieldMask);
    node->addChild(child);
    return node;
}

osg::LightKind kindOf(const aiLight &light)
{
    switch (light.mType) {
    case aiLightSource_DIRECTIONAL:
        return osg::LightKind::Directional;
    case aiLightSource_SPOT:
        return osg::LightKind::Spot;
    default:
        return osg::LightKind::Point;
    }
}

} // namespace

osg::FCRef<osg::NodeCore> buildPlacement(const aiMatrix4x4 &matrix)
{
    const osg::Matrix m = toMatrix(matrix);
    if (isIdentity(m))
        return osg::FCRef<osg::NodeCore>(osg::Group::create());
    if (!neitherTurnsNorShears(m)) {
        const osg::TransformPtr transform = osg::Transform::create();
        const osg::CPEditor edit(transform);
        transform->setMatrix(m);
        return osg::FCRef<osg::NodeCore>(transform);
    }
    const osg::Transform3DPtr transform = osg::Transform3D::create();
    const osg::CPEditor edit(transform);
    transform->setTranslation({m.at(0, 3), m.at(1, 3), m.at(2, 3)});
    transform->setScale({m.at(0, 0), m.at(1, 1), m.at(2, 2)});
    return osg::FCRef<osg::NodeCore>(transform);
}

osg::FCRef<osg::Node> buildCamera(const aiCamera &camera, bool isGltf)
{
    const osg::Vec3d from = toVec(camera.mPosition);
    const osg::Vec3d direction = toVec(camera.mLookAt);
    const double aspect = camera.mAspect > 0.0F ? static_cast<double>(camera.mAspect) : 1.0;
    const double horizontal = static_cast<double>(camera.mHorizontalFOV);

    const osg::UberCameraPtr camera3d = osg::UberCamera::create();
    {
        const osg::CPEditor edit(camera3d);
        camera3d->setFrom(from);
        camera3d->setAt({from[0] + direction[0], from[1] + direction[1], from[2] + direction[2]});
        camera3d->setUp(toVec(camera.mUp));
        const double vertical = isGltf ? horizontal / aspect : 2.0 * std::atan(std::tan(horizontal / 2.0) / aspect);
        if (vertical > 0.0 && vertical < Pi)
            camera3d->setFieldOfView(vertical);
        camera3d->setNear(static_cast<double>(camera.mClipPlaneNear));
        camera3d->setFar(static_cast<double>(camera.mClipPlaneFar));
    }
    const osg::CameraCorePtr core = osg::CameraCore::create();
    {
        const osg::CPEditor edit(core);
        core->setCamera(camera3d);
    }
    return makeNode(core);
}

osg::FCRef<osg::Node> buildLight(const aiLight &light, bool isPhotometric)
{
    if (light.mType == aiLightSource_AMBIENT)
        return nullptr;
    const aiColor3D &color = light.mColorDiffuse;
    const float strength = std::max({color.r, color.g, color.b, 0.0F});
    const float scale = strength > 0.0F ? 1.0F / strength : 1.0F;

    const osg::LightPtr core = osg::Light::create();
    const osg::FCRef<osg::Node> node = makeNode(core);
    {
        const osg::CPEditor edit(core);
        core->setKind(static_cast<std::uint32_t>(kindOf(light)));
        core->setColor({color.r * scale, color.g * scale, color.b * scale, 1.0F});
        core->setIntensity(isPhotometric ? strength / LumensPerWatt : strength);
        if (light.mType == aiLightSource_SPOT) {
            core->setInnerConeAngle(light.mAngleInnerCone);
            core->setOuterConeAngle(light.mAngleOuterCone);
        }
    }
    return placed(node, light);
}

} // namespace kximport
