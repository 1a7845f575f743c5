// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Volume.h"

#include <algorithm>

namespace osg {

Vec3d Volume::center() const
{
    return {(_min[0] + _max[0]) / 2, (_min[1] + _max[1]) / 2, (_min[2] + _max[2]) / 2};
}

Vec3d Volume::size() const
{
    if (isEmpty())
        return {};
    return {_max[0] - _min[0], _max[1] - _min[1], _max[2] - _min[2]};
}

void Volume::extend(const Vec3d &point)
{
    for (std::size_t i = 0; i < 3; ++i) {
        _min[i] = std::min(_min[i], point[i]);
        _max[i] = std::max(_max[i], point[i]);
    }
}

void Volume::extend(const Volume &other)
{
    if (other.isEmpty())
        return;
    extend(other._min);
    extend(other._max);
}

Volume Volume::transformed(const Matrix &m) const
{
    Volume result;
    if (isEmpty())
        return result;
    for (unsigned corner = 0; corner < 8; ++corner)
        result.extend(transformPoint(m, {(corner & 1U) != 0 ? _max[0] : _min[0], (corner & 2U) != 0 ? _max[1] : _min[1],
                                         (corner & 4U) != 0 ? _max[2] : _min[2]}));
    return result;
}

} // namespace osg
