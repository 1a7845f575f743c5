// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/Sampler.h"

namespace kxRender {

namespace {

std::uint32_t reverseBits(std::uint32_t x)
{
    x = (x << 16U) | (x >> 16U);
    x = ((x & 0x00FF00FFU) << 8U) | ((x & 0xFF00FF00U) >> 8U);
    x = ((x & 0x0F0F0F0FU) << 4U) | ((x & 0xF0F0F0F0U) >> 4U);
    x = ((x & 0x33333333U) << 2U) | ((x & 0xCCCCCCCCU) >> 2U);
    return ((x & 0x55555555U) << 1U) | ((x & 0xAAAAAAAAU) >> 1U);
}

/// The second dimension of Sobol's sequence; its direction numbers are rows of Pascal's triangle modulo 2.
std::uint32_t sobolSecond(std::uint32_t index)
{
    std::uint32_t result = 0;
    for (std::uint32_t direction = 0x80000000U; index != 0; index >>= 1U, direction ^= direction >> 1U)
        if ((index & 1U) != 0)
            result ^= direction;
    return result;
}

float toUnit(std::uint32_t bits)
{
    return static_cast<float>(bits >> 8U) * 0x1p-24F;
}

} // namespace

std::uint32_t Sampler::hash(std::uint32_t x)
{
    x ^= x >> 16U;
    x *= 0x7FEB352DU;
    x ^= x >> 15U;
    x *= 0x846CA68BU;
    return x ^ (x >> 16U);
}

std::uint32_t Sampler::scramble(std::uint32_t x, std::uint32_t seed)
{
    // Laine-Karras permutation of the reversed bits.
    x = reverseBits(x);
    x += seed;
    x ^= x * 0x6C50B47CU;
    x ^= x * 0xB82F1E52U;
    x ^= x * 0xC7AFE638U;
    x ^= x * 0x8D22F6E6U;
    return reverseBits(x);
}

std::pair<float, float> Sampler::next2D()
{
    const std::uint32_t seed = hash(_seed + 0x9E3779B9U * ++_dimension);
    const std::uint32_t index = scramble(_sample, seed);
    return {toUnit(scramble(reverseBits(index), hash(seed ^ 0xA511E9B3U))),
            toUnit(scramble(sobolSecond(index), hash(seed ^ 0x63D83595U)))};
}

} // namespace kxRender
