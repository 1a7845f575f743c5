// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/Internal/Vector.h"
#include "SceneGraph/USkyEnvironmentMaterial.h"

#include <array>

namespace kxRender {

/// The radiance of a clear day sky after Preetham, Shirley and Smits, "A Practical Analytic Model for Daylight", 1999,
/// scaled so that the zenith at medium height of the sun has a radiance of about 1; below the horizon a plain ground.
class Sky
{
public:
    explicit Sky(const osg::USkyEnvironmentMaterial &material);

    V3 radiance(V3 direction) const;

private:
    using Perez = std::array<float, 5>;

    static float perez(const Perez &c, float cosTheta, float gamma);

    V3 _sun;
    float _sunTheta;
    float _sunCosine; ///< of the disc's angular radius
    V3 _sunRadiance;
    V3 _ground;
    std::array<Perez, 3> _coefficients; ///< Y, x, y
    std::array<float, 3> _zenith;
};

} // namespace kxRender
