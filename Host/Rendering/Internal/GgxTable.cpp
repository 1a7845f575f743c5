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
    std::array<float, Size * Size> white;
    std::array<float, Size * Size> grazing;

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
            white[indexOf(c, a)] = sumWhite / static_cast<float>(Samples);
            grazing[indexOf(c, a)] = sumGrazing / static_cast<float>(Samples);
        }
}

const Table &theTable()
{
    static const Table table;
    return table;
}

float lookUp(const std::array<float, Size * Size> &values, float cosine, float alpha)
{
    const float x = std::clamp(cosine * Size - 0.5F, 0.0F, static_cast<float>(Size - 1));
    const float y = std::clamp(std::sqrt(alpha) * Size - 0.5F, 0.0F, static_cast<float>(Size - 1));
    const int x0 = std::min(static_cast<int>(x), Size - 2);
    const int y0 = std::min(static_cast<int>(y), Size - 2);
    const auto at = [&values](int cx, int cy) { return values[indexOf(cx, cy)]; };
    const float fx = x - static_cast<float>(x0);
    return mix(mix(at(x0, y0), at(x0 + 1, y0), fx), mix(at(x0, y0 + 1), at(x0 + 1, y0 + 1), fx),
               y - static_cast<float>(y0));
}

} // namespace

GgxAlbedo ggxAlbedo(float cosine, float alpha)
{
    return {lookUp(theTable().white, cosine, alpha), lookUp(theTable().grazing, cosine, alpha)};
}

} // namespace kxRender
