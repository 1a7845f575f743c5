// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/AttachmentContainer.h"

namespace osg {

/// A perspective camera.
class KX_SCENEGRAPH_EXPORT UberCamera final : public AttachmentContainer
{
    OSG_CONTAINER(UberCamera, AttachmentContainer)

    OSG_FIELD(Vec3d, From, {0.0, 0.0, 5.0})
    OSG_FIELD(Vec3d, At)
    OSG_FIELD(Vec3d, Up, {0.0, 1.0, 0.0})
    OSG_FIELD(double, FieldOfView, 0.6) ///< vertical, radians
    OSG_FIELD(double, Near, 0.01)
    OSG_FIELD(double, Far, 10000.0)
};

using UberCameraPtr = UberCamera::Ptr;

} // namespace osg
