// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/UberMaterial.h"

#include "SceneGraph/EditCP.h"

#include <algorithm>
#include <vector>

namespace osg {

OSG_CONTAINER_SOURCE(UberMaterial)

bool UberMaterial::update()
{
    std::vector<UBRDFMaterialPtr> layers;
    for (const UBRDFMaterialPtr &layer : getBRDFMaterials())
        if (layer && std::find(layers.begin(), layers.end(), layer) == layers.end())
            layers.push_back(layer);
    if (layers.size() == getBRDFMaterials().size())
        return false;
    const CPEditor edit(Ptr(this), BRDFMaterialsFieldMask);
    editBRDFMaterials().assign(layers);
    return true;
}

} // namespace osg
