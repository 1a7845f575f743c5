// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Geometry.h"

#include "SceneGraph/EditCP.h"

#include <gtest/gtest.h>

namespace {

using namespace osg;

/// A square of two triangles.
class GeometryTest : public testing::Test
{
protected:
    GeometryTest()
    {
        geometry->editPositions() = {
            {{0.0F, 0.0F, 0.0F}}, {{1.0F, 0.0F, 0.0F}}, {{1.0F, 1.0F, 0.0F}}, {{0.0F, 1.0F, 0.0F}}};
        geometry->editIndices() = {0, 1, 2, 0, 2, 3};
    }

    FCRef<Geometry> geometry{Geometry::create()};
    CPEditor edit{geometry.get()};
};

TEST_F(GeometryTest, IsValidWhenEmpty)
{
    const FCRef<Geometry> empty(Geometry::create());

    EXPECT_TRUE(empty->isValid());
    EXPECT_EQ(empty->getFaceCount(), 0U);
    EXPECT_TRUE(empty->getVolume().isEmpty());
}

TEST_F(GeometryTest, CountsTrianglesWithoutFaceSizes)
{
    EXPECT_TRUE(geometry->isValid());
    EXPECT_EQ(geometry->getFaceCount(), 2U);
    EXPECT_EQ(geometry->getVolume().max(), (Vec3d{{1.0, 1.0, 0.0}}));
}

TEST_F(GeometryTest, CountsFacesOfAnySize)
{
    geometry->editFaceSizes() = {4, 2};

    EXPECT_TRUE(geometry->isValid());
    EXPECT_EQ(geometry->getFaceCount(), 2U);
}

TEST_F(GeometryTest, IsInvalidWithAnIndexOutOfRange)
{
    geometry->editIndices()[5] = 4;

    EXPECT_FALSE(geometry->isValid());
}

TEST_F(GeometryTest, IsInvalidWithIndicesAndNoPositions)
{
    geometry->editPositions().clear();

    EXPECT_FALSE(geometry->isValid());
}

TEST_F(GeometryTest, IsInvalidWithHalfATriangle)
{
    geometry->editIndices().push_back(0);

    EXPECT_FALSE(geometry->isValid());
}

TEST_F(GeometryTest, IsInvalidWhereFaceSizesDoNotAddUp)
{
    geometry->editFaceSizes() = {3, 2};
    EXPECT_FALSE(geometry->isValid());
    geometry->editFaceSizes() = {0xFFFFFFFF, 7};
    EXPECT_FALSE(geometry->isValid());
}

TEST_F(GeometryTest, IsInvalidWithAttributesOfAnotherLength)
{
    geometry->editNormals().resize(3);
    EXPECT_FALSE(geometry->isValid());
    geometry->editNormals().resize(4);
    EXPECT_TRUE(geometry->isValid());
    geometry->editTexCoords().resize(5);
    EXPECT_FALSE(geometry->isValid());
    geometry->editTexCoords().clear();
    geometry->editColors().resize(1);
    EXPECT_FALSE(geometry->isValid());
}

} // namespace
