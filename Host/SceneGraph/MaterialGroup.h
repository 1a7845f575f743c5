// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Group.h"
#include "SceneGraph/Material.h"

namespace osg {

/// Gives a material to what lies below it and has none of its own.
class KX_SCENEGRAPH_EXPORT MaterialGroup final : public Group
{
    OSG_CONTAINER(MaterialGroup, Group)

    OSG_FIELD(MaterialPtr, Material)
};

using MaterialGroupPtr = MaterialGroup::Ptr;

} // namespace osg
