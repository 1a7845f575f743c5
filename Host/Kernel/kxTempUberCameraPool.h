// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "SceneGraph/MaterialPool.h"
#include "SceneGraph/Node.h"

/// Gathers the cameras of the scene that a sub-tree refers to, so that they are written with it. Main thread only.
class KX_KERNEL_EXPORT kxTempUberCameraPool
{
public:
    explicit kxTempUberCameraPool(const osg::MaterialPoolPtr &pool) : _pool(pool) {}

    /// Puts the cameras of the scene's own list that something at or below the node refers to into the pool; true if there
    /// are any.
    bool add(const osg::NodePtr &node);
    /// Empties the pool's list of cameras. The scene's list is never changed.
    void reset();

private:
    osg::FCRef<osg::MaterialPool> _pool;
};
