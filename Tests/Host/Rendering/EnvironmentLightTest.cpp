// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/EnvironmentLight.h"

#include "Rendering/Internal/Sampler.h"
#include "SceneGraph/UBRDFMaterial.h"
#include "SceneGraph/USkyEnvironmentMaterial.h"

#include <gtest/gtest.h>

namespace {

using namespace kxRender;

V3 uniformDirection(std::uint32_t i)
{
    const auto [u, v] = Sampler(5, i).next2D();
    const float z = 2.0F * u - 1.0F;
    const float r = std::sqrt(std::max(0.0F, 1.0F - z * z));
    return {r * std::cos(2.0F * Pi * v), z, r * std::sin(2.0F * Pi * v)};
}

EnvironmentLight patch()
{
    return EnvironmentLight(64, 32, [](V3 d) { return d.x > 0.7F ? V3{8.0F, 8.0F, 8.0F} : V3{0.2F, 0.2F, 0.2F}; });
}

} // namespace

TEST(EnvironmentLightTest, MapsDirectionsBackAndForth)
{
    for (std::uint32_t i = 0; i < 200; ++i) {
        const V3 d = uniformDirection(i);
        const auto [u, v] = EnvironmentLight::toMap(d);
        EXPECT_NEAR(dot(EnvironmentLight::toDirection(u, v), d), 1.0F, 1e-5F);
    }
    EXPECT_NEAR(EnvironmentLight::toMap({0.0F, 1.0F, 0.0F}).second, 1.0F, 1e-6F) << "the zenith is on top";
}

TEST(EnvironmentLightTest, HasADensityThatAddsUpToOne)
{
    const EnvironmentLight light = patch();
    constexpr std::uint32_t Count = 200000;
    double sum = 0.0;
    for (std::uint32_t i = 0; i < Count; ++i)
        sum += static_cast<double>(light.pdf(uniformDirection(i)));

    EXPECT_NEAR(sum * 4.0 * static_cast<double>(Pi) / Count, 1.0, 0.02);
}

TEST(EnvironmentLightTest, FindsTheSameLightBySamplingAsByLookingEverywhere)
{
    const EnvironmentLight light = patch();
    constexpr std::uint32_t Count = 100000;
    double sampled = 0.0;
    double looked = 0.0;
    for (std::uint32_t i = 0; i < Count; ++i) {
        const auto [u, v] = Sampler(9, i).next2D();
        const EnvironmentLight::Sample sample = light.sample(u, v);
        ASSERT_GT(sample.pdf, 0.0F);
        sampled += static_cast<double>(luminance(sample.radiance) / sample.pdf);
        looked += static_cast<double>(luminance(light.radiance(uniformDirection(i)))) * 4.0 * static_cast<double>(Pi);
    }

    EXPECT_NEAR(sampled / looked, 1.0, 0.03);
}

TEST(EnvironmentLightTest, OffersNoSampleInTheDark)
{
    const EnvironmentLight dark(8, 4, [](V3) { return V3{}; });

    EXPECT_EQ(dark.sample(0.5F, 0.5F).pdf, 0.0F);
    EXPECT_EQ(dark.pdf({0.0F, 1.0F, 0.0F}), 0.0F);
}

TEST(EnvironmentLightTest, MakesASkyThatIsBrightestAtTheSun)
{
    const osg::FCRef<osg::USkyEnvironmentMaterial> sky(osg::USkyEnvironmentMaterial::create());

    const auto light = EnvironmentLight::from(sky.get());

    ASSERT_TRUE(light);
    const V3 sun = normalize({0.4F, 0.7F, 0.6F});
    const V3 away = normalize({-0.4F, 0.7F, -0.6F});
    EXPECT_GT(luminance(light->radiance(sun)), 10.0F * luminance(light->radiance(away)));
    EXPECT_GT(light->radiance(away).z, light->radiance(away).x) << "blue away from the sun";
}

TEST(EnvironmentLightTest, IsNoneForOtherMaterials)
{
    const osg::FCRef<osg::UBRDFMaterial> surface(osg::UBRDFMaterial::create());

    EXPECT_FALSE(EnvironmentLight::from(surface.get()));
    EXPECT_FALSE(EnvironmentLight::from(nullptr));
}
