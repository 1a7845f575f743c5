// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Group.h"

namespace osg {

/// Places its node's children by translation, rotation and scale.
class KX_SCENEGRAPH_EXPORT Transform3D final : public Group
{
    OSG_CONTAINER(Transform3D, Group)

    OSG_FIELD(Vec3d, Translation)
    OSG_FIELD(Quaternion, RotationAsQuaternion)
    OSG_FIELD(Vec3d, Scale, {1.0, 1.0, 1.0})

public:
    /// Translation x rotation x scale.
    Matrix getMatrix() const;
};

using Transform3DPtr = Transform3D::Ptr;

} // namespace osg
