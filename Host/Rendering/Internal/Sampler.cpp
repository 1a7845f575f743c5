// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/Sampler.h"

#if defined(__x86_64__) && defined(__GNUC__)
#define KX_HAS_AVX2_CLONE 1
#else
#define KX_HAS_AVX2_CLONE 0
#endif

namespace kxRender {

/// What the samplers are, in the order that vector instructions take.
struct Sampler::Packet
{
    std::array<std::uint32_t, PacketSize> seeds;
    std::array<std::uint32_t, PacketSize> samples;
    std::array<std::uint32_t, PacketSize> dimensions;

    [[gnu::always_inline]] inline void draw(Numbers &first, Numbers &second) const
    {
        for (std::size_t i = 0; i < PacketPairs; ++i)
            for (std::size_t k = 0; k < PacketSize; ++k) {
                const std::uint32_t seed = seedOf(seeds[k], dimensions[k] + static_cast<std::uint32_t>(i) + 1);
                const std::uint32_t index = reverseBits(permute(samples[k], seed));
                first[i][k] = firstOf(index, seed);
                second[i][k] = secondOf(index, seed);
            }
    }

    static void drawAnywhere(const Packet &packet, Numbers &first, Numbers &second) { packet.draw(first, second); }
#if KX_HAS_AVX2_CLONE
    /// All of it is whole numbers, so that the pictures of all processors are the same.
    [[gnu::target("avx2")]] static void drawByAvx2(const Packet &packet, Numbers &first, Numbers &second)
    {
        packet.draw(first, second);
    }
#endif
    static auto best()
    {
#if KX_HAS_AVX2_CLONE
        if (__builtin_cpu_supports("avx2"))
            return &drawByAvx2;
#endif
        return &drawAnywhere;
    }
};

void Sampler::next2D(const std::array<Sampler *, PacketSize> &samplers, Numbers &first, Numbers &second)
{
    static const auto draw = Packet::best();
    Packet packet;
    for (std::size_t k = 0; k < PacketSize; ++k) {
        packet.seeds[k] = samplers[k]->_seed;
        packet.samples[k] = samplers[k]->_reversedSample;
        packet.dimensions[k] = samplers[k]->_dimension;
        samplers[k]->_dimension += PacketPairs;
    }
    draw(packet, first, second);
}

} // namespace kxRender
