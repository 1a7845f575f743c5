// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/MultiMaterial.h"

namespace osg {

/// Draws its materials over each other, the first at the bottom: what a layer lets through shows the one below.
class KX_SCENEGRAPH_EXPORT MultiPassMaterial final : public MultiMaterial
{
    OSG_CONTAINER(MultiPassMaterial, MultiMaterial)
};

using MultiPassMaterialPtr = MultiPassMaterial::Ptr;

} // namespace osg
