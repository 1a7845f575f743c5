// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace kxAssetSessionInternal {

/// Noise that continues over the borders of a tile: (0, 0) to (1, 1) repeats in both directions.
///
/// The same on every machine for the same seed.
class TileableNoise
{
public:
    struct Cell
    {
        float nearest;     ///< distance to the nearest point; about 1 is the distance between two points
        float second;      ///< distance to the second nearest point
        float toX;         ///< from the nearest point to where was asked, in the same measure
        float toY;         ///< the same, upwards
        std::uint32_t key; ///< of the nearest point; see random()
    };

    explicit TileableNoise(std::uint32_t seed) : _seed(seed) {}

    /// Gradient noise with this many lattice cells along the tile's sides: Perlin, "Improving Noise", SIGGRAPH 2002.
    /// About -1 to 1, 0 at the lattice points.
    float gradient(float u, float v, int countU, int countV) const;

    /// Octaves of gradient(), each twice as fine and half as strong as the former one. About -1 to 1.
    float fractal(float u, float v, int countU, int countV, int octaves) const;

    /// The points nearest to (u, v), of one point in each of \a countU x \a countV cells, \a spread (0 to 1) away from its
    /// middle: Worley, "A Cellular Texture Basis Function", SIGGRAPH 1996.
    Cell cell(float u, float v, int countU, int countV, float spread) const;

    /// 0 to 1, by a key and which of its numbers is wanted.
    static float random(std::uint32_t key, std::uint32_t which);

private:
    std::uint32_t hash(int x, int y) const;
    float corner(int x, int y, float toX, float toY) const;

    std::uint32_t _seed;
};

} // namespace kxAssetSessionInternal
