// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/AttachmentContainer.h"

#include <cstdint>
#include <string>

namespace osg {

enum class ConstraintKind : std::uint32_t { Parent = 0, Point = 1, Orient = 2, Aim = 3 };

/// Ties the placement of a node to that of others.
class KX_SCENEGRAPH_EXPORT Constraint final : public AttachmentContainer
{
    OSG_CONTAINER(Constraint, AttachmentContainer)

    OSG_FIELD(std::uint32_t, Kind, 0) ///< a ConstraintKind
    OSG_MFIELD(std::string, Ends)     ///< keys of the nodes: the one that follows, then those that it follows
    OSG_FIELD(bool, IsActive, true)
};

using ConstraintPtr = Constraint::Ptr;

} // namespace osg
