// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/FieldNumbers.h"

#include <algorithm>
#include <cmath>
#include <limits>

using osg::FieldValue;

namespace {

constexpr double Degrees = 180.0 / 3.14159265358979323846;

/// About X, then Y, then Z.
osg::Vec3d anglesOf(const osg::Quaternion &q)
{
    const double sine = std::clamp(2.0 * (q.w * q.y - q.z * q.x), -1.0, 1.0);
    if (std::abs(sine) > 1.0 - 1e-12) // X and Z turn about the same axis: all goes to X
        return {{2.0 * std::atan2(q.x, q.w) * Degrees, std::copysign(90.0, sine), 0.0}};
    return {{std::atan2(2.0 * (q.w * q.x + q.y * q.z), 1.0 - 2.0 * (q.x * q.x + q.y * q.y)) * Degrees,
             std::asin(sine) * Degrees,
             std::atan2(2.0 * (q.w * q.z + q.x * q.y), 1.0 - 2.0 * (q.y * q.y + q.z * q.z)) * Degrees}};
}

osg::Quaternion quaternionOf(const osg::Vec3d &angles)
{
    const auto half = [&angles](std::size_t i) { return angles[i] / Degrees / 2.0; };
    const double cx = std::cos(half(0)), sx = std::sin(half(0));
    const double cy = std::cos(half(1)), sy = std::sin(half(1));
    const double cz = std::cos(half(2)), sz = std::sin(half(2));
    return {sx * cy * cz - cx * sy * sz, cx * sy * cz + sx * cy * sz, cx * cy * sz - sx * sy * cz,
            cx * cy * cz + sx * sy * sz};
}

template <class T, std::size_t N> void read(const osg::Vec<T, N> &value, double /*unit*/, std::vector<double> &numbers)
{
    numbers.assign(value.values.begin(), value.values.end());
}

void read(const osg::Quaternion &value, double /*unit*/, std::vector<double> &numbers)
{
    const osg::Vec3d angles = anglesOf(value);
    numbers.assign(angles.values.begin(), angles.values.end());
}

void read(const osg::Matrix &value, double unit, std::vector<double> &numbers)
{
    const osg::Decomposition parts = osg::decompose(value);
    std::vector<double> angles;
    read(parts.rotation, unit, angles);
    numbers.assign(parts.translation.values.begin(), parts.translation.values.end());
    numbers.insert(numbers.end(), angles.begin(), angles.end());
    numbers.insert(numbers.end(), parts.scale.values.begin(), parts.scale.values.end());
}

template <class T> void read(const T &value, double unit, std::vector<double> &numbers)
{
    if constexpr (std::is_arithmetic_v<T> && !std::is_same_v<T, bool>)
        numbers.assign(1, static_cast<double>(value) * unit);
}

template <class T, std::size_t N> void write(osg::Vec<T, N> &value, std::size_t place, double number, double /*unit*/)
{
    value[place] = static_cast<T>(number);
}

void write(osg::Quaternion &value, std::size_t place, double number, double /*unit*/)
{
    osg::Vec3d angles = anglesOf(value);
    angles[place] = number;
    value = quaternionOf(angles);
}

void write(osg::Matrix &value, std::size_t place, double number, double unit)
{
    osg::Decomposition parts = osg::decompose(value);
    if (place < 3)
        parts.translation[place] = number;
    else if (place < 6)
        write(parts.rotation, place - 3, number, unit);
    else
        parts.scale[place - 6] = number;
    value = osg::composeMatrix(parts.translation, parts.rotation, parts.scale);
}

template <class T> void write(T &value, std::size_t /*place*/, double number, double unit)
{
    if constexpr (std::is_floating_point_v<T>)
        value = static_cast<T>(number / unit);
    else if constexpr (std::is_integral_v<T> && !std::is_same_v<T, bool>)
        value = static_cast<T>(std::clamp(std::round(number), static_cast<double>(std::numeric_limits<T>::min()),
                                          std::min(9e15, static_cast<double>(std::numeric_limits<T>::max()))));
}

} // namespace

std::vector<double> FieldNumbers::of(const FieldValue &value, bool isAngle)
{
    std::vector<double> numbers;
    std::visit([&](const auto &content) { read(content, isAngle ? Degrees : 1.0, numbers); }, value.content());
    return numbers;
}

FieldValue FieldNumbers::with(const FieldValue &value, std::size_t place, double number, bool isAngle)
{
    return std::visit(
        [&](auto content) {
            write(content, place, number, isAngle ? Degrees : 1.0);
            return FieldValue(content);
        },
        value.content());
}
