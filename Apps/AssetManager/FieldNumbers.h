// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/FieldValue.h"

#include <vector>

/// A value as the numbers that people edit: the parts of a vector, a rotation as degrees about X, Y and Z, a placement as
/// translation, rotation and scale.
class FieldNumbers
{
public:
    FieldNumbers() = delete;

    /// Empty for what is not made of a few numbers.
    static std::vector<double> of(const osg::FieldValue &value, bool isAngle);
    /// The value with another number in this place. Expects a place that there is.
    static osg::FieldValue with(const osg::FieldValue &value, std::size_t place, double number, bool isAngle);
};
