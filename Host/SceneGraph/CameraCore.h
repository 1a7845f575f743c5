// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Group.h"
#include "SceneGraph/UberCamera.h"

namespace osg {

/// Puts a camera into the scene: its node's placement moves it.
class KX_SCENEGRAPH_EXPORT CameraCore final : public Group
{
    OSG_CONTAINER(CameraCore, Group)

    OSG_FIELD(UberCameraPtr, Camera)
};

using CameraCorePtr = CameraCore::Ptr;

} // namespace osg
