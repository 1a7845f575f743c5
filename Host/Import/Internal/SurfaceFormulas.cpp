// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/SurfaceFormulas.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace kximport {

namespace {

constexpr float DielectricReflection = 0.04F;
constexpr float Tiny = 1e-6F;

/// ITU-R BT.601 weights on squares, as in the published example.
float perceivedBrightness(const osg::Color4f &c)
{
    return std::sqrt(0.299F * c[0] * c[0] + 0.587F * c[1] * c[1] + 0.114F * c[2] * c[2]);
}

float solveMetalness(float diffuse, float specular, float oneMinusSpecular)
{
    if (specular < DielectricReflection)
        return 0.0F;
    const float a = DielectricReflection;
    const float b = diffuse * oneMinusSpecular / (1.0F - DielectricReflection) + specular - 2.0F * DielectricReflection;
    const float c = DielectricReflection - specular;
    const float discriminant = std::max(b * b - 4.0F * a * c, 0.0F);
    return std::clamp((-b + std::sqrt(discriminant)) / (2.0F * a), 0.0F, 1.0F);
}

} // namespace

float roughnessFromExponent(float exponent)
{
    if (!(exponent > 0.0F))
        return 1.0F;
    return std::sqrt(std::sqrt(2.0F / (exponent + 2.0F)));
}

MetalShare metalShare(const osg::Color4f &diffuse, const osg::Color4f &specular)
{
    const float strength = std::max({specular[0], specular[1], specular[2]});
    const float oneMinusSpecular = 1.0F - std::min(strength, 1.0F);
    const float metalness =
        solveMetalness(perceivedBrightness(diffuse), perceivedBrightness(specular), oneMinusSpecular);

    MetalShare share{diffuse, metalness};
    for (std::size_t i = 0; i < 3; ++i) {
        const float fromDiffuse =
            diffuse[i] * oneMinusSpecular / (1.0F - DielectricReflection) / std::max(1.0F - metalness, Tiny);
        const float fromSpecular =
            (specular[i] - DielectricReflection * (1.0F - metalness)) / std::max(metalness, Tiny);
        const float mix = metalness * metalness;
        share.baseColor[i] = std::clamp(fromDiffuse + (fromSpecular - fromDiffuse) * mix, 0.0F, 1.0F);
    }
    return share;
}

float linearFromSrgb(float encoded)
{
    if (encoded <= 0.04045F)
        return encoded / 12.92F;
    return std::pow((encoded + 0.055F) / 1.055F, 2.4F);
}

} // namespace kximport
