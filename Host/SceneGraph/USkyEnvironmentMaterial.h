// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/UEnvironmentMaterial.h"

namespace osg {

/// A clear day sky over a plain ground, computed.
class KX_SCENEGRAPH_EXPORT USkyEnvironmentMaterial final : public UEnvironmentMaterial
{
    OSG_CONTAINER(USkyEnvironmentMaterial, UEnvironmentMaterial)

    OSG_FIELD(Vec3f, SunDirection, {0.4F, 0.7F, 0.6F}) ///< towards the sun; any length but 0
    OSG_FIELD(float, Turbidity, 3.0F)                  ///< 2 clear to 10 hazy
    OSG_FIELD(float, SunSize, 1.0F)                    ///< 1: as seen from earth
    OSG_FIELD(Color4f, GroundColor, {0.25F, 0.24F, 0.22F, 1.0F})
};

using USkyEnvironmentMaterialPtr = USkyEnvironmentMaterial::Ptr;

} // namespace osg
