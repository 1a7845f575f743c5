// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/Internal/Ggx.h"
#include "Rendering/Internal/Surface.h"

#include <utility>

namespace kxRender {

/// How a surface point scatters light. Directions are local and unit, and point away from the surface; the viewer is at
/// z > 0, outside of a body or within it.
///
/// From the top: a clear coat, a sheen, a GGX reflection, and below it diffuse scattering; mixed by its transparency with
/// a rough dielectric boundary. Each layer takes what it reflects from those below, so that no light is gained. GGX after
/// Walter et al. 2007; the light that single scattering loses is given back after Turquin 2019.
class Bsdf
{
public:
    struct Sample
    {
        V3 direction;
        V3 weight;        ///< value times cosine, divided by the density
        float pdf = 0.0F; ///< per solid angle; 0: there is no direction
    };

    /// \a point has to live as long. \a isInside: the viewer is within the body, so that refraction leads out.
    Bsdf(const SurfacePoint &point, V3 toViewer, bool isInside);

    /// The value times the absolute cosine, and the density with which sample() chooses the direction.
    std::pair<V3, float> evaluate(V3 toLight) const;
    Sample sample(float lobe, float u, float v) const;

private:
    V3 chooseDirection(float lobe, float u, float v) const;
    V3 chooseThroughGlass(float lobe, float u, float v) const;
    std::pair<V3, float> evaluateOpaque(V3 l) const;
    std::pair<V3, float> evaluateGlass(V3 l) const;

    const SurfacePoint &_p;
    V3 _v;
    Ggx _ggx;
    Ggx _coatGgx;
    float _eta; ///< the index on the viewer's side divided by that on the other
    float _glass;
    V3 _f0;
    float _f90 = 1.0F;
    V3 _gain;
    V3 _diffuse;
    float _lambda; ///< the masking of the viewer's direction, and that of the coat
    float _coatLambda = 0.0F;
    float _sheen = 0.0F;
    float _underCoat = 1.0F;
    float _coatShare = 0.0F; ///< probabilities of the opaque lobes; the rest is diffuse
    float _specularShare = 0.0F;
};

/// The unpolarised reflectance of a smooth boundary. \a eta is the index on the light's side divided by the other.
float fresnelDielectric(float cosine, float eta);

} // namespace kxRender
