// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Matrix.h"
#include "SceneGraph/VectorTypes.h"

#include <limits>

namespace osg {

/// An axis-aligned box; empty until something is put into it.
class KX_SCENEGRAPH_EXPORT Volume
{
public:
    bool isEmpty() const { return !(_min[0] <= _max[0]); }
    const Vec3d &min() const { return _min; }
    const Vec3d &max() const { return _max; }
    Vec3d center() const;
    Vec3d size() const;

    void extend(const Vec3d &point);
    void extend(const Volume &other);
    /// The box around this one's eight corners mapped by \a m.
    Volume transformed(const Matrix &m) const;

private:
    static constexpr double Far = std::numeric_limits<double>::infinity();
    Vec3d _min{Far, Far, Far};
    Vec3d _max{-Far, -Far, -Far};
};

} // namespace osg
