// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Transform.h"

#include "SceneGraph/EditCP.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <limits>

namespace {

using namespace osg;

TEST(TransformTest, IsTheIdentityAtFirst)
{
    const FCRef<Transform> transform(Transform::create());

    EXPECT_EQ(transform->getMatrix(), (Matrix{{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}}));
}

TEST(TransformTest, KeepsAMatrixBitForBit)
{
    Matrix matrix;
    matrix.values = {0.1,
                     -0.0,
                     std::numeric_limits<double>::denorm_min(),
                     std::numeric_limits<double>::quiet_NaN(),
                     1e300,
                     std::numeric_limits<double>::infinity(),
                     1.0 / 3.0,
                     -7.0,
                     8.0,
                     9.0,
                     10.0,
                     11.0,
                     12.0,
                     13.0,
                     14.0,
                     15.0};
    const FCRef<Transform> transform(Transform::create());
    {
        const CPEditor edit(transform.get(), Transform::MatrixFieldMask);
        transform->setMatrix(matrix);
    }

    using Bits = std::array<std::uint64_t, 16>; // a NaN equals nothing
    EXPECT_EQ(std::bit_cast<Bits>(transform->getMatrix()), std::bit_cast<Bits>(matrix));
}

} // namespace
