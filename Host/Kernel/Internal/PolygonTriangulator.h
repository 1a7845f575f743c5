// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/VectorTypes.h"

#include <cstdint>
#include <vector>

namespace kxKernelInternal {

/// Cuts polygons into triangles by clipping ears, in the plane that fits the polygon best.
///
/// Any polygon with n corners becomes n - 2 triangles of the same winding. Concave ones are filled exactly; holes are those
/// of a ring that runs along a bridge twice. What has no area, crosses itself or is no number still becomes triangles of
/// its own corners.
class PolygonTriangulator
{
public:
    /// Appends three of \a corners for each triangle. Fewer than three corners give none. Positions are looked up by corner;
    /// expects that all are in range.
    void triangulate(const std::vector<std::uint32_t> &corners, const std::vector<osg::Vec3f> &positions,
                     std::vector<std::uint32_t> &triangles);

private:
    struct Point
    {
        double x = 0.0;
        double y = 0.0;
    };

    static double area(const Point &a, const Point &b, const Point &c);
    void project(const std::vector<std::uint32_t> &corners, const std::vector<osg::Vec3f> &positions);
    bool isEar(const std::vector<std::size_t> &ring, std::size_t at) const;
    std::size_t bestEar(const std::vector<std::size_t> &ring, std::size_t start) const;

    std::vector<Point> _points; ///< of the corners, so that the polygon winds to the left
};

} // namespace kxKernelInternal
