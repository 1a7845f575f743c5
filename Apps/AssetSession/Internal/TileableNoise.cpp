// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/Internal/TileableNoise.h"

#include <cmath>

namespace kxAssetSessionInternal {

namespace {

/// The finaliser of MurmurHash3, which spreads every bit of its input over the whole word.
std::uint32_t mixed(std::uint32_t h)
{
    h ^= h >> 16;
    h *= 0x85ebca6bU;
    h ^= h >> 13;
    h *= 0xc2b2ae35U;
    h ^= h >> 16;
    return h;
}

int wrapped(int i, int count)
{
    const int rest = i % count;
    return rest < 0 ? rest + count : rest;
}

/// 6t^5 - 15t^4 + 10t^3: its first and second derivatives vanish at both ends.
float faded(float t)
{
    return t * t * t * (t * (t * 6.0F - 15.0F) + 10.0F);
}

float mix(float a, float b, float t)
{
    return a + (b - a) * t;
}

} // namespace

std::uint32_t TileableNoise::hash(int x, int y) const
{
    return mixed(static_cast<std::uint32_t>(x) + mixed(static_cast<std::uint32_t>(y) + mixed(_seed)));
}

float TileableNoise::random(std::uint32_t key, std::uint32_t which)
{
    return static_cast<float>(mixed(key ^ mixed(which + 1)) >> 8) / 16777216.0F;
}

float TileableNoise::corner(int x, int y, float toX, float toY) const
{
    const float angle = random(hash(x, y), 0) * 6.2831853F;
    return std::cos(angle) * toX + std::sin(angle) * toY;
}

float TileableNoise::gradient(float u, float v, int countU, int countV) const
{
    const float x = u * static_cast<float>(countU);
    const float y = v * static_cast<float>(countV);
    const float floorX = std::floor(x);
    const float floorY = std::floor(y);
    const float fx = x - floorX;
    const float fy = y - floorY;
    const int x0 = wrapped(static_cast<int>(floorX), countU);
    const int y0 = wrapped(static_cast<int>(floorY), countV);
    const int x1 = wrapped(x0 + 1, countU);
    const int y1 = wrapped(y0 + 1, countV);
    const float low = mix(corner(x0, y0, fx, fy), corner(x1, y0, fx - 1.0F, fy), faded(fx));
    const float high = mix(corner(x0, y1, fx, fy - 1.0F), corner(x1, y1, fx - 1.0F, fy - 1.0F), faded(fx));
    constexpr float ToOne = 1.41421356F; // the largest value in two dimensions is the square root of one half
    return ToOne * mix(low, high, faded(fy));
}

float TileableNoise::fractal(float u, float v, int countU, int countV, int octaves) const
{
    float sum = 0.0F;
    float strength = 1.0F;
    float total = 0.0F;
    for (int octave = 0; octave < octaves; ++octave) {
        sum += strength * gradient(u, v, countU << octave, countV << octave);
        total += strength;
        strength *= 0.5F;
    }
    return total > 0.0F ? sum / total : 0.0F;
}

TileableNoise::Cell TileableNoise::cell(float u, float v, int countU, int countV, float spread) const
{
    const float x = u * static_cast<float>(countU);
    const float y = v * static_cast<float>(countV);
    const int column = static_cast<int>(std::floor(x));
    const int row = static_cast<int>(std::floor(y));
    Cell found{1e9F, 1e9F, 0.0F, 0.0F, 0};
    for (int j = row - 1; j <= row + 1; ++j)
        for (int i = column - 1; i <= column + 1; ++i) {
            const std::uint32_t key = hash(wrapped(i, countU), wrapped(j, countV));
            const float toX = x - (static_cast<float>(i) + 0.5F + spread * (random(key, 0) - 0.5F));
            const float toY = y - (static_cast<float>(j) + 0.5F + spread * (random(key, 1) - 0.5F));
            const float distance = std::hypot(toX, toY);
            if (distance < found.nearest)
                found = {distance, found.nearest, toX, toY, key};
            else if (distance < found.second)
                found.second = distance;
        }
    return found;
}

} // namespace kxAssetSessionInternal
