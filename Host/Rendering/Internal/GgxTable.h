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

/// The place of a lobe's width in the table, found once for many directions.
class GgxWidth
{
public:
    GgxWidth() = default;
    explicit GgxWidth(float alpha);

    bool isKnown() const { return _low != nullptr; }
    /// Expects that it is known. \a cosine: of the direction and the normal, between 0 and 1.
    GgxAlbedo albedo(float cosine) const;

private:
    const GgxAlbedo *_low = nullptr; ///< of the width below; those of the one above follow
    float _share = 0.0F;             ///< of the one above
};

} // namespace kxRender
