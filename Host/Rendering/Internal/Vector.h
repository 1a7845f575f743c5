// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cmath>

namespace kxRender {

inline constexpr float Pi = 3.14159265358979323846F;

/// Three numbers in single precision: a point, a direction or a colour in linear light.
struct V3
{
    float x = 0.0F;
    float y = 0.0F;
    float z = 0.0F;
};

inline V3 operator+(V3 a, V3 b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline V3 operator-(V3 a, V3 b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline V3 operator-(V3 a)
{
    return {-a.x, -a.y, -a.z};
}
inline V3 operator*(V3 a, V3 b)
{
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}
inline V3 operator*(V3 a, float s)
{
    return {a.x * s, a.y * s, a.z * s};
}
inline V3 operator*(float s, V3 a)
{
    return a * s;
}
inline V3 operator/(V3 a, float s)
{
    return a * (1.0F / s);
}
inline V3 &operator+=(V3 &a, V3 b)
{
    return a = a + b;
}
inline V3 &operator*=(V3 &a, V3 b)
{
    return a = a * b;
}
inline V3 &operator*=(V3 &a, float s)
{
    return a = a * s;
}

inline float dot(V3 a, V3 b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline V3 cross(V3 a, V3 b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline float length(V3 a)
{
    return std::sqrt(dot(a, a));
}
inline V3 normalize(V3 a)
{
    const float l = length(a);
    return l > 0.0F ? a / l : V3{0.0F, 0.0F, 1.0F};
}
inline float maxOf(V3 a)
{
    return std::max(a.x, std::max(a.y, a.z));
}
inline V3 mix(V3 a, V3 b, float t)
{
    return a * (1.0F - t) + b * t;
}
inline float mix(float a, float b, float t)
{
    return a + (b - a) * t;
}
/// Relative luminance of linear Rec. 709 primaries.
inline float luminance(V3 c)
{
    return 0.2126F * c.x + 0.7152F * c.y + 0.0722F * c.z;
}
/// 0 for what is no number.
inline float clamp01(float v)
{
    return v > 0.0F ? std::min(v, 1.0F) : 0.0F;
}
inline bool isFinite(V3 a)
{
    return std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(a.z);
}

/// An orthonormal frame; z is the normal.
struct Frame
{
    V3 x;
    V3 y;
    V3 z;

    V3 toLocal(V3 v) const { return {dot(v, x), dot(v, y), dot(v, z)}; }
    V3 toWorld(V3 v) const { return x * v.x + y * v.y + z * v.z; }
};

/// Duff et al., "Building an Orthonormal Basis, Revisited", JCGT 6(1), 2017.
inline Frame frameAround(V3 n)
{
    const float sign = std::copysign(1.0F, n.z);
    const float a = -1.0F / (sign + n.z);
    const float b = n.x * n.y * a;
    return {{1.0F + sign * n.x * n.x * a, sign * b, -sign * n.x}, {b, sign + n.y * n.y * a, -n.y}, n};
}

} // namespace kxRender
