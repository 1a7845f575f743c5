// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/Internal/NodeMap.h"
#include "Rendering/Internal/PathTracer.h"
#include "Rendering/Internal/RenderScene.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/UberCamera.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace kxRender {

/// What nodes looked like at one moment, lit by the scene's default environment: rendered from any side on any thread while
/// the scene goes on changing.
class SceneSnapshot
{
public:
    static constexpr float Exposure = 0.82F;

    /// Main thread only. Of an environment that is invisible itself nothing is seen in any case.
    static std::shared_ptr<const SceneSnapshot> take(const std::vector<osg::NodePtr> &roots, bool isBackgroundVisible);

    /// The first call puts the triangles in order, which takes its time; others wait for it.
    PathTracer tracer() const;
    /// The id of the node that is seen at a place in a picture, in pixels from the lower left corner; 0: the background.
    std::uint32_t nodeAt(const CameraRays &rays, float x, float y) const;
    /// The nodes that are seen in a picture; null where \a isCancelled said so.
    std::shared_ptr<const NodeMap> nodes(const Camera &camera, int width, int height,
                                         const std::function<bool()> &isCancelled) const;

private:
    SceneSnapshot() = default;
    const RenderScene &committed() const;

    mutable std::once_flag _isCommitted;
    mutable RenderScene _scene;
    bool _isBackgroundVisible = false;
};

Camera cameraOf(const osg::UberCamera &camera);

} // namespace kxRender
