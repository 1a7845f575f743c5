// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Group.h"
#include "SceneGraph/Material.h"

namespace osg {

/// An environment of the scene: its environment material, and below its node the lights that belong to it.
class KX_SCENEGRAPH_EXPORT Environment final : public Group
{
    OSG_CONTAINER(Environment, Group)

    OSG_FIELD(MaterialPtr, Material) ///< an environment material or a switch of them
};

using EnvironmentPtr = Environment::Ptr;

} // namespace osg
