// SPDX-License-Identifier: Apache-2.0
#pragma once

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
    Sampler(std::uint32_t pixel, std::uint32_t sample) : _seed(hash(pixel * 0x9E3779B9U + 0x7F4A7C15U)), _sample(sample)
    {}

    std::pair<float, float> next2D();
    float next1D() { return next2D().first; }

private:
    static std::uint32_t hash(std::uint32_t x);
    static std::uint32_t scramble(std::uint32_t x, std::uint32_t seed);

    std::uint32_t _seed;
    std::uint32_t _sample;
    std::uint32_t _dimension = 0;
};

} // namespace kxRender
