// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>

namespace osg {

/// A plain tuple of N numbers; compares component by component, bit for bit as far as the numbers' own operator does.
template <class T, std::size_t N> struct Vec
{
    std::array<T, N> values{};

    constexpr T &operator[](std::size_t i) { return values[i]; }
    constexpr const T &operator[](std::size_t i) const { return values[i]; }
    friend constexpr bool operator==(const Vec &, const Vec &) = default;
};

using Vec2f = Vec<float, 2>;
using Vec3f = Vec<float, 3>;
using Vec4f = Vec<float, 4>;
using Vec3d = Vec<double, 3>;

/// Red, green, blue and alpha; linear light unless a field says otherwise.
using Color4f = Vec4f;

/// A rotation as (x, y, z, w); the identity is (0, 0, 0, 1).
struct Quaternion
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double w = 1.0;

    friend constexpr bool operator==(const Quaternion &, const Quaternion &) = default;
};

} // namespace osg
