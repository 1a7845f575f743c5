// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxAssetsExport.h"
#include "Kernel/kxBRDFEnvironmentSetter.h"
#include "Kernel/kxConstraintsPool.h"
#include "Kernel/kxTempUberCameraPool.h"
#include "SceneGraph/MaterialPool.h"
#include "SceneGraph/Node.h"

#include <cstdint>

/// Prepares a sub-tree for being written, and undoes that when it goes.
///
/// Meanwhile its materials point at no environment of the scene, and a pool below it holds the cameras and constraints
/// that it needs from outside. Copies restore the same changes: the first one does, the others find nothing to do. Main
/// thread only.
class KX_ASSETS_EXPORT kxSaveNode
{
public:
    /// Nothing happens for null.
    explicit kxSaveNode(const osg::NodePtr &node);
    kxSaveNode(const kxSaveNode &) = default;
    kxSaveNode &operator=(const kxSaveNode &) = default;
    ~kxSaveNode();

    /// Puts everything back. The text of the node's actions goes only together with a pool; without one it stays.
    void cleanup();

private:
    void prepare(const osg::NodePtr &node);
    void detachFromEnvironments(const osg::NodePtr &node);

    kxBRDFEnvironmentSetter _environments;
    osg::FCRef<osg::MaterialPool> _pool;
    std::uint32_t _poolNode = 0;
    kxTempUberCameraPool _cameras;
    kxConstraintsPool _constraints;
};
