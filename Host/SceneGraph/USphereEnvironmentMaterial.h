// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Image.h"
#include "SceneGraph/UEnvironmentMaterial.h"

namespace osg {

/// An environment from a picture of the whole sphere (equirectangular: u once around Y, v from nadir to zenith).
class KX_SCENEGRAPH_EXPORT USphereEnvironmentMaterial final : public UEnvironmentMaterial
{
    OSG_CONTAINER(USphereEnvironmentMaterial, UEnvironmentMaterial)

    OSG_FIELD(ImagePtr, Image)
    OSG_FIELD(bool, IsVisible, true) ///< false: it lights the scene and is not drawn
};

using USphereEnvironmentMaterialPtr = USphereEnvironmentMaterial::Ptr;

} // namespace osg
