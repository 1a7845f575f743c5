// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/Internal/RenderScene.h"
#include "SceneGraph/Node.h"

#include <vector>

namespace kxRender {

/// Adds the meshes that are shown at and below the nodes, in world coordinates. The scene is not committed.
void addNodes(RenderScene &scene, const std::vector<osg::NodePtr> &roots);

} // namespace kxRender
