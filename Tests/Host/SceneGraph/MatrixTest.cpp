// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Matrix.h"

#include <gtest/gtest.h>

#include <cmath>

#include <cmath>

namespace {

using namespace osg;

constexpr Matrix Move{{1, 0, 0, 5, 0, 1, 0, 6, 0, 0, 1, 7, 0, 0, 0, 1}};
constexpr Matrix Stretch{{2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 0, 0, 0, 1}};

TEST(MatrixTest, AppliesTheRightFactorFirst)
{
    EXPECT_EQ(transformPoint(Move * Stretch, {{1.0, 1.0, 1.0}}), (Vec3d{{7.0, 9.0, 11.0}}));
    EXPECT_EQ(transformPoint(Stretch * Move, {{1.0, 1.0, 1.0}}), (Vec3d{{12.0, 21.0, 32.0}}));
}

TEST(MatrixTest, KeepsTheOtherFactorOfAnIdentity)
{
    EXPECT_EQ(Move * Matrix(), Move);
    EXPECT_EQ(Matrix() * Move, Move);
}

TEST(MatrixTest, Inverts)
{
    const auto inverse = inverted(Move * Stretch);

    ASSERT_TRUE(inverse);
    const Vec3d point = transformPoint(*inverse, {{7.0, 9.0, 11.0}});
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(point[i], 1.0, 1e-12);
}

TEST(MatrixTest, HasNoInverseWhereSpaceCollapses)
{
    Matrix flat;
    flat.at(2, 2) = 0.0;

    EXPECT_FALSE(inverted(flat));
}

TEST(MatrixTest, ComposesTranslationRotationAndScale)
{
    const Matrix matrix =
        composeMatrix({{1.0, 2.0, 3.0}}, {std::sqrt(0.5), 0.0, 0.0, std::sqrt(0.5)}, {{1.0, 1.0, 5.0}});

    // A quarter turn about X: Y becomes Z, Z becomes -Y.
    const Vec3d point = transformPoint(matrix, {{0.0, 0.0, 1.0}});
    EXPECT_NEAR(point[0], 1.0, 1e-12);
    EXPECT_NEAR(point[1], 2.0 - 5.0, 1e-12);
    EXPECT_NEAR(point[2], 3.0, 1e-12);
}

TEST(MatrixTest, TakesPlacementsApart)
{
    const Quaternion turn{0.0, 0.0, 0.6, 0.8};
    for (const Vec3d &scale : {Vec3d{1.0, 1.0, 1.0}, Vec3d{2.0, 3.0, 0.5}, Vec3d{-2.0, -2.0, -2.0}}) {
        const Matrix whole = composeMatrix({1.0, 2.0, 3.0}, turn, scale);

        const Decomposition parts = decompose(whole);

        const Matrix again = composeMatrix(parts.translation, parts.rotation, parts.scale);
        for (std::size_t i = 0; i < 16; ++i)
            EXPECT_NEAR(again.values[i], whole.values[i], 1e-12);
        EXPECT_EQ(parts.translation, (Vec3d{1.0, 2.0, 3.0}));
        EXPECT_NEAR(parts.scale[0], scale[0], 1e-12);
    }
}

TEST(MatrixTest, LosesShear)
{
    Matrix shear;
    shear.at(0, 1) = 0.5;

    const Decomposition parts = decompose(shear);

    const Matrix again = composeMatrix(parts.translation, parts.rotation, parts.scale);
    EXPECT_GT(std::abs(again.at(0, 1) - 0.5) + std::abs(again.at(1, 0)), 0.01);
}

} // namespace
