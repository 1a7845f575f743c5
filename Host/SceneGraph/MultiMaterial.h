// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Material.h"

#include <cstdint>

namespace osg {

/// A material made of other materials.
class KX_SCENEGRAPH_EXPORT MultiMaterial : public Material
{
    OSG_CONTAINER(MultiMaterial, Material)

    OSG_MFIELD(MaterialPtr, Materials)

public:
    /// Appends; null is refused. Expects an open edit of MaterialsFieldMask.
    void addMaterial(const MaterialPtr &material);
    /// Null for an index out of range.
    MaterialPtr getMaterial(std::int32_t index) const;
};

using MultiMaterialPtr = MultiMaterial::Ptr;

} // namespace osg
