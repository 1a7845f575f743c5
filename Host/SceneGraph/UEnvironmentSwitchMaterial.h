// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/SwitchMaterial.h"

namespace osg {

/// A switch of environment materials; the scene's default environment is one. Not itself an environment material.
class KX_SCENEGRAPH_EXPORT UEnvironmentSwitchMaterial final : public SwitchMaterial
{
    OSG_CONTAINER(UEnvironmentSwitchMaterial, SwitchMaterial)
};

using UEnvironmentSwitchMaterialPtr = UEnvironmentSwitchMaterial::Ptr;

} // namespace osg
