// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "SceneGraph/MaterialPool.h"
#include "SceneGraph/Node.h"

/// Gathers the constraints of the scene that belong to a sub-tree, so that they are written with it. Main thread only.
class KX_KERNEL_EXPORT kxConstraintsPool
{
public:
    explicit kxConstraintsPool(const osg::MaterialPoolPtr &pool) : _pool(pool) {}

    /// Puts the constraints whose ends all lie at or below the node into the pool; true if there are any.
    bool createFrom(const osg::NodePtr &node);
    /// Empties the pool's list of constraints. The scene's list is never changed.
    void reset();

private:
    osg::FCRef<osg::MaterialPool> _pool;
};
