// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Group.h"

#include <cstddef>
#include <cstdint>

namespace osg {

/// Shows one of its node's children.
class KX_SCENEGRAPH_EXPORT Switch final : public Group
{
    OSG_CONTAINER(Switch, Group)

    OSG_FIELD(std::int32_t, Choice, 0) ///< index of the child; out of range: none

public:
    static constexpr std::int32_t All = -2; ///< every child is shown

    /// Whether the child at this place is shown.
    bool shows(std::size_t child) const
    {
        return getChoice() == All || getChoice() == static_cast<std::int32_t>(child);
    }
};

using SwitchPtr = Switch::Ptr;

} // namespace osg
