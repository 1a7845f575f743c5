// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Constraint.h"
#include "SceneGraph/Group.h"
#include "SceneGraph/LightLinkSet.h"
#include "SceneGraph/Material.h"
#include "SceneGraph/UberCamera.h"

namespace osg {

/// Holds what the scene owns without showing it, so that it is written with the scene.
class KX_SCENEGRAPH_EXPORT MaterialPool final : public Group
{
    OSG_CONTAINER(MaterialPool, Group)

    OSG_MFIELD(MaterialPtr, Materials)
    OSG_MFIELD(UberCameraPtr, Cameras)
    OSG_MFIELD(ConstraintPtr, Constraints)
    OSG_MFIELD(LightLinkSetPtr, LightLinkSets)
};

using MaterialPoolPtr = MaterialPool::Ptr;

} // namespace osg
