// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/Sampler.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using kxRender::Sampler;

constexpr std::size_t Bins = 16;
/// Exceeded by chance once in 1,000 times, for 255 degrees of freedom.
constexpr double ChiSquareLimit = 330.5;

double chiSquare(const std::vector<int> &counts, int total)
{
    const double expected = static_cast<double>(total) / static_cast<double>(counts.size());
    double sum = 0.0;
    for (const int count : counts)
        sum += (count - expected) * (count - expected) / expected;
    return sum;
}

std::size_t binOf(float v)
{
    return static_cast<std::size_t>(v * static_cast<float>(Bins));
}

} // namespace

TEST(SamplerTest, GivesEverySampleOfAPixelItsOwnPartOfTheSquare)
{
    // 64 samples of a (0, 2)-sequence fill each way of cutting the square into 64 equal boxes.
    for (std::uint32_t pixel : {0U, 17U, 262143U})
        for (int widthBits = 0; widthBits <= 6; ++widthBits) {
            std::vector<int> counts(64);
            for (std::uint32_t sample = 0; sample < 64; ++sample) {
                const auto [u, v] = Sampler(pixel, sample).next2D();
                const int column = static_cast<int>(u * static_cast<float>(1 << widthBits));
                const int row = static_cast<int>(v * static_cast<float>(64 >> widthBits));
                ++counts[static_cast<std::size_t>((column << (6 - widthBits)) + row)];
            }
            EXPECT_EQ(counts, std::vector<int>(64, 1)) << "pixel " << pixel << ", " << (1 << widthBits) << " columns";
        }
}

TEST(SamplerTest, SpreadsTheFirstSamplesOfPixelsEvenly)
{
    constexpr std::uint32_t Pixels = 100000;
    std::vector<int> counts(Bins * Bins);
    for (std::uint32_t pixel = 0; pixel < Pixels; ++pixel) {
        const auto [u, v] = Sampler(pixel, 0).next2D();
        ++counts[binOf(u) * Bins + binOf(v)];
    }
    EXPECT_LT(chiSquare(counts, Pixels), ChiSquareLimit);
}

TEST(SamplerTest, TiesNoDimensionToAnother)
{
    constexpr std::uint32_t Pixels = 100000;
    std::vector<int> counts(Bins * Bins);
    for (std::uint32_t pixel = 0; pixel < Pixels; ++pixel) {
        Sampler sampler(pixel, 3);
        const float first = sampler.next1D();
        const float second = sampler.next1D();
        ++counts[binOf(first) * Bins + binOf(second)];
    }
    EXPECT_LT(chiSquare(counts, Pixels), ChiSquareLimit);
}

TEST(SamplerTest, GivesTogetherWhatItGivesOneByOne)
{
    std::array<Sampler, Sampler::PacketSize> samplers;
    std::array<Sampler, Sampler::PacketSize> alone;
    std::array<Sampler *, Sampler::PacketSize> together{};
    for (std::size_t k = 0; k < samplers.size(); ++k) {
        alone[k] = samplers[k] = Sampler(static_cast<std::uint32_t>(1000 * k), static_cast<std::uint32_t>(k));
        together[k] = &samplers[k];
    }
    Sampler::Numbers first;
    Sampler::Numbers second;
    for (int round = 0; round < 2; ++round) {
        Sampler::next2D(together, first, second);
        for (std::size_t k = 0; k < samplers.size(); ++k)
            for (std::size_t i = 0; i < Sampler::PacketPairs; ++i)
                EXPECT_EQ(std::make_pair(first[i][k], second[i][k]), alone[k].next2D());
    }
    EXPECT_EQ(samplers[2].next1D(), alone[2].next1D()) << "both go on alike";
}
