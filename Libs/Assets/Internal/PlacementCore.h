// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Matrix.h"
#include "SceneGraph/NodeCore.h"

namespace kxAssetsInternal {

/// Whether no element differs by more than 1e-6.
bool isNearlyEqual(const osg::Matrix &a, const osg::Matrix &b);

/// A core that places its node's children by the matrix: by translation, rotation and scale where these can express it,
/// else by the matrix itself. Nobody owns it yet.
osg::NodeCorePtr placementCore(const osg::Matrix &matrix);

} // namespace kxAssetsInternal
