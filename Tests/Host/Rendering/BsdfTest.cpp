// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/Bsdf.h"

#include "Rendering/Internal/Sampler.h"

#include <gtest/gtest.h>

namespace {

using namespace kxRender;

constexpr std::uint32_t Samples = 20000;
constexpr V3 White{1.0F, 1.0F, 1.0F};

SurfacePoint surface()
{
    return {White, {}, White, {}, 1.0F, 0.25F, 0.25F, 0.0F, 0.0F, 0.01F, 0.0F, 1.5F, 0.0F};
}

V3 viewAt(float cosine)
{
    return {std::sqrt(1.0F - cosine * cosine), 0.0F, cosine};
}

/// The share of light that is scattered anywhere, as the path tracer finds it.
float albedo(const SurfacePoint &point, float cosine, bool isInside = false)
{
    const Bsdf bsdf(point, viewAt(cosine), isInside);
    double sum = 0.0;
    for (std::uint32_t i = 0; i < Samples; ++i) {
        Sampler sampler(7, i);
        const float lobe = sampler.next1D();
        const auto [u, v] = sampler.next2D();
        const Bsdf::Sample sample = bsdf.sample(lobe, u, v);
        if (sample.pdf > 0.0F)
            sum += static_cast<double>(luminance(sample.weight));
    }
    return static_cast<float>(sum / Samples);
}

/// The integral of the density over all directions, from evenly spread ones.
float integratedDensity(const SurfacePoint &point, float cosine)
{
    const Bsdf bsdf(point, viewAt(cosine), false);
    double sum = 0.0;
    constexpr std::uint32_t Many = 400000;
    for (std::uint32_t i = 0; i < Many; ++i) {
        const auto [u, v] = Sampler(3, i).next2D();
        const float z = 2.0F * u - 1.0F;
        const float r = std::sqrt(std::max(0.0F, 1.0F - z * z));
        sum += static_cast<double>(bsdf.evaluate({r * std::cos(2.0F * Pi * v), r * std::sin(2.0F * Pi * v), z}).second);
    }
    return static_cast<float>(sum * 4.0 * static_cast<double>(Pi) / Many);
}

} // namespace

TEST(BsdfTest, ScattersAllLightFromWhiteChalk)
{
    for (const float cosine : {1.0F, 0.6F, 0.2F})
        EXPECT_NEAR(albedo(surface(), cosine), 1.0F, 0.01F) << cosine;
}

TEST(BsdfTest, ReflectsNearlyAllLightFromWhiteMetal)
{
    SurfacePoint point = surface();
    point.metalness = 1.0F;
    for (const float alpha : {0.01F, 0.1F, 0.4F, 0.9F}) {
        point.alphaX = point.alphaY = alpha;
        for (const float cosine : {1.0F, 0.6F, 0.3F})
            EXPECT_NEAR(albedo(point, cosine), 1.0F, 0.02F) << alpha << ' ' << cosine;
    }
}

TEST(BsdfTest, GainsNoLight)
{
    for (const float alpha : {0.002F, 0.1F, 0.5F, 1.0F})
        for (const float metalness : {0.0F, 0.5F, 1.0F})
            for (const float coat : {0.0F, 1.0F})
                for (const float sheen : {0.0F, 1.0F})
                    for (const float transparency : {0.0F, 0.5F, 1.0F}) {
                        SurfacePoint point = surface();
                        point.specular = White;
                        point.alphaX = alpha;
                        point.alphaY = alpha / 2.0F + 0.001F;
                        point.metalness = metalness;
                        point.coat = coat;
                        point.sheen = sheen;
                        point.transparency = transparency;
                        for (const float cosine : {0.95F, 0.4F, 0.1F})
                            EXPECT_LE(albedo(point, cosine), 1.03F) << alpha << ' ' << metalness << ' ' << coat << ' '
                                                                    << sheen << ' ' << transparency << ' ' << cosine;
                    }
}

TEST(BsdfTest, LosesLittleLightInSmoothGlass)
{
    SurfacePoint point = surface();
    point.transparency = 1.0F;
    point.alphaX = point.alphaY = 0.002F;
    for (const float cosine : {1.0F, 0.5F, 0.2F}) {
        EXPECT_NEAR(albedo(point, cosine), 1.0F, 0.02F) << cosine;
        EXPECT_NEAR(albedo(point, cosine, true), 1.0F, 0.02F) << cosine << " from within";
    }
}

TEST(BsdfTest, ChoosesDirectionsWithADensityThatAddsUpToOne)
{
    SurfacePoint point = surface();
    point.specular = White;
    point.alphaX = 0.3F;
    point.alphaY = 0.6F;
    EXPECT_NEAR(integratedDensity(point, 0.8F), 1.0F, 0.03F);
    point.coat = 1.0F;
    point.coatAlpha = 0.3F;
    EXPECT_NEAR(integratedDensity(point, 0.8F), 1.0F, 0.03F);
    point.transparency = 1.0F;
    EXPECT_NEAR(integratedDensity(point, 0.8F), 1.0F, 0.03F);
}

TEST(BsdfTest, KnowsFresnelsValues)
{
    EXPECT_NEAR(fresnelDielectric(1.0F, 1.0F / 1.5F), 0.04F, 1e-4F);
    EXPECT_NEAR(fresnelDielectric(1.0F, 1.5F), 0.04F, 1e-4F);
    EXPECT_EQ(fresnelDielectric(0.3F, 1.5F), 1.0F) << "total reflection";
    EXPECT_NEAR(fresnelDielectric(0.0F, 1.0F / 1.5F), 1.0F, 1e-4F);
    EXPECT_EQ(fresnelDielectric(0.5F, 1.0F), 0.0F);
}
