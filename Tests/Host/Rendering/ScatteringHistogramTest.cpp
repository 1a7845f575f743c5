// SPDX-License-Identifier: Apache-2.0
// Whether what is sampled comes as often as its density says: Pearson's test over a grid of directions.
#include "Rendering/Internal/Bsdf.h"
#include "Rendering/Internal/EnvironmentLight.h"
#include "Rendering/Internal/Sampler.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

namespace {

using namespace kxRender;

constexpr int Rows = 12; // of equal height, and so of equal area
constexpr int Columns = 20;
constexpr int Cells = Rows * Columns;
constexpr int Count = 100000;
constexpr int Steps = 24; // of the integration, along each side of a cell

V3 directionAt(double row, double column)
{
    const double z = 2.0 * row / Rows - 1.0;
    const double r = std::sqrt(std::max(0.0, 1.0 - z * z));
    const double phi = 2.0 * static_cast<double>(Pi) * column / Columns;
    return {static_cast<float>(r * std::cos(phi)), static_cast<float>(r * std::sin(phi)), static_cast<float>(z)};
}

std::size_t cellOf(V3 d)
{
    const int row = std::clamp(static_cast<int>((d.z + 1.0F) / 2.0F * Rows), 0, Rows - 1);
    const float turn = std::atan2(d.y, d.x) / (2.0F * Pi);
    const int column = std::clamp(static_cast<int>((turn < 0.0F ? turn + 1.0F : turn) * Columns), 0, Columns - 1);
    return static_cast<std::size_t>(row * Columns + column);
}

/// The integrals of a density over the cells.
std::vector<double> integrated(const std::function<float(V3)> &density)
{
    std::vector<double> shares(Cells);
    const double area = 4.0 * static_cast<double>(Pi) / Cells / (Steps * Steps);
    for (int cell = 0; cell < Cells; ++cell)
        for (int i = 0; i < Steps * Steps; ++i) {
            const double row = cell / Columns + (i / Steps + 0.5) / Steps;
            const double column = cell % Columns + (i % Steps + 0.5) / Steps;
            shares[static_cast<std::size_t>(cell)] += static_cast<double>(density(directionAt(row, column))) * area;
        }
    return shares;
}

/// How far counts are from what was expected, in standard deviations of the chi-square distribution with as many degrees
/// of freedom as there are cells; cells that expect few are put together.
double deviation(const std::vector<int> &counts, const std::vector<double> &shares)
{
    double sum = 0.0;
    double restExpected = 0.0;
    double restFound = 0.0;
    int cells = 0;
    const auto add = [&](double found, double expected) {
        sum += (found - expected) * (found - expected) / expected;
        ++cells;
    };
    for (std::size_t i = 0; i < counts.size(); ++i) {
        const double expected = shares[i] * Count;
        if (expected < 8.0) {
            restExpected += expected;
            restFound += counts[i];
        } else {
            add(counts[i], expected);
        }
    }
    if (restExpected >= 8.0)
        add(restFound, restExpected);
    else
        EXPECT_LE(restFound, restExpected + 40.0) << "directions that the density excludes";
    return (sum - (cells - 1)) / std::sqrt(2.0 * (cells - 1));
}

struct Material
{
    const char *name;
    SurfacePoint point;
    float cosine;
    bool isInside = false;
};

SurfacePoint point(float alphaX, float alphaY, float metalness, float coat, float transparency)
{
    return {{0.8F, 0.6F, 0.3F},
            {1.0F, 1.0F, 1.0F},
            {1.0F, 1.0F, 1.0F},
            {},
            1.0F,
            alphaX,
            alphaY,
            metalness,
            coat,
            0.2F,
            transparency,
            1.5F,
            0.3F};
}

class ScatteringHistogramTest : public testing::TestWithParam<Material>
{};

} // namespace

TEST_P(ScatteringHistogramTest, SamplesDirectionsAsOftenAsTheDensitySays)
{
    const Material &material = GetParam();
    const V3 viewer{std::sqrt(1.0F - material.cosine * material.cosine), 0.0F, material.cosine};
    const Bsdf bsdf(material.point, viewer, material.isInside);
    std::mt19937 random(1234);
    std::uniform_real_distribution<float> uniform(0.0F, 1.0F);
    std::vector<int> counts(Cells);
    int lost = 0;
    for (int i = 0; i < Count; ++i) {
        const float lobe = uniform(random);
        const float u = uniform(random);
        const Bsdf::Sample sample = bsdf.sample(lobe, u, uniform(random));
        if (sample.pdf > 0.0F)
            ++counts[cellOf(sample.direction)];
        else
            ++lost; // below the surface, where nothing is scattered
    }

    std::vector<double> shares = integrated([&bsdf](V3 d) { return bsdf.evaluate(d).second; });
    counts.push_back(lost);
    double sum = 0.0;
    for (const double share : shares)
        sum += share;
    shares.push_back(std::max(0.0, 1.0 - sum));

    EXPECT_LT(std::abs(deviation(counts, shares)), 4.0);
}

INSTANTIATE_TEST_SUITE_P(All, ScatteringHistogramTest,
                         testing::Values(Material{"Chalk", point(0.7F, 0.7F, 0.0F, 0.0F, 0.0F), 0.7F},
                                         Material{"Metal", point(0.4F, 0.4F, 1.0F, 0.0F, 0.0F), 0.6F},
                                         Material{"BrushedMetal", point(0.6F, 0.25F, 1.0F, 0.0F, 0.0F), 0.5F},
                                         Material{"Lacquer", point(0.5F, 0.5F, 0.0F, 1.0F, 0.0F), 0.4F},
                                         Material{"Grazing", point(0.5F, 0.5F, 0.2F, 0.5F, 0.0F), 0.15F},
                                         Material{"FrostedGlass", point(0.5F, 0.5F, 0.0F, 0.0F, 1.0F), 0.7F},
                                         Material{"HalfGlass", point(0.5F, 0.5F, 0.0F, 0.5F, 0.5F), 0.3F},
                                         Material{"FromWithin", point(0.5F, 0.5F, 0.0F, 0.0F, 1.0F), 0.8F, true}),
                         [](const auto &material) { return material.param.name; });

TEST(EnvironmentHistogramTest, SamplesDirectionsAsOftenAsTheDensitySays)
{
    const EnvironmentLight light(64, 32, [](V3 d) {
        const float sun = dot(d, normalize({1.0F, 2.0F, 0.5F})) > 0.97F ? 40.0F : 0.0F;
        return V3{0.3F + sun, 0.3F + sun + 0.5F * clamp01(d.y), 0.4F};
    });
    std::mt19937 random(99);
    std::uniform_real_distribution<float> uniform(0.0F, 1.0F);
    std::vector<int> counts(Cells);
    for (int i = 0; i < Count; ++i) {
        const float u = uniform(random);
        ++counts[cellOf(light.sample(u, uniform(random)).direction)];
    }

    EXPECT_LT(std::abs(deviation(counts, integrated([&light](V3 d) { return light.pdf(d); }))), 4.0);
}
