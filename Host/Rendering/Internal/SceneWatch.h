// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Node.h"
#include "SceneGraph/SceneListener.h"
#include "SceneGraph/UberCamera.h"

#include <cstdint>
#include <functional>
#include <unordered_set>
#include <vector>

namespace kxRender {

/// Tells when what a picture shows changes: its nodes with their materials, textures and lights, or its camera. Changes of
/// anything else, as of materials that are being loaded and of names, say nothing. Main thread only.
class SceneWatch final : public osg::SceneListener
{
public:
    SceneWatch(std::function<void()> sceneChanged, std::function<void()> cameraChanged);
    ~SceneWatch() override;
    SceneWatch(const SceneWatch &) = delete;
    SceneWatch &operator=(const SceneWatch &) = delete;

    /// Watches everything that these trees refer to at this moment, and nothing else. A change of what they refer to is a
    /// change of the scene, after which this is to be called again.
    void watchScene(const std::vector<osg::NodePtr> &roots);
    void watchCamera(const osg::UberCameraPtr &camera) { _camera = camera.getFieldContainerId(); }

    void containerChanged(osg::FieldContainer &container, osg::FieldMask fields) override;

private:
    bool isSeen(osg::FieldContainer &container, osg::FieldMask fields) const;

    std::function<void()> _sceneChanged;
    std::function<void()> _cameraChanged;
    std::unordered_set<std::uint32_t> _shown;
    std::unordered_set<std::uint32_t> _overridden; ///< of what is shown, what carries a material for all below
    std::uint32_t _camera = 0;
};

} // namespace kxRender
