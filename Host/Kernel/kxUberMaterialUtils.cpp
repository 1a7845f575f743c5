// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxUberMaterialUtils.h"

#include "SceneGraph/UEnvironmentMaterial.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"
#include "SceneGraph/UberMaterial.h"

std::vector<osg::UBRDFMaterialPtr> kxUberMaterialUtils::getBRDFMaterials(const osg::MaterialPtr &material)
{
    const auto uber = osg::UberMaterialPtr::dcast(material);
    if (!uber)
        return {};
    return {uber->getBRDFMaterials().begin(), uber->getBRDFMaterials().end()};
}

bool kxUberMaterialUtils::isEnvironmentMaterial(const osg::MaterialPtr &material)
{
    return isOfType(material, osg::UEnvironmentMaterial::getClassType()) ||
           isOfType(material, osg::UEnvironmentSwitchMaterial::getClassType());
}
