// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "SceneGraph/MaterialPool.h"
#include "SceneGraph/Node.h"

/// Makes those parts of the scene's light-link sets that concern a sub-tree, so that they are written with it. Main thread
/// only.
class KX_KERNEL_EXPORT kxLightLinkSubSets
{
public:
    explicit kxLightLinkSubSets(const osg::MaterialPoolPtr &pool) : _pool(pool) {}

    /// For every set that names a light at or below the node, a new set with those of its lights and members that lie
    /// there. The pool keeps them, also when this object is gone. True if there are any.
    bool createSetsFrom(const osg::NodePtr &node);

private:
    osg::FCRef<osg::MaterialPool> _pool;
};
