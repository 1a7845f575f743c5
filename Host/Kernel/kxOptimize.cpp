// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxOptimize.h"

#include "Kernel/Internal/PolygonTriangulator.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/EditCP.h"

bool kxOptimize::triangulate(const osg::GeometryPtr &geometry, bool announce)
{
    if (!geometry || !geometry->isValid())
        return false;
    if (geometry->getFaceSizes().empty())
        return true;
    const std::vector<osg::Vec3f> positions(geometry->getPositions().begin(), geometry->getPositions().end());
    const auto &indices = geometry->getIndices();
    std::vector<std::uint32_t> triangles;
    std::vector<std::uint32_t> corners;
    kxKernelInternal::PolygonTriangulator triangulator;
    std::size_t first = 0;
    for (const std::uint32_t size : geometry->getFaceSizes()) {
        const auto begin = indices.begin() + static_cast<std::ptrdiff_t>(first);
        corners.assign(begin, begin + size);
        triangulator.triangulate(corners, positions, triangles);
        first += size;
    }
    {
        const osg::CPEditor edit(geometry, osg::Geometry::IndicesFieldMask | osg::Geometry::FaceSizesFieldMask);
        geometry->editIndices() = triangles;
        geometry->editFaceSizes().clear();
    }
    if (announce)
        kxScenegraph::update(false);
    return true;
}
