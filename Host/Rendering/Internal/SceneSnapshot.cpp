// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/SceneSnapshot.h"

#include "Kernel/kxDefaultEnvironment.h"
#include "Rendering/Internal/PreviewScene.h"
#include "Rendering/Internal/SceneBuilding.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/USphereEnvironmentMaterial.h"

#include <optional>
#include <utility>

namespace kxRender {

namespace {

V3 toV3(const osg::Vec3d &v)
{
    return {static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2])};
}

bool isDrawn(const osg::MaterialPtr &environment)
{
    const auto chooser = osg::SwitchMaterialPtr::dcast(environment);
    const auto sphere =
        osg::USphereEnvironmentMaterialPtr::dcast(chooser ? chooser->getCurrentMaterial() : environment);
    return !sphere || sphere->getIsVisible();
}

} // namespace

std::shared_ptr<const SceneSnapshot> SceneSnapshot::take(const std::vector<osg::NodePtr> &roots,
                                                         bool isBackgroundVisible)
{
    const std::shared_ptr<SceneSnapshot> snapshot(new SceneSnapshot);
    addNodes(snapshot->_scene, roots);
    const osg::MaterialPtr environment = kxDefaultEnvironment::getDefault();
    auto light = environment ? EnvironmentLight::from(environment) : std::nullopt;
    snapshot->_scene.setEnvironment(light ? std::move(*light) : studioLight());
    snapshot->_isBackgroundVisible = isBackgroundVisible && isDrawn(environment);
    return snapshot;
}

PathTracer SceneSnapshot::tracer() const
{
    PathTracer tracer(committed());
    tracer.setBackgroundVisible(_isBackgroundVisible);
    return tracer;
}

std::uint32_t SceneSnapshot::nodeAt(const CameraRays &rays, float x, float y) const
{
    return committed().nodeAlong(rays.origin(), rays.direction(x, y));
}

std::shared_ptr<const NodeMap> SceneSnapshot::nodes(const Camera &camera, int width, int height,
                                                    const std::function<bool()> &isCancelled) const
{
    std::optional<NodeMap> map = NodeMap::take(committed(), camera, width, height, isCancelled);
    return map ? std::make_shared<const NodeMap>(std::move(*map)) : nullptr;
}

const RenderScene &SceneSnapshot::committed() const
{
    std::call_once(_isCommitted, [this] { _scene.commit(); });
    return _scene;
}

Camera cameraOf(const osg::UberCamera &camera)
{
    return {toV3(camera.getFrom()), toV3(camera.getAt()), toV3(camera.getUp()),
            static_cast<float>(camera.getFieldOfView())};
}

} // namespace kxRender
