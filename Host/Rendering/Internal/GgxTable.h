// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace kxRender {

/// What a GGX surface reflects by single scattering, in all directions together, after Schlick's approximation:
/// f0 x (white - grazing) + f90 x grazing.
struct GgxAlbedo
{
    float white;   ///< where every micro-facet is a perfect mirror
    float grazing; ///< where they reflect the fifth power of one less the cosine

    float of(float f0, float f90) const { return f0 * (white - grazing) + f90 * grazing; }
};

GgxAlbedo ggxAlbedo(float cosine, float alpha);

} // namespace kxRender
