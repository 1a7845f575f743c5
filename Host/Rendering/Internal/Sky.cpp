// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/Sky.h"

namespace kxRender {

namespace {

constexpr float LuminanceScale = 0.05F; // kcd/m2 to the renderer's units
constexpr float MinHorizon = 0.01F;     // the model is not defined at the horizon itself

V3 fromChromaticity(float luminanceY, float x, float y)
{
    const float capitalX = y > 0.0F ? x / y * luminanceY : 0.0F;
    const float capitalZ = y > 0.0F ? (1.0F - x - y) / y * luminanceY : 0.0F;
    // CIE XYZ to linear Rec. 709.
    return {std::max(0.0F, 3.2406F * capitalX - 1.5372F * luminanceY - 0.4986F * capitalZ),
            std::max(0.0F, -0.9689F * capitalX + 1.8758F * luminanceY + 0.0415F * capitalZ),
            std::max(0.0F, 0.0557F * capitalX - 0.2040F * luminanceY + 1.0570F * capitalZ)};
}

float finiteOr(float value, float fallback)
{
    return std::isfinite(value) ? value : fallback;
}

/// Zenith chromaticity: a polynomial in turbidity and the sun's angle.
float zenithChromaticity(const std::array<std::array<float, 4>, 3> &m, float turbidity, float theta)
{
    const std::array<float, 3> t{turbidity * turbidity, turbidity, 1.0F};
    float sum = 0.0F;
    for (std::size_t i = 0; i < 3; ++i)
        sum += t[i] * (((m[i][0] * theta + m[i][1]) * theta + m[i][2]) * theta + m[i][3]);
    return sum;
}

} // namespace

Sky::Sky(const osg::USkyEnvironmentMaterial &material)
{
    const osg::Vec3f sun = material.getSunDirection();
    const V3 wanted{finiteOr(sun[0], 0.0F), finiteOr(sun[1], 1.0F), finiteOr(sun[2], 0.0F)};
    _sun = length(wanted) > 0.0F ? normalize(wanted) : V3{0.0F, 1.0F, 0.0F};
    const float t = std::clamp(finiteOr(material.getTurbidity(), 3.0F), 1.7F, 10.0F);
    // With the sun below the horizon the sky stays that of sunset, and gets darker.
    _sunTheta = std::acos(std::clamp(_sun.y, MinHorizon, 1.0F));
    const float night = clamp01(1.0F + 4.0F * std::min(_sun.y, 0.0F));

    _coefficients = {Perez{0.1787F * t - 1.4630F, -0.3554F * t + 0.4275F, -0.0227F * t + 5.3251F, 0.1206F * t - 2.5771F,
                           -0.0670F * t + 0.3703F},
                     Perez{-0.0193F * t - 0.2592F, -0.0665F * t + 0.0008F, -0.0004F * t + 0.2125F,
                           -0.0641F * t - 0.8989F, -0.0033F * t + 0.0452F},
                     Perez{-0.0167F * t - 0.2608F, -0.0950F * t + 0.0092F, -0.0079F * t + 0.2102F,
                           -0.0441F * t - 1.6537F, -0.0109F * t + 0.0529F}};
    const float chi = (4.0F / 9.0F - t / 120.0F) * (Pi - 2.0F * _sunTheta);
    _zenith = {std::max(0.0F, (4.0453F * t - 4.9710F) * std::tan(chi) - 0.2155F * t + 2.4192F) * LuminanceScale * night,
               zenithChromaticity({{{0.00166F, -0.00375F, 0.00209F, 0.0F},
                                    {-0.02903F, 0.06377F, -0.03202F, 0.00394F},
                                    {0.11693F, -0.21196F, 0.06052F, 0.25886F}}},
                                  t, _sunTheta),
               zenithChromaticity({{{0.00275F, -0.00610F, 0.00317F, 0.0F},
                                    {-0.04214F, 0.08970F, -0.04153F, 0.00516F},
                                    {0.15346F, -0.26756F, 0.06670F, 0.26688F}}},
                                  t, _sunTheta)};

    // Seen from earth the sun's radius is 0.267 degrees; the map's pixels are wider, so that a larger, dimmer disc with
    // the same light stands for it.
    const float size = std::clamp(finiteOr(material.getSunSize(), 1.0F), 0.0F, 20.0F);
    const float radius = std::max(0.02F, 0.00466F * size);
    _sunCosine = std::cos(radius);
    const float strength =
        size > 0.0F && _sun.y > -radius ? 0.9F / (radius * radius) * clamp01(4.0F * _sun.y + 0.2F) : 0.0F;
    const float redness = clamp01(1.0F - 2.5F * _sun.y);
    _sunRadiance = mix(V3{1.0F, 0.95F, 0.86F}, V3{1.0F, 0.55F, 0.22F}, redness) * strength;
    const osg::Color4f ground = material.getGroundColor();
    _ground = V3{clamp01(ground[0]), clamp01(ground[1]), clamp01(ground[2])} * (0.3F + 0.7F * clamp01(_sun.y)) * night;
}

float Sky::perez(const Perez &c, float cosTheta, float gamma)
{
    const float cosGamma = std::cos(gamma);
    return (1.0F + c[0] * std::exp(c[1] / cosTheta)) *
           (1.0F + c[2] * std::exp(c[3] * gamma) + c[4] * cosGamma * cosGamma);
}

V3 Sky::radiance(V3 direction) const
{
    if (direction.y < 0.0F)
        return _ground;
    const float cosTheta = std::max(direction.y, MinHorizon);
    const float cosine = std::clamp(dot(direction, _sun), -1.0F, 1.0F);
    const float gamma = std::acos(cosine);
    std::array<float, 3> value{};
    for (std::size_t i = 0; i < 3; ++i)
        value[i] = _zenith[i] * perez(_coefficients[i], cosTheta, gamma) / perez(_coefficients[i], 1.0F, _sunTheta);
    const V3 sky = fromChromaticity(std::max(0.0F, value[0]), value[1], value[2]);
    return cosine > _sunCosine ? sky + _sunRadiance : sky;
}

} // namespace kxRender
