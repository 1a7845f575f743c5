// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/AttachmentContainer.h"

namespace osg {

/// What a node is: its core. A core may be shared by several nodes, which are then clones of each other.
class KX_SCENEGRAPH_EXPORT NodeCore : public AttachmentContainer
{
    OSG_ABSTRACT_CONTAINER(NodeCore, AttachmentContainer)
};

using NodeCorePtr = NodeCore::Ptr;

} // namespace osg
