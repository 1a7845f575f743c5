// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/NodeCore.h"

namespace osg {

/// Holds children together.
class KX_SCENEGRAPH_EXPORT Group : public NodeCore
{
    OSG_CONTAINER(Group, NodeCore)
};

using GroupPtr = Group::Ptr;

} // namespace osg
