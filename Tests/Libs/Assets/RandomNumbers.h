// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Matrix.h"

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

/// Numbers that are the same for the same seed, with every compiler.
class RandomNumbers
{
public:
    explicit RandomNumbers(std::uint32_t seed) : _engine(seed) {}

    /// 0 to \a count - 1. Expects a count above 0.
    std::size_t below(std::size_t count) { return _engine() % count; }
    bool oneIn(std::size_t count) { return below(count) == 0; }
    /// -2 to 2 in steps of a thousandth.
    double number() { return static_cast<double>(below(4001)) / 1000.0 - 2.0; }
    float share() { return static_cast<float>(below(1001)) / 1000.0F; }
    osg::Vec3d vector() { return {number(), number(), number()}; }
    osg::Quaternion rotation();
    /// Rotated and scaled, mirrored, sheared, or flat and so without an inverse.
    osg::Matrix placement();

    /// Expects entries.
    template <class T> const T &of(const std::vector<T> &entries) { return entries[below(entries.size())]; }

private:
    std::mt19937 _engine;
};
