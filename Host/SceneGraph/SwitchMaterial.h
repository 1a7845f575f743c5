// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/MultiMaterial.h"

#include <cstdint>

namespace osg {

/// Looks like one of its materials.
class KX_SCENEGRAPH_EXPORT SwitchMaterial : public MultiMaterial
{
    OSG_CONTAINER(SwitchMaterial, MultiMaterial)

    OSG_FIELD(std::int32_t, Choice, 0)

public:
    /// Null for a choice out of range.
    MaterialPtr getCurrentMaterial() const { return getMaterial(getChoice()); }
};

using SwitchMaterialPtr = SwitchMaterial::Ptr;

} // namespace osg
