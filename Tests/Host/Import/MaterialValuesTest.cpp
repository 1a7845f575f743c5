// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/MaterialValues.h"

#include <gtest/gtest.h>

#include <limits>

using kximport::MaterialValues;

namespace {

TEST(MaterialValuesTest, ReadsWhatIsSaid)
{
    aiMaterial material;
    const ai_real number = 0.25F;
    const int integer = 7;
    const aiColor3D color(0.1F, 0.2F, 0.3F);
    const aiString text("Stoff\nrot");
    material.AddProperty(&number, 1, AI_MATKEY_OPACITY);
    material.AddProperty(&integer, 1, AI_MATKEY_SHADING_MODEL);
    material.AddProperty(&color, 1, AI_MATKEY_COLOR_DIFFUSE);
    material.AddProperty(&text, AI_MATKEY_NAME);
    const MaterialValues values(material);

    EXPECT_EQ(values.number(AI_MATKEY_OPACITY), 0.25F);
    EXPECT_EQ(values.integer(AI_MATKEY_SHADING_MODEL), 7);
    EXPECT_EQ(values.color(AI_MATKEY_COLOR_DIFFUSE), (osg::Color4f{0.1F, 0.2F, 0.3F, 1.0F}));
    EXPECT_EQ(values.text(AI_MATKEY_NAME), "Stoff rot");
    EXPECT_TRUE(values.has(AI_MATKEY_OPACITY));
}

TEST(MaterialValuesTest, SaysNothingWhereNothingIsSaid)
{
    const aiMaterial material;
    const MaterialValues values(material);

    EXPECT_FALSE(values.number(AI_MATKEY_OPACITY));
    EXPECT_FALSE(values.integer(AI_MATKEY_TWOSIDED));
    EXPECT_FALSE(values.color(AI_MATKEY_BASE_COLOR));
    EXPECT_EQ(values.text(AI_MATKEY_NAME), "");
    EXPECT_FALSE(values.has(AI_MATKEY_OPACITY));
}

TEST(MaterialValuesTest, PassesOverNumbersThatAreNone)
{
    aiMaterial material;
    const ai_real number = std::numeric_limits<ai_real>::quiet_NaN();
    const aiColor3D color(std::numeric_limits<ai_real>::infinity(), 0, 0);
    material.AddProperty(&number, 1, AI_MATKEY_OPACITY);
    material.AddProperty(&color, 1, AI_MATKEY_COLOR_DIFFUSE);
    const MaterialValues values(material);

    EXPECT_FALSE(values.number(AI_MATKEY_OPACITY));
    EXPECT_FALSE(values.color(AI_MATKEY_COLOR_DIFFUSE));
}

} // namespace
