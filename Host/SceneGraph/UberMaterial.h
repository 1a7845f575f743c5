// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/UBRDFMaterial.h"

namespace osg {

/// Layers of BRDF materials, the first at the bottom.
class KX_SCENEGRAPH_EXPORT UberMaterial : public Material
{
    OSG_CONTAINER(UberMaterial, Material)

    OSG_MFIELD(UBRDFMaterialPtr, BRDFMaterials)

public:
    /// Brings the layers in order after loading: empty and repeated entries go. True when something changed.
    bool update();
};

using UberMaterialPtr = UberMaterial::Ptr;

} // namespace osg
