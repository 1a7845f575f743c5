// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/GgxTable.h"

#include "Rendering/Internal/Ggx.h"
#include "Rendering/Internal/Sampler.h"

#include <array>

namespace kxRender {

namespace {

constexpr int Size = 32;
constexpr std::uint32_t Samples = 256;

/// Cosine and root of alpha along the axes: both where the albedo changes fastest.
struct Table
{
    std::array<GgxAlbedo, Size * Size> albedos;

    Table();
};

std::size_t indexOf(int cosine, int alpha)
{
    return static_cast<std::size_t>(alpha) * Size + static_cast<std::size_t>(cosine);
}

float coordinate(int i)
{
    return (static_cast<float>(i) + 0.5F) / static_cast<float>(Size);
}

Table::Table()
{
    for (int a = 0; a < Size; ++a)
        for (int c = 0; c < Size; ++c) {
            const float alpha = std::max(1e-3F, coordinate(a) * coordinate(a));
            const float cosine = coordinate(c);
            const Ggx ggx{alpha, alpha};
            const V3 v{std::sqrt(1.0F - cosine * cosine), 0.0F, cosine};
            float sumWhite = 0.0F;
            float sumGrazing = 0.0F;
            for (std::uint32_t i = 0; i < Samples; ++i) {
                const auto [u1, u2] = Sampler(static_cast<std::uint32_t>(a * Size + c), i).next2D();
                const V3 h = ggx.sampleVisible(v, u1, u2);
                const V3 l = h * (2.0F * dot(v, h)) - v;
                if (l.z <= 0.0F)
                    continue;
                const float weight = ggx.visible(v, l) / ggx.visible(v);
                sumWhite += weight;
                sumGrazing += weight * std::pow(1.0F - clamp01(dot(v, h)), 5.0F);
            }
            albedos[indexOf(c, a)] = {sumWhite / static_cast<float>(Samples), sumGrazing / static_cast<float>(Samples)};
        }
}

const Table &theTable()
{
    static const Table table;
    return table;
}

GgxAlbedo mix(const GgxAlbedo &a, const GgxAlbedo &b, float t)
{
    return {kxRender::mix(a.white, b.white, t), kxRender::mix(a.grazing, b.grazing, t)};
}

} // namespace

GgxWidth::GgxWidth(float alpha)
{
    const float y = std::clamp(std::sqrt(alpha) * Size - 0.5F, 0.0F, static_cast<float>(Size - 1));
    const int low = std::min(static_cast<int>(y), Size - 2);
    _low = &theTable().albedos[indexOf(0, low)];
    _share = y - static_cast<float>(low);
}

GgxAlbedo GgxWidth::albedo(float cosine) const
{
    const float x = std::clamp(cosine * Size - 0.5F, 0.0F, static_cast<float>(Size - 1));
    const int left = std::min(static_cast<int>(x), Size - 2);
    const GgxAlbedo *low = _low + left;
    const GgxAlbedo *high = low + Size;
    const float fx = x - static_cast<float>(left);
    return mix(mix(low[0], low[1], fx), mix(high[0], high[1], fx), _share);
}

} // namespace kxRender
