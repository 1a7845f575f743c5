// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/FieldValue.h"

#include "SceneGraph/EditCP.h"
#include "SceneGraph/Light.h"
#include "SceneGraph/MultiMaterial.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <gtest/gtest.h>

namespace {

using namespace osg;

const FieldInfo &fieldOf(const FieldContainer &container, const char *name)
{
    const FieldInfo *field = container.getType().findField(name);
    EXPECT_NE(field, nullptr) << name;
    return *field;
}

TEST(FieldValueTest, BringsBackWhatAFieldHeld)
{
    const FCRef<UBRDFMaterial> material(UBRDFMaterial::create());
    const FieldInfo &field = fieldOf(*material.get(), "Roughness");
    const FieldValue before = FieldValue::of(*material.get(), field);

    EXPECT_TRUE(FieldValue(0.25F).assignTo(*material.get(), field));
    EXPECT_EQ(material->getRoughness(), 0.25F);
    EXPECT_EQ(FieldValue::of(*material.get(), field), FieldValue(0.25F));
    EXPECT_TRUE(before.assignTo(*material.get(), field));

    EXPECT_EQ(FieldValue::of(*material.get(), field), before);
}

TEST(FieldValueTest, ChangesNothingWhereTheTypeIsAnother)
{
    const FCRef<UBRDFMaterial> material(UBRDFMaterial::create());
    const FCRef<Light> light(Light::create());
    const FCRef<MultiMaterial> composite(MultiMaterial::create());
    const float before = material->getRoughness();
    const FieldInfo &roughness = fieldOf(*material.get(), "Roughness");
    const FieldInfo &materials = fieldOf(*composite.get(), "Materials");

    EXPECT_FALSE(FieldValue(0.25).assignTo(*material.get(), roughness)) << "the field is of single precision";
    EXPECT_FALSE(FieldValue::reference(light.get()).assignTo(*composite.get(), materials)) << "the field takes several";
    const std::vector<FieldValue::Reference> mixed{{FCRef<FieldContainer>(material.get())},
                                                   {FCRef<FieldContainer>(light.get())}};
    EXPECT_FALSE(FieldValue(mixed).assignTo(*composite.get(), materials)) << "a light is no material";

    EXPECT_EQ(material->getRoughness(), before);
    EXPECT_EQ(composite->getMaterials().size(), 0U);
}

TEST(FieldValueTest, HoldsWhatAFieldReferredTo)
{
    const FCRef<MultiMaterial> composite(MultiMaterial::create());
    const FieldInfo &field = fieldOf(*composite.get(), "Materials");
    {
        const CPEditor edit(composite.get(), MultiMaterial::MaterialsFieldMask);
        composite->editMaterials().push_back(UBRDFMaterial::create());
    }
    const MaterialPtr entry = composite->getMaterials()[0];
    const FieldValue before = FieldValue::of(*composite.get(), field);

    EXPECT_TRUE(FieldValue(std::vector<FieldValue::Reference>{}).assignTo(*composite.get(), field));
    EXPECT_EQ(composite->getMaterials().size(), 0U);
    EXPECT_EQ(entry->getRefCount(), 1) << "held by the value alone";
    EXPECT_TRUE(before.assignTo(*composite.get(), field));

    ASSERT_EQ(composite->getMaterials().size(), 1U);
    EXPECT_EQ(composite->getMaterials()[0], entry);
}

} // namespace
