// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

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

/// One of two numbers without a branch: what random numbers decide, no processor foresees.
inline float chosen(bool first, float a, float b)
{
    const std::uint32_t mask = first ? ~0U : 0U;
    return std::bit_cast<float>((std::bit_cast<std::uint32_t>(a) & mask) | (std::bit_cast<std::uint32_t>(b) & ~mask));
}

/// \a sign is the sign's bit, or 0.
inline float withFlippedSign(float v, std::uint32_t sign)
{
    return std::bit_cast<float>(std::bit_cast<std::uint32_t>(v) ^ sign);
}

/// Within 1e-6 of std::atan2, at a fraction of its time. Abramowitz and Stegun, "Handbook of Mathematical Functions",
/// 4.4.49.
inline float fastAtan2(float y, float x)
{
    const float ax = std::abs(x);
    const float ay = std::abs(y);
    const float high = std::max(ax, ay);
    const float t = high > 0.0F ? std::min(ax, ay) / high : 0.0F;
    const float s = t * t;
    float a = 0.0028662257F;
    a = a * s - 0.0161657367F;
    a = a * s + 0.0429096138F;
    a = a * s - 0.0752896400F;
    a = a * s + 0.1065626393F;
    a = a * s - 0.1420889944F;
    a = a * s + 0.1999355085F;
    a = a * s - 0.3333314528F;
    a = (a * s + 1.0F) * t;
    a = chosen(ay > ax, Pi / 2.0F - a, a);
    a = chosen(x < 0.0F, Pi - a, a);
    return std::copysign(a, y);
}

/// Cosine and sine of a whole turn's share between 0 and 1, within 1e-6: Taylor's series around the nearest quarter.
inline std::array<float, 2> turned(float share)
{
    const float quarters = share * 4.0F;
    const int quarter = static_cast<int>(quarters + 0.5F); // NOLINT(bugprone-incorrect-roundings): never negative
    const float x = (quarters - static_cast<float>(quarter)) * (Pi / 2.0F);
    const float s = x * x;
    const float sine = x * (1.0F + s * (-1.0F / 6 + s * (1.0F / 120 + s * (-1.0F / 5040))));
    const float cosine = 1.0F + s * (-0.5F + s * (1.0F / 24 + s * (-1.0F / 720 + s * (1.0F / 40320))));
    const auto turns = static_cast<std::uint32_t>(quarter);
    const bool isOdd = (turns & 1U) != 0;
    return {withFlippedSign(chosen(isOdd, sine, cosine), ((turns + 1U) & 2U) << 30U),
            withFlippedSign(chosen(isOdd, cosine, sine), (turns & 2U) << 30U)};
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
