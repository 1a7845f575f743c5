// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/DeltaLight.h"

#include "SceneGraph/EditCP.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using namespace kxRender;

constexpr float NaN = std::numeric_limits<float>::quiet_NaN();

osg::FCRef<osg::Light> node(osg::LightKind kind, const std::function<void(osg::Light &)> &change = {})
{
    osg::FCRef<osg::Light> light(osg::Light::create());
    const osg::CPEditor edit(light.get(), osg::AllFieldMask);
    light->setKind(static_cast<std::uint32_t>(kind));
    light->setIntensity(8.0F);
    if (change)
        change(*light);
    return light;
}

std::optional<DeltaLight> lightOf(const osg::FCRef<osg::Light> &light, const osg::Matrix &toWorld = {})
{
    return DeltaLight::from(*light, toWorld);
}

/// A quarter turn around X: what shone along -Z shines along Y.
osg::Matrix upwards(const osg::Vec3d &place, const osg::Vec3d &scale = {1.0, 1.0, 1.0})
{
    const double half = std::sqrt(0.5);
    return osg::composeMatrix(place, {half, 0.0, 0.0, half}, scale);
}

/// The share of a spot's light at an angle from its axis, in degrees.
float shareAt(float degrees, float inner, float outer)
{
    const auto spot = lightOf(node(osg::LightKind::Spot, [&](osg::Light &light) {
        light.setInnerConeAngle(inner * Pi / 180.0F);
        light.setOuterConeAngle(outer * Pi / 180.0F);
    }));
    const float angle = degrees * Pi / 180.0F;
    return spot->at({std::sin(angle), 0.0F, -std::cos(angle)}).irradiance.y / 8.0F;
}

} // namespace

TEST(DeltaLightTest, ShinesFromAPointByTheSquareOfTheDistance)
{
    const auto light = lightOf(node(osg::LightKind::Point), upwards({1.0, 2.0, 3.0}));

    const DeltaLight::Arrival near = light->at({1.0F, 2.0F, 1.0F});
    const DeltaLight::Arrival far = light->at({5.0F, 2.0F, 3.0F});

    EXPECT_FLOAT_EQ(near.irradiance.y, 2.0F);
    EXPECT_FLOAT_EQ(near.distance, 2.0F);
    EXPECT_FLOAT_EQ(near.direction.z, 1.0F);
    EXPECT_FLOAT_EQ(far.irradiance.y, 0.5F);
    EXPECT_FLOAT_EQ(far.distance, 4.0F);
    EXPECT_FLOAT_EQ(far.direction.x, -1.0F);
}

TEST(DeltaLightTest, ShinesInItsColor)
{
    const auto light = lightOf(node(osg::LightKind::Point, [](osg::Light &l) {
        l.setColor({1.0F, 0.5F, 0.25F, 1.0F});
    }));

    const V3 irradiance = light->at({0.0F, 0.0F, -2.0F}).irradiance;

    EXPECT_FLOAT_EQ(irradiance.x, 2.0F);
    EXPECT_FLOAT_EQ(irradiance.y, 1.0F);
    EXPECT_FLOAT_EQ(irradiance.z, 0.5F);
}

TEST(DeltaLightTest, ShinesInADirectionFromEverywhereAlike)
{
    const auto light = lightOf(node(osg::LightKind::Directional), upwards({100.0, 0.0, 0.0}, {3.0, 4.0, 5.0}));

    const DeltaLight::Arrival arrival = light->at({7.0F, -20.0F, 1.0F});

    EXPECT_FLOAT_EQ(arrival.irradiance.y, 8.0F);
    EXPECT_FLOAT_EQ(arrival.direction.y, -1.0F);
    EXPECT_EQ(arrival.distance, std::numeric_limits<float>::infinity());
}

TEST(DeltaLightTest, AimsASpotAlongItsNode)
{
    const auto light = lightOf(node(osg::LightKind::Spot), upwards({0.0, 1.0, 0.0}));

    EXPECT_FLOAT_EQ(light->at({0.0F, 3.0F, 0.0F}).irradiance.y, 2.0F);
    EXPECT_EQ(light->at({0.0F, -1.0F, 0.0F}).irradiance.y, 0.0F);
    EXPECT_EQ(light->at({0.0F, 1.0F, -2.0F}).irradiance.y, 0.0F);
}

TEST(DeltaLightTest, FadesASpotBetweenItsAngles)
{
    EXPECT_FLOAT_EQ(shareAt(0.0F, 20.0F, 30.0F), 1.0F);
    EXPECT_FLOAT_EQ(shareAt(19.99F, 20.0F, 30.0F), 1.0F);
    EXPECT_NEAR(shareAt(22.5F, 20.0F, 30.0F), 0.84375F, 1e-4F);
    EXPECT_NEAR(shareAt(25.0F, 20.0F, 30.0F), 0.5F, 1e-4F);
    EXPECT_NEAR(shareAt(27.5F, 20.0F, 30.0F), 0.15625F, 1e-4F);
    EXPECT_EQ(shareAt(30.01F, 20.0F, 30.0F), 0.0F);
    EXPECT_EQ(shareAt(180.0F, 20.0F, 30.0F), 0.0F);
}

TEST(DeltaLightTest, EndsASpotSharplyWhereItsInnerAngleIsNotTheSmaller)
{
    for (const float inner : {30.0F, 50.0F}) {
        EXPECT_FLOAT_EQ(shareAt(29.99F, inner, 30.0F), 1.0F) << inner;
        EXPECT_EQ(shareAt(30.01F, inner, 30.0F), 0.0F) << inner;
    }
    EXPECT_FLOAT_EQ(shareAt(179.0F, 400.0F, 400.0F), 1.0F) << "all around at the most";
    EXPECT_EQ(shareAt(10.0F, NaN, NaN), 0.0F);
}

TEST(DeltaLightTest, GivesNothingThatIsNoNumber)
{
    const auto brightest = lightOf(node(osg::LightKind::Point, [](osg::Light &l) {
        l.setColor({1e38F, 1e38F, NaN, 1.0F});
        l.setIntensity(1e38F);
    }));

    for (const V3 place : {V3{}, V3{1e-7F, 0.0F, 0.0F}, V3{1e-3F, 0.0F, 0.0F}, V3{1e30F, 0.0F, 0.0F}}) {
        const DeltaLight::Arrival arrival = brightest->at(place);
        EXPECT_TRUE(isFinite(arrival.irradiance)) << place.x;
        EXPECT_EQ(arrival.irradiance.z, 0.0F) << place.x;
    }
    EXPECT_EQ(brightest->at({}).irradiance.x, 0.0F);
}

TEST(DeltaLightTest, StandsForNothingWhereThereIsNoLight)
{
    using osg::LightKind;
    const auto with = [](LightKind kind, const std::function<void(osg::Light &)> &change) {
        return lightOf(node(kind, change)).has_value();
    };

    EXPECT_TRUE(with(LightKind::Point, {}));
    EXPECT_FALSE(with(LightKind::Point, [](osg::Light &l) { l.setIsOn(false); }));
    EXPECT_FALSE(with(LightKind::Point, [](osg::Light &l) { l.setIntensity(0.0F); }));
    EXPECT_FALSE(with(LightKind::Point, [](osg::Light &l) { l.setIntensity(-1.0F); }));
    EXPECT_FALSE(with(LightKind::Point, [](osg::Light &l) { l.setIntensity(NaN); }));
    EXPECT_FALSE(with(LightKind::Point, [](osg::Light &l) { l.setColor({0.0F, 0.0F, 0.0F, 1.0F}); }));
    EXPECT_FALSE(with(LightKind::Point, [](osg::Light &l) { l.setKind(3); }));
}

TEST(DeltaLightTest, StandsForNothingWhereItsNodeStandsNowhereOrIsFlat)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const osg::Matrix nowhere = osg::composeMatrix({nan, 0.0, 0.0}, {}, {1.0, 1.0, 1.0});
    const osg::Matrix flat = osg::composeMatrix({}, {}, {1.0, 1.0, 0.0});
    const osg::Matrix tiny = osg::composeMatrix({}, {}, {1e-30, 1e-30, 1e-30});

    EXPECT_FALSE(lightOf(node(osg::LightKind::Point), nowhere).has_value());
    EXPECT_TRUE(lightOf(node(osg::LightKind::Point), flat).has_value());
    EXPECT_FALSE(lightOf(node(osg::LightKind::Spot), flat).has_value());
    EXPECT_FALSE(lightOf(node(osg::LightKind::Directional), flat).has_value());
    EXPECT_TRUE(lightOf(node(osg::LightKind::Spot), tiny).has_value());
}
