// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace kxRender {

/// The random numbers of one sample of one pixel: Owen-scrambled, shuffled (0, 2)-sequences, one for each pair that is
/// asked for. The same pixel and sample always get the same numbers.
///
/// After Burley, "Practical Hash-based Owen Scrambling", JCGT 10(4), 2020.
class Sampler
{
public:
    Sampler() : Sampler(0, 0) {}
    Sampler(std::uint32_t pixel, std::uint32_t sample)
        : _seed(hash(pixel * 0x9E3779B9U + 0x7F4A7C15U)), _reversedSample(reverseBits(sample))
    {}

    std::pair<float, float> next2D()
    {
        const std::uint32_t seed = nextSeed();
        const std::uint32_t index = reverseBits(permute(_reversedSample, seed));
        return {firstOf(index, seed), secondOf(index, seed)};
    }
    float next1D()
    {
        const std::uint32_t seed = nextSeed();
        return firstOf(reverseBits(permute(_reversedSample, seed)), seed);
    }

    static constexpr std::size_t PacketSize = 8;
    static constexpr std::size_t PacketPairs = 3;
    using Numbers = std::array<std::array<float, PacketSize>, PacketPairs>;
    /// The next pairs of several samplers together, which is faster: pair i of sampler k is first[i][k] and second[i][k],
    /// and what next2D() would give.
    static void next2D(const std::array<Sampler *, PacketSize> &samplers, Numbers &first, Numbers &second);

private:
    struct Packet;

    static std::uint32_t hash(std::uint32_t x)
    {
        x ^= x >> 16U;
        x *= 0x7FEB352DU;
        x ^= x >> 15U;
        x *= 0x846CA68BU;
        return x ^ (x >> 16U);
    }
    static std::uint32_t reverseBits(std::uint32_t x)
    {
        x = (x << 24U) | ((x & 0xFF00U) << 8U) | ((x >> 8U) & 0xFF00U) | (x >> 24U);
        x = ((x & 0x0F0F0F0FU) << 4U) | ((x & 0xF0F0F0F0U) >> 4U);
        x = ((x & 0x33333333U) << 2U) | ((x & 0xCCCCCCCCU) >> 2U);
        return ((x & 0x55555555U) << 1U) | ((x & 0xAAAAAAAAU) >> 1U);
    }
    /// Owen scrambling of reversed bits: the permutation of Laine and Karras.
    static std::uint32_t permute(std::uint32_t x, std::uint32_t seed)
    {
        x += seed;
        x ^= x * 0x6C50B47CU;
        x ^= x * 0xB82F1E52U;
        x ^= x * 0xC7AFE638U;
        return x ^ (x * 0x8D22F6E6U);
    }
    /// The second dimension of Sobol's sequence, its bits reversed. Its direction numbers are Pascal's triangle modulo 2,
    /// where row i has a one in column k exactly when the bits of k are among those of i: so each bit of the result is the
    /// sum over all supersets of its index, which takes one step for each bit of an index.
    static std::uint32_t reversedSobolSecond(std::uint32_t index)
    {
        index ^= (index >> 1U) & 0x55555555U;
        index ^= (index >> 2U) & 0x33333333U;
        index ^= (index >> 4U) & 0x0F0F0F0FU;
        index ^= (index >> 8U) & 0x00FF00FFU;
        return index ^ (index >> 16U);
    }
    /// As a signed number, which converts faster.
    static float toUnit(std::uint32_t bits)
    {
        return static_cast<float>(static_cast<std::int32_t>(bits >> 8U)) * 0x1p-24F;
    }
    static std::uint32_t seedOf(std::uint32_t seed, std::uint32_t dimension)
    {
        return hash(seed + 0x9E3779B9U * dimension);
    }
    /// The first dimension is the index itself, its bits reversed.
    static float firstOf(std::uint32_t index, std::uint32_t seed)
    {
        return toUnit(reverseBits(permute(index, hash(seed ^ 0xA511E9B3U))));
    }
    static float secondOf(std::uint32_t index, std::uint32_t seed)
    {
        return toUnit(reverseBits(permute(reversedSobolSecond(index), hash(seed ^ 0x63D83595U))));
    }
    std::uint32_t nextSeed() { return seedOf(_seed, ++_dimension); }

    std::uint32_t _seed;
    std::uint32_t _reversedSample;
    std::uint32_t _dimension = 0;
};

} // namespace kxRender
