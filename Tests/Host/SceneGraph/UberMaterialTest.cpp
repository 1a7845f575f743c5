// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/UberMaterial.h"

#include "SceneGraph/EditCP.h"

#include <gtest/gtest.h>

namespace {

using namespace osg;

TEST(UberMaterialTest, DropsEmptyAndRepeatedLayersOnUpdate)
{
    const FCRef<UberMaterial> material(UberMaterial::create());
    const UBRDFMaterialPtr first = UBRDFMaterial::create();
    const UBRDFMaterialPtr second = UBRDFMaterial::create();
    {
        const CPEditor edit(material.get(), UberMaterial::BRDFMaterialsFieldMask);
        material->editBRDFMaterials() = {first, UBRDFMaterialPtr(), second, first};
    }

    EXPECT_TRUE(material->update());

    EXPECT_EQ(material->getBRDFMaterials().values(), (std::vector<UBRDFMaterialPtr>{first, second}));
    EXPECT_FALSE(material->update());
}

} // namespace
