// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/Internal/Vector.h"

namespace kxRender {

/// The GGX distribution of micro-facet normals, its two widths along the tangents.
struct Ggx
{
    float alphaX;
    float alphaY;

    float density(V3 h) const
    {
        // Multiplied out, so that there is a single division.
        const float area = alphaX * alphaY;
        const float x = h.x * alphaY;
        const float y = h.y * alphaX;
        const float z = h.z * area;
        const float s = x * x + y * y + z * z;
        return area * area * area / (Pi * s * s);
    }
    float lambda(V3 v) const
    {
        const float z2 = v.z * v.z;
        if (z2 <= 0.0F)
            return 1e6F;
        const float a2 = (alphaX * alphaX * v.x * v.x + alphaY * alphaY * v.y * v.y) / z2;
        return 0.5F * (std::sqrt(1.0F + a2) - 1.0F);
    }
    float visible(V3 v) const { return 1.0F / (1.0F + lambda(v)); }
    float visible(V3 v, V3 l) const { return 1.0F / (1.0F + lambda(v) + lambda(l)); }

    /// A normal in proportion to how much of it \a v sees. Heitz, "Sampling the GGX Distribution of Visible Normals",
    /// JCGT 7(4), 2018. Expects v.z > 0.
    V3 sampleVisible(V3 v, float u1, float u2) const
    {
        const V3 stretched = normalize({alphaX * v.x, alphaY * v.y, v.z});
        const float planar = stretched.x * stretched.x + stretched.y * stretched.y;
        const V3 t1 = planar > 1e-12F ? V3{-stretched.y, stretched.x, 0.0F} / std::sqrt(planar) : V3{1.0F, 0.0F, 0.0F};
        const V3 t2 = cross(stretched, t1);
        const float r = std::sqrt(u1);
        const auto [cosine, sine] = turned(u2);
        const float p1 = r * cosine;
        const float s = 0.5F * (1.0F + stretched.z);
        const float p2 = (1.0F - s) * std::sqrt(std::max(0.0F, 1.0F - p1 * p1)) + s * r * sine;
        const V3 n = t1 * p1 + t2 * p2 + stretched * std::sqrt(std::max(0.0F, 1.0F - p1 * p1 - p2 * p2));
        return normalize({alphaX * n.x, alphaY * n.y, std::max(1e-6F, n.z)});
    }
    float visibleDensity(V3 v, V3 h) const { return visible(v) * std::max(0.0F, dot(v, h)) * density(h) / v.z; }
};

} // namespace kxRender
