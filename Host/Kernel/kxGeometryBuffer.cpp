// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxGeometryBuffer.h"

#include <algorithm>

bool kxGeometryBuffer::needsTriangulation(const osg::NodePtr & /*node*/, const osg::GeometryPtr &geometry)
{
    return geometry && std::any_of(geometry->getFaceSizes().begin(), geometry->getFaceSizes().end(),
                                   [](std::uint32_t corners) { return corners != 3; });
}
