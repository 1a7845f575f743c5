// SPDX-License-Identifier: Apache-2.0
#include "Kernel/Internal/PolygonTriangulator.h"

#include <cmath>
#include <numeric>

namespace kxKernelInternal {

double PolygonTriangulator::area(const Point &a, const Point &b, const Point &c)
{
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

/// Drops the axis along which the polygon's area is greatest; its normal after Newell.
void PolygonTriangulator::project(const std::vector<std::uint32_t> &corners, const std::vector<osg::Vec3f> &positions)
{
    double normal[3] = {0.0, 0.0, 0.0};
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const osg::Vec3f &p = positions[corners[i]];
        const osg::Vec3f &q = positions[corners[(i + 1) % corners.size()]];
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const std::size_t u = (axis + 1) % 3;
            const std::size_t v = (axis + 2) % 3;
            normal[axis] += (static_cast<double>(p[u]) - static_cast<double>(q[u])) *
                            (static_cast<double>(p[v]) + static_cast<double>(q[v]));
        }
    }
    std::size_t dropped = 0;
    for (std::size_t axis = 1; axis < 3; ++axis)
        if (std::abs(normal[axis]) > std::abs(normal[dropped]))
            dropped = axis;
    const std::size_t u = (dropped + 1) % 3;
    const std::size_t v = (dropped + 2) % 3;
    const double sign = normal[dropped] < 0.0 ? -1.0 : 1.0;
    _points.clear();
    for (const std::uint32_t corner : corners)
        _points.push_back(
            {sign * static_cast<double>(positions[corner][u]), static_cast<double>(positions[corner][v])});
}

bool PolygonTriangulator::isEar(const std::vector<std::size_t> &ring, std::size_t at) const
{
    const std::size_t count = ring.size();
    const std::size_t before = (at + count - 1) % count;
    const std::size_t after = (at + 1) % count;
    const Point &a = _points[ring[before]];
    const Point &b = _points[ring[at]];
    const Point &c = _points[ring[after]];
    if (!(area(a, b, c) > 0.0))
        return false;
    for (std::size_t i = 0; i < count; ++i) {
        const Point &p = _points[ring[i]];
        if (i == before || i == at || i == after || (p.x == a.x && p.y == a.y) || (p.x == b.x && p.y == b.y) ||
            (p.x == c.x && p.y == c.y)) // bridges to holes pass the same place twice
            continue;
        if (area(a, b, p) >= 0.0 && area(b, c, p) >= 0.0 && area(c, a, p) >= 0.0)
            return false;
    }
    return true;
}

/// An ear, or where there is none a corner that adds no area, or any.
std::size_t PolygonTriangulator::bestEar(const std::vector<std::size_t> &ring, std::size_t start) const
{
    const std::size_t count = ring.size();
    for (std::size_t i = 0; i < count; ++i)
        if (isEar(ring, (start + i) % count))
            return (start + i) % count;
    for (std::size_t i = 0; i < count; ++i)
        if (area(_points[ring[(i + count - 1) % count]], _points[ring[i]], _points[ring[(i + 1) % count]]) == 0.0)
            return i;
    return start % count;
}

void PolygonTriangulator::triangulate(const std::vector<std::uint32_t> &corners,
                                      const std::vector<osg::Vec3f> &positions, std::vector<std::uint32_t> &triangles)
{
    if (corners.size() < 3)
        return;
    project(corners, positions);
    std::vector<std::size_t> ring(corners.size());
    std::iota(ring.begin(), ring.end(), std::size_t{0});
    std::size_t at = 0;
    while (ring.size() > 3) {
        at = bestEar(ring, at);
        const std::size_t count = ring.size();
        for (const std::size_t i : {(at + count - 1) % count, at, (at + 1) % count})
            triangles.push_back(corners[ring[i]]);
        ring.erase(ring.begin() + static_cast<std::ptrdiff_t>(at));
    }
    for (const std::size_t i : ring)
        triangles.push_back(corners[i]);
}

} // namespace kxKernelInternal
