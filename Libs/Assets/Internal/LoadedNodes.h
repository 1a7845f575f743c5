// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Node.h"

#include <vector>

namespace kxAssetsInternal {

/// The first of what a file held that is a node, which nobody owns yet; null when there is none. The others go.
osg::NodePtr takeFirstNode(std::vector<osg::FCRef<osg::Node>> nodes);

/// Cuts the polygons of those meshes into triangles that have others.
void triangulateWhereNeeded(const std::vector<osg::NodePtr> &meshNodes);

} // namespace kxAssetsInternal
