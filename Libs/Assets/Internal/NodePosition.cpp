// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/NodePosition.h"

#include "Kernel/kxNodeUtils.h"
#include "SceneGraph/EditCP.h"

namespace kxAssetsInternal {

void storeOriginalPosition(std::vector<NodePosition> &positions, const osg::NodePtr &node)
{
    if (!node)
        return;
    const osg::NodePtr parent = node->getParent();
    positions.push_back(
        {node.getFieldContainerId(), parent ? parent.getFieldContainerId() : 0, parent ? parent->findChild(node) : -1});
}

/// From the last to the first, so that each finds the places before it as they were.
void restorePositions(std::vector<NodePosition> &positions)
{
    for (auto position = positions.rbegin(); position != positions.rend(); ++position) {
        const osg::NodePtr node = kxNodeUtils::getNodeFromId(position->node);
        const osg::NodePtr parent = kxNodeUtils::getNodeFromId(position->parent);
        if (!node || !parent)
            continue;
        const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
        parent->insertChild(position->index, node);
    }
    positions.clear();
}

} // namespace kxAssetsInternal
