// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/Internal/RenderScene.h"
#include "SceneGraph/Node.h"

#include <vector>

namespace kxRender {

/// Adds the meshes and the lights that are shown at and below the nodes, in world coordinates. The scene is not committed.
/// Expects that it holds no lights yet.
///
/// A light counts once, however many of the roots it lies below. Light-link sets are those of material pools that lie there,
/// and of the scene document's pool.
void addNodes(RenderScene &scene, const std::vector<osg::NodePtr> &roots);

} // namespace kxRender
