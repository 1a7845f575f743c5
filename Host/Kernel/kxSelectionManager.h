// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "SceneGraph/Node.h"

#include <vector>

/// The selected nodes of the scene, in the order in which they were selected. Main thread only.
class KX_KERNEL_EXPORT kxSelectionManager
{
public:
    kxSelectionManager() = delete;

    /// Adds the nodes to the selection or, with \a select false, takes them out. What is selected already keeps its place.
    static void selectNodes(const std::vector<osg::NodePtr> &nodes, bool select = true);
    static void clear();

    /// Nodes that were destroyed meanwhile are not among them.
    static std::vector<osg::NodePtr> getSelectedNodes();
    static bool isSelected(const osg::NodePtr &node);
};
