// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Material.h"

namespace osg {

/// Lights the scene from all around.
class KX_SCENEGRAPH_EXPORT UEnvironmentMaterial : public Material
{
    OSG_ABSTRACT_CONTAINER(UEnvironmentMaterial, Material)

    OSG_FIELD(float, Intensity, 1.0F)
    OSG_FIELD(Color4f, Tint, {1.0F, 1.0F, 1.0F, 1.0F})
    OSG_FIELD(float, Rotation, 0.0F) ///< about the Y axis, radians
};

using UEnvironmentMaterialPtr = UEnvironmentMaterial::Ptr;

} // namespace osg
