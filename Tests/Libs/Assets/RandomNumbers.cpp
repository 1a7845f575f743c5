// SPDX-License-Identifier: Apache-2.0
#include "RandomNumbers.h"

#include <cmath>

osg::Quaternion RandomNumbers::rotation()
{
    const double x = number();
    const double y = number();
    const double z = number();
    const double w = 0.1 + std::abs(number());
    const double length = std::sqrt(x * x + y * y + z * z + w * w);
    return {x / length, y / length, z / length, w / length};
}

osg::Matrix RandomNumbers::placement()
{
    const osg::Vec3d translation = vector();
    const osg::Quaternion turn = rotation();
    osg::Matrix matrix = osg::composeMatrix(translation, turn, vector()); // a negative scale mirrors
    if (oneIn(3))
        matrix.at(0, 1) += number();
    if (oneIn(5))
        for (std::size_t row = 0; row < 3; ++row)
            matrix.at(row, 2) = 0.0;
    return matrix;
}
