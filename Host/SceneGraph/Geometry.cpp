// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Geometry.h"

#include <algorithm>

namespace osg {

OSG_CONTAINER_SOURCE(Geometry)

Volume Geometry::getVolume() const
{
    Volume volume;
    for (const Vec3f &p : getPositions())
        volume.extend({p[0], p[1], p[2]});
    return volume;
}

std::size_t Geometry::getFaceCount() const
{
    return getFaceSizes().empty() ? getIndices().size() / 3 : getFaceSizes().size();
}

bool Geometry::isValid() const
{
    const std::size_t count = getPositions().size();
    const auto fits = [count](std::size_t size) { return size == 0 || size == count; };
    if (!fits(getNormals().size()) || !fits(getTexCoords().size()) || !fits(getColors().size()))
        return false;
    const auto &indices = getIndices();
    // The largest of all rather than the first bad one: without an early exit the loop takes many at a time.
    std::uint32_t largest = 0;
    for (const std::uint32_t index : indices)
        largest = std::max(largest, index);
    if (!indices.empty() && largest >= count)
        return false;
    if (getFaceSizes().empty())
        return indices.size() % 3 == 0;
    std::uint64_t corners = 0;
    for (const std::uint32_t size : getFaceSizes())
        corners += size;
    return corners == indices.size();
}

} // namespace osg
