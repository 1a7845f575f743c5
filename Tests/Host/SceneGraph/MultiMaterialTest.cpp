// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/MultiMaterial.h"

#include "SceneGraph/EditCP.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <gtest/gtest.h>

namespace {

using namespace osg;

TEST(MultiMaterialTest, AppendsMaterialsAndRefusesNull)
{
    const FCRef<MultiMaterial> composite(MultiMaterial::create());
    const MaterialPtr first = UBRDFMaterial::create();
    const MaterialPtr second = UBRDFMaterial::create();
    const CPEditor edit(composite.get(), MultiMaterial::MaterialsFieldMask);
    composite->addMaterial(first);
    composite->addMaterial(nullptr);
    composite->addMaterial(second);

    EXPECT_EQ(composite->getMaterials().size(), 2U);
    EXPECT_EQ(composite->getMaterial(1), second);
}

TEST(MultiMaterialTest, AnswersNullForAnIndexOutOfRange)
{
    const FCRef<MultiMaterial> composite(MultiMaterial::create());
    const CPEditor edit(composite.get(), MultiMaterial::MaterialsFieldMask);
    composite->addMaterial(UBRDFMaterial::create());

    EXPECT_EQ(composite->getMaterial(-1), NullFC);
    EXPECT_EQ(composite->getMaterial(1), NullFC);
}

} // namespace
