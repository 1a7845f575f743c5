// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "SceneGraph/Node.h"

#include <string>

/// Makes nodes. Main thread only.
class KX_KERNEL_EXPORT NodeUtils
{
public:
    NodeUtils() = delete;

    /// A new node with this core as the last child of \a parent; with a null parent it stands alone. An empty name sets
    /// none.
    static osg::NodePtr createNodeWithCore(const osg::NodeCorePtr &core, const osg::NodePtr &parent,
                                           const std::string &name);
};
