// SPDX-License-Identifier: Apache-2.0
#include "SmallMaterials.h"

#include "Assets/kxMaterialAssetItem.h"
#include "Kernel/kxMaterials.h"
#include "Rendering/kxPreviewSettings.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <gtest/gtest.h>

namespace kxtest {

Owned makeSurface(const std::string &name, float roughness)
{
    const osg::UBRDFMaterialPtr material = osg::UBRDFMaterial::create();
    const osg::CPEditor edit(material, osg::UBRDFMaterial::RoughnessFieldMask);
    material->setRoughness(roughness);
    kxMaterials::setName(material, name, false);
    return Owned(material);
}

Owned makeSwitch(const std::string &name, const std::vector<Owned> &parts, int choice)
{
    const osg::SwitchMaterialPtr material = osg::SwitchMaterial::create();
    const osg::CPEditor edit(material, osg::SwitchMaterial::MaterialsFieldMask | osg::SwitchMaterial::ChoiceFieldMask);
    for (const Owned &part : parts)
        material->addMaterial(part.get());
    material->setChoice(choice);
    kxMaterials::setName(material, name, false);
    return Owned(material);
}

std::string store(const Owned &material, const QUrl &folder)
{
    kxPreviewSettings::setSize(16);
    kxPreviewSettings::setSamples(1);
    kxMaterialAssetItem item;
    item.initFrom(material.get(), {}, true);
    const std::string uuid = item.uuid();
    EXPECT_TRUE(item.save(folder));
    return uuid;
}

} // namespace kxtest
