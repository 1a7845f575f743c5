// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxOptimize.h"

#include "Kernel/kxGeometryBuffer.h"
#include "SceneGraph/EditCP.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using Points = std::vector<osg::Vec3f>;

osg::FCRef<osg::Geometry> mesh(const Points &positions, const std::vector<std::vector<std::uint32_t>> &faces)
{
    osg::FCRef<osg::Geometry> geometry(osg::Geometry::create());
    const osg::CPEditor edit(geometry.get(), osg::AllFieldMask);
    geometry->editPositions() = positions;
    for (const std::vector<std::uint32_t> &face : faces) {
        for (const std::uint32_t corner : face)
            geometry->editIndices().push_back(corner);
        geometry->editFaceSizes().push_back(static_cast<std::uint32_t>(face.size()));
    }
    return geometry;
}

osg::FCRef<osg::Geometry> polygon(const Points &positions)
{
    std::vector<std::uint32_t> face;
    for (std::uint32_t i = 0; i < positions.size(); ++i)
        face.push_back(i);
    return mesh(positions, {face});
}

/// The signed area along z of each triangle.
std::vector<double> areas(const osg::Geometry &geometry)
{
    std::vector<double> result;
    const auto &indices = geometry.getIndices();
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
        const osg::Vec3f &a = geometry.getPositions()[indices[i]];
        const osg::Vec3f &b = geometry.getPositions()[indices[i + 1]];
        const osg::Vec3f &c = geometry.getPositions()[indices[i + 2]];
        result.push_back(0.5 * static_cast<double>((b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0])));
    }
    return result;
}

double sum(const std::vector<double> &values)
{
    double result = 0.0;
    for (const double value : values)
        result += value;
    return result;
}

TEST(kxOptimizeTest, CutsQuadsAndKeepsTriangles)
{
    const auto geometry = mesh({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, {{0, 1, 2, 3}, {3, 2, 1}});
    EXPECT_TRUE(kxGeometryBuffer::needsTriangulation(nullptr, geometry.get()));

    EXPECT_TRUE(kxOptimize::triangulate(geometry.get(), false));

    EXPECT_FALSE(kxGeometryBuffer::needsTriangulation(nullptr, geometry.get()));
    EXPECT_TRUE(geometry->getFaceSizes().empty());
    EXPECT_EQ(geometry->getIndices().size(), 9U);
    EXPECT_TRUE(geometry->isValid());
    EXPECT_NEAR(areas(*geometry)[0] + areas(*geometry)[1], 1.0, 1e-6);
    EXPECT_NEAR(areas(*geometry)[2], -0.5, 1e-6) << "the winding stays";
}

TEST(kxOptimizeTest, FillsAConcavePolygonExactly)
{
    // A star with ten corners.
    Points star;
    for (int i = 0; i < 10; ++i) {
        const double angle = 0.6283185307179586 * i;
        const double radius = i % 2 == 0 ? 1.0 : 0.3;
        star.push_back({static_cast<float>(radius * std::cos(angle)), static_cast<float>(radius * std::sin(angle)), 2});
    }
    const auto geometry = polygon(star);

    EXPECT_TRUE(kxOptimize::triangulate(geometry.get(), false));

    const std::vector<double> found = areas(*geometry);
    EXPECT_EQ(found.size(), 8U);
    EXPECT_TRUE(std::all_of(found.begin(), found.end(), [](double area) { return area > 0.0; }));
    EXPECT_NEAR(sum(found), 5.0 * 1.0 * 0.3 * std::sin(0.6283185307179586), 1e-5);
}

TEST(kxOptimizeTest, LeavesAHoleOpenThatABridgeLeadsTo)
{
    // A square of side 4 with a square hole of side 2, as one ring that passes the bridge twice.
    const auto geometry = polygon(
        {{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}, {0, 0, 0}, {1, 1, 0}, {1, 3, 0}, {3, 3, 0}, {3, 1, 0}, {1, 1, 0}});

    EXPECT_TRUE(kxOptimize::triangulate(geometry.get(), false));

    const std::vector<double> found = areas(*geometry);
    EXPECT_EQ(found.size(), 8U);
    EXPECT_TRUE(std::all_of(found.begin(), found.end(), [](double area) { return area >= 0.0; }));
    EXPECT_NEAR(sum(found), 12.0, 1e-6);
}

TEST(kxOptimizeTest, WorksInAnyPlane)
{
    for (std::size_t axis = 0; axis < 3; ++axis) {
        Points arrow{{0, 0, 0}, {2, 0, 0}, {0.5F, 0.5F, 0}, {0, 2, 0}};
        for (osg::Vec3f &point : arrow)
            point = {point[axis], point[(axis + 1) % 3], point[(axis + 2) % 3]};
        const auto geometry = polygon(arrow);

        EXPECT_TRUE(kxOptimize::triangulate(geometry.get(), false));

        const std::vector<std::uint32_t> indices(geometry->getIndices().begin(), geometry->getIndices().end());
        ASSERT_EQ(indices.size(), 6U);
        // The notch lies on the cut.
        EXPECT_EQ(std::count(indices.begin(), indices.end(), 2U), 2) << axis;
        EXPECT_EQ(std::count(indices.begin(), indices.end(), 0U), 2) << axis;
    }
}

TEST(kxOptimizeTest, EndsOnWhatHasNoArea)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (const Points &points :
         {Points{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {4, 0, 0}},
          Points{{1, 1, 1}, {1, 1, 1}, {1, 1, 1}, {1, 1, 1}}, Points{{0, 0, 0}, {1, 1, 0}, {1, 0, 0}, {0, 1, 0}},
          Points{{nan, 0, 0}, {1, nan, 0}, {1, 0, nan}, {0, 1, 0}}}) {
        const auto geometry = polygon(points);
        EXPECT_TRUE(kxOptimize::triangulate(geometry.get(), false));
        EXPECT_EQ(geometry->getIndices().size(), 3 * (points.size() - 2));
        EXPECT_TRUE(geometry->isValid());
    }
}

TEST(kxOptimizeTest, DropsPointsAndLines)
{
    const auto geometry = mesh({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}, {{0}, {0, 1}, {0, 1, 2}});
    EXPECT_TRUE(kxGeometryBuffer::needsTriangulation(nullptr, geometry.get()));

    EXPECT_TRUE(kxOptimize::triangulate(geometry.get(), false));

    EXPECT_EQ(geometry->getIndices().size(), 3U);
}

TEST(kxOptimizeTest, RefusesWhatItCannotCut)
{
    const auto broken = mesh({{0, 0, 0}}, {{0, 1, 2, 3}});

    EXPECT_FALSE(kxOptimize::triangulate(broken.get(), false));
    EXPECT_EQ(broken->getIndices().size(), 4U);
    EXPECT_FALSE(kxOptimize::triangulate(nullptr, false));
    EXPECT_FALSE(kxGeometryBuffer::needsTriangulation(nullptr, nullptr));
}

} // namespace
