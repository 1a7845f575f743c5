// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/SurfaceFormulas.h"

#include <gtest/gtest.h>

#include <limits>

using namespace kximport;

namespace {

// alpha = sqrt(2 / (n + 2)), and the roughness is its square root.
TEST(SurfaceFormulasTest, MakesExponentsRoughnesses)
{
    EXPECT_FLOAT_EQ(roughnessFromExponent(0.0F), 1.0F);
    EXPECT_FLOAT_EQ(roughnessFromExponent(30.0F), 0.5F);
    EXPECT_FLOAT_EQ(roughnessFromExponent(19998.0F), 0.1F);
    EXPECT_FLOAT_EQ(roughnessFromExponent(-4.0F), 1.0F);
    EXPECT_FLOAT_EQ(roughnessFromExponent(std::numeric_limits<float>::quiet_NaN()), 1.0F);
}

TEST(SurfaceFormulasTest, LeavesADielectricItsColour)
{
    const MetalShare share = metalShare({0.5F, 0.25F, 0.125F, 1.0F}, {0.04F, 0.04F, 0.04F, 1.0F});

    EXPECT_NEAR(share.metalness, 0.0F, 1e-3F);
    EXPECT_NEAR(share.baseColor[0], 0.5F, 2e-3F);
    EXPECT_NEAR(share.baseColor[2], 0.125F, 2e-3F);
}

TEST(SurfaceFormulasTest, SeesAMetalInABlackDiffuseAndAColouredSpecular)
{
    const MetalShare share = metalShare({0.0F, 0.0F, 0.0F, 1.0F}, {1.0F, 0.77F, 0.34F, 1.0F});

    EXPECT_NEAR(share.metalness, 1.0F, 1e-3F);
    EXPECT_NEAR(share.baseColor[0], 1.0F, 1e-3F);
    EXPECT_NEAR(share.baseColor[1], 0.77F, 1e-3F);
    EXPECT_NEAR(share.baseColor[2], 0.34F, 1e-3F);
}

TEST(SurfaceFormulasTest, KeepsTheAlpha)
{
    EXPECT_EQ(metalShare({0.5F, 0.5F, 0.5F, 0.25F}, {}).baseColor[3], 0.25F);
}

TEST(SurfaceFormulasTest, DecodesSrgb)
{
    EXPECT_FLOAT_EQ(linearFromSrgb(0.0F), 0.0F);
    EXPECT_FLOAT_EQ(linearFromSrgb(0.04F), 0.0030959751F);
    EXPECT_NEAR(linearFromSrgb(0.5F), 0.21404114F, 1e-6F);
    EXPECT_FLOAT_EQ(linearFromSrgb(1.0F), 1.0F);
}

} // namespace
