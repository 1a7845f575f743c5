// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Group.h"

namespace osg {

/// Places its node's children by any matrix, kept bit for bit.
class KX_SCENEGRAPH_EXPORT Transform final : public Group
{
    OSG_CONTAINER(Transform, Group)

    OSG_FIELD(::osg::Matrix, Matrix)
};

using TransformPtr = Transform::Ptr;

} // namespace osg
