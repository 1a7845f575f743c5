// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Node.h"

#include <cstdint>
#include <vector>

namespace kxAssetsInternal {

/// Where a node hung, by ids, as nodes may go meanwhile.
struct NodePosition
{
    std::uint32_t node = 0;
    std::uint32_t parent = 0; ///< 0: it had none
    std::int32_t index = -1;  ///< among the parent's children; -1 without a parent

    bool operator==(const NodePosition &) const = default;
};

/// Appends where \a node hangs now; nothing for null.
void storeOriginalPosition(std::vector<NodePosition> &positions, const osg::NodePtr &node);

/// Hangs what still exists back and empties the list.
void restorePositions(std::vector<NodePosition> &positions);

} // namespace kxAssetsInternal
