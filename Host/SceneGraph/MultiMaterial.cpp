// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/MultiMaterial.h"

namespace osg {

OSG_CONTAINER_SOURCE(MultiMaterial)

void MultiMaterial::addMaterial(const MaterialPtr &material)
{
    if (material)
        editMaterials().push_back(material);
}

MaterialPtr MultiMaterial::getMaterial(std::int32_t index) const
{
    const auto i = static_cast<std::size_t>(index);
    return index >= 0 && i < getMaterials().size() ? getMaterials()[i] : MaterialPtr();
}

} // namespace osg
