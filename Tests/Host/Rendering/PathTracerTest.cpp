// SPDX-License-Identifier: Apache-2.0
// Scenes whose light can be worked out by hand.
#include "Rendering/Internal/PathTracer.h"

#include "Rendering/Internal/Lathe.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <gtest/gtest.h>
#include <tbb/global_control.h>

#include <functional>

namespace {

using namespace kxRender;
using Owned = osg::FCRef<osg::UBRDFMaterial>;

constexpr int Side = 8;

Owned material(const std::function<void(osg::UBRDFMaterial &)> &change)
{
    Owned result(osg::UBRDFMaterial::create());
    const osg::CPEditor edit(result.get(), osg::AllFieldMask);
    change(*result);
    return result;
}

Owned chalk(float reflectance, float glow)
{
    return material([&](osg::UBRDFMaterial &m) {
        m.setDiffuseColor({reflectance, reflectance, reflectance, 1.0F});
        m.setSpecularColor({0.0F, 0.0F, 0.0F, 1.0F});
        m.setIncandescenceColor({glow, glow, glow, 1.0F});
        m.setRoughness(1.0F);
    });
}

Owned mirror()
{
    return material([](osg::UBRDFMaterial &m) {
        m.setDiffuseColor({1.0F, 1.0F, 1.0F, 1.0F});
        m.setMetalness(1.0F);
        m.setRoughness(0.0F);
    });
}

Owned glass()
{
    return material([](osg::UBRDFMaterial &m) {
        m.setDiffuseColor({1.0F, 1.0F, 1.0F, 1.0F});
        m.setTransmissionColor({1.0F, 1.0F, 1.0F, 1.0F});
        m.setSpecularColor({1.0F, 1.0F, 1.0F, 1.0F});
        m.setTransparency(1.0F);
        m.setIndexOfRefraction(1.5F);
        m.setRoughness(0.0F);
    });
}

Mesh sphere(float radius)
{
    std::vector<ProfilePoint> profile;
    for (int i = 0; i <= 64; ++i) {
        const float t = Pi * static_cast<float>(i) / 64.0F;
        profile.push_back({radius * std::sin(t), radius * std::cos(t)});
    }
    return lathe(profile, 64, 1.0F, 1.0F);
}

/// A square across the z axis, seen from its front where \a z grows.
Mesh square(float z, bool facesViewer, float half = 50.0F)
{
    Mesh mesh;
    mesh.positions = {{-half, -half, z}, {half, -half, z}, {half, half, z}, {-half, half, z}};
    mesh.normals.assign(4, {0.0F, 0.0F, facesViewer ? 1.0F : -1.0F});
    mesh.coordinates = {{0.0F, 0.0F}, {1.0F, 0.0F}, {1.0F, 1.0F}, {0.0F, 1.0F}};
    mesh.indices =
        facesViewer ? std::vector<std::uint32_t>{0, 1, 2, 0, 2, 3} : std::vector<std::uint32_t>{0, 2, 1, 0, 3, 2};
    return mesh;
}

void add(RenderScene &scene, Mesh mesh, const Owned &surface)
{
    mesh.layers = scene.surfaces().add(surface.get());
    scene.addMesh(std::move(mesh));
}

/// Absorbs all light, but for the share that it lets through unbent.
Owned soot(float opacity)
{
    return material([&](osg::UBRDFMaterial &m) {
        m.setDiffuseColor({0.0F, 0.0F, 0.0F, opacity});
        m.setSpecularColor({0.0F, 0.0F, 0.0F, 1.0F});
    });
}

osg::Matrix at(V3 place)
{
    return osg::composeMatrix({place.x, place.y, place.z}, {}, {1.0, 1.0, 1.0});
}

DeltaLight lamp(osg::LightKind kind, float intensity, const osg::Matrix &toWorld)
{
    const osg::FCRef<osg::Light> light(osg::Light::create());
    {
        const osg::CPEditor edit(light.get(), osg::AllFieldMask);
        light->setKind(static_cast<std::uint32_t>(kind));
        light->setIntensity(intensity);
        light->setInnerConeAngle(20.0F * Pi / 180.0F);
        light->setOuterConeAngle(30.0F * Pi / 180.0F);
    }
    return DeltaLight::from(*light, toWorld).value();
}

DeltaLight pointLight(float intensity, V3 place)
{
    return lamp(osg::LightKind::Point, intensity, at(place));
}

EnvironmentLight evenLight(float strength)
{
    return EnvironmentLight(64, 32, [strength](V3) { return V3{strength, strength, strength}; });
}

/// Of the middle alone, from aside, so that things before it do not hide it.
const Camera ofTheMiddle{{3.0F, 0.0F, 4.0F}, {}, {0.0F, 1.0F, 0.0F}, 0.0005F};

/// A wall across the z axis that reflects 0.6, lit by these lights.
void buildWall(RenderScene &scene, const std::vector<DeltaLight> &lights)
{
    add(scene, square(0.0F, true), chalk(0.6F, 0.0F));
    for (const DeltaLight &light : lights)
        scene.addLight(light);
}

Film filmOf(const RenderScene &scene, int samples, const Camera &camera, int side = Side)
{
    PathTracer tracer(scene);
    tracer.setBackgroundVisible(true);
    Film film(side, side);
    EXPECT_TRUE(tracer.render(camera, film, samples, {}));
    return film;
}

void expectSame(const Film &a, const Film &b)
{
    ASSERT_EQ(a.width(), b.width());
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            EXPECT_EQ(a.color(x, y).x, b.color(x, y).x) << x << ", " << y;
            EXPECT_EQ(a.color(x, y).y, b.color(x, y).y) << x << ", " << y;
            EXPECT_EQ(a.color(x, y).z, b.color(x, y).z) << x << ", " << y;
        }
}

/// The mean of a picture, seen from (0, 0, 5) towards the middle unless told otherwise.
V3 seen(const RenderScene &scene, int samples,
        const Camera &camera = {{0.0F, 0.0F, 5.0F}, {}, {0.0F, 1.0F, 0.0F}, 0.1F})
{
    const Film film = filmOf(scene, samples, camera);
    V3 sum;
    for (int y = 0; y < Side; ++y)
        for (int x = 0; x < Side; ++x)
            sum += film.color(x, y);
    return sum / static_cast<float>(Side * Side);
}

} // namespace

TEST(PathTracerTest, SumsUpTheBouncesInAClosedSphere)
{
    // What glows with e and reflects the share r of everything shines with e / (1 - r).
    for (const float reflectance : {0.0F, 0.5F, 0.7F}) {
        RenderScene scene;
        add(scene, sphere(2.0F), chalk(reflectance, 0.4F));
        scene.commit();

        const V3 light = seen(scene, 256, {{0.3F, 0.2F, 0.1F}, {1.0F, 0.5F, 0.0F}, {0.0F, 1.0F, 0.0F}, 1.2F});

        EXPECT_NEAR(light.y, 0.4F / (1.0F - reflectance), 0.01F * 0.4F / (1.0F - reflectance)) << reflectance;
    }
}

TEST(PathTracerTest, MakesWhiteThingsVanishInEvenLight)
{
    struct Named
    {
        const char *name;
        Owned surface;
        float loss;
    };
    for (const Named &named : {Named{"chalk", chalk(1.0F, 0.0F), 0.005F}, Named{"mirror", mirror(), 0.02F},
                               Named{"glass", glass(), 0.02F}}) {
        RenderScene scene;
        add(scene, sphere(1.0F), named.surface);
        scene.setEnvironment(evenLight(0.8F));
        scene.commit();

        const float light = seen(scene, 128).y;

        EXPECT_LE(light, 0.8F * 1.005F) << named.name;
        EXPECT_GE(light, 0.8F * (1.0F - named.loss)) << named.name;
    }
}

TEST(PathTracerTest, SeesTheSurroundingsInAMirror)
{
    RenderScene scene;
    add(scene, square(0.0F, true), mirror());
    const EnvironmentLight light(256, 128, [](V3 d) {
        return V3{0.5F + 0.4F * d.x, 0.5F + 0.4F * d.y, 0.5F + 0.4F * d.z};
    });
    scene.setEnvironment(light);
    scene.commit();

    const Camera camera{{3.0F, 2.0F, 4.0F}, {}, {0.0F, 1.0F, 0.0F}, 0.02F};
    const V3 color = seen(scene, 32, camera);

    const V3 reflected = normalize({-3.0F, -2.0F, 4.0F});
    EXPECT_NEAR(color.x, 0.5F + 0.4F * reflected.x, 0.01F);
    EXPECT_NEAR(color.y, 0.5F + 0.4F * reflected.y, 0.01F);
    EXPECT_NEAR(color.z, 0.5F + 0.4F * reflected.z, 0.01F);
}

TEST(PathTracerTest, LetsLightThroughAPaneOfGlassAsFresnelSays)
{
    // Light from behind only, seen straight on: both faces reflect R, and what bounces between them adds up to
    // (1 - R) / (1 + R).
    RenderScene scene;
    const Owned surface = glass();
    add(scene, square(0.1F, true), surface);
    add(scene, square(0.0F, false), surface);
    scene.setEnvironment(EnvironmentLight(256, 128, [](V3 d) { return d.z < 0.0F ? V3{1.0F, 1.0F, 1.0F} : V3{}; }));
    scene.commit();

    EXPECT_NEAR(seen(scene, 512).y, 0.96F / 1.04F, 0.01F);
}

TEST(PathTracerTest, BendsNothingByAPaneSeenAslant)
{
    // Directions behind the pane are those before it.
    RenderScene scene;
    const Owned surface = glass();
    add(scene, square(0.01F, true), surface);
    add(scene, square(0.0F, false), surface);
    const V3 ahead = normalize({-0.5F, 0.2F, -1.0F});
    scene.setEnvironment(EnvironmentLight(512, 256, [ahead](V3 d) {
        return dot(d, ahead) > 0.999F ? V3{1.0F, 1.0F, 1.0F} : V3{};
    }));
    scene.commit();

    const Camera camera{V3{} - ahead * 5.0F, {}, {0.0F, 1.0F, 0.0F}, 0.005F};

    EXPECT_GT(seen(scene, 512, camera).y, 0.85F);
}

TEST(PathTracerTest, LightsChalkByTheShareOfTheSkyThatItSees)
{
    // The upper half shines with 1: a level floor gets all of it, a wall half of it.
    const auto upper = [] { return EnvironmentLight(256, 128, [](V3 d) { return d.y > 0.0F ? V3{1, 1, 1} : V3{}; }); };
    RenderScene wall;
    add(wall, square(0.0F, true), chalk(0.6F, 0.0F));
    wall.setEnvironment(upper());
    wall.commit();

    EXPECT_NEAR(seen(wall, 256).y, 0.6F * 0.5F, 0.005F);
}

TEST(PathTracerTest, LightsChalkByAPointAsLambertAndTheSquareOfTheDistanceSay)
{
    // The share r of the light that arrives, I cos / d^2, leaves evenly over a half space: r / pi of it each way.
    struct Named
    {
        V3 place;
        float light;
    };
    for (const Named &named : {Named{{0.0F, 0.0F, 1.0F}, 1.909859F}, Named{{0.0F, 0.0F, 2.0F}, 0.477465F},
                               Named{{0.0F, 0.0F, 4.0F}, 0.119366F}, Named{{0.0F, 3.0F, 4.0F}, 0.061115F}}) {
        RenderScene scene;
        buildWall(scene, {pointLight(10.0F, named.place)});
        scene.commit();

        EXPECT_NEAR(seen(scene, 1, ofTheMiddle).y, named.light, 0.001F * named.light) << named.place.y;
    }
}

TEST(PathTracerTest, DoesNotDimStrongLightsOnTheFirstSurface)
{
    RenderScene scene;
    buildWall(scene, {pointLight(10000.0F, {0.0F, 0.0F, 1.0F})});
    scene.commit();

    EXPECT_NEAR(seen(scene, 1, ofTheMiddle).y, 1909.859F, 2.0F);
}

TEST(PathTracerTest, LightsByADirectionFromAnyPlaceAlike)
{
    // 3 W/m2, straight on and from 60 degrees aside.
    const double half = std::sqrt(0.5);
    for (const osg::Matrix &straight : {at({0.0F, 0.0F, 1.0F}), at({70.0F, -80.0F, -90.0F})}) {
        RenderScene scene;
        buildWall(scene, {lamp(osg::LightKind::Directional, 3.0F, straight)});
        scene.commit();

        EXPECT_NEAR(seen(scene, 1, ofTheMiddle).y, 0.572958F, 0.0005F);
    }
    RenderScene scene;
    const osg::Matrix aside = osg::composeMatrix({}, {0.5, 0.0, 0.0, std::sqrt(0.75)}, {1.0, 1.0, 1.0});
    const osg::Matrix along = osg::composeMatrix({}, {half, 0.0, 0.0, half}, {1.0, 1.0, 1.0});
    buildWall(scene, {lamp(osg::LightKind::Directional, 3.0F, aside), lamp(osg::LightKind::Directional, 3.0F, along)});
    scene.commit();

    EXPECT_NEAR(seen(scene, 1, ofTheMiddle).y, 0.286479F, 0.0005F) << "light along the wall adds nothing";
}

TEST(PathTracerTest, LightsNothingBeyondTheEdgeOfASpot)
{
    // The light stands 2 before the wall and shines straight on it; moved aside by 2 tan(a), it sees the middle at the
    // angle a, from 2 / cos(a). At 19.9 degrees all of it arrives, at 25 half, at 30.1 nothing.
    struct Named
    {
        float aside;
        float light;
    };
    for (const Named &named : {Named{0.0F, 0.477465F}, Named{2.0F * 0.361995F, 0.396939F},
                               Named{2.0F * 0.466308F, 0.177721F}, Named{2.0F * 0.579680F, 0.0F}}) {
        RenderScene scene;
        buildWall(scene, {lamp(osg::LightKind::Spot, 10.0F, at({0.0F, named.aside, 2.0F}))});
        scene.commit();

        EXPECT_NEAR(seen(scene, 1, ofTheMiddle).y, named.light, 0.0005F) << named.aside;
    }
}

TEST(PathTracerTest, HidesALightBehindWhatStandsBeforeIt)
{
    struct Named
    {
        const char *name;
        std::vector<float> blockers;
        float opacity;
        float light;
    };
    for (const Named &named :
         {Named{"between", {1.0F}, 1.0F, 0.0F}, Named{"half of it between", {1.0F}, 0.5F, 0.238732F},
          Named{"behind the light", {3.0F}, 1.0F, 0.477465F}, Named{"half of it behind", {3.0F}, 0.5F, 0.477465F},
          Named{"where the light is", {2.0F}, 1.0F, 0.477465F}, Named{"half of it there", {2.0F}, 0.5F, 0.477465F},
          Named{"between and behind", {1.0F, 2.5F}, 0.5F, 0.238732F},
          Named{"twice between", {0.5F, 1.0F}, 0.5F, 0.119366F}}) {
        RenderScene scene;
        buildWall(scene, {pointLight(10.0F, {0.0F, 0.0F, 2.0F})});
        for (const float z : named.blockers)
            add(scene, square(z, true, 0.2F), soot(named.opacity));
        scene.commit();

        EXPECT_NEAR(seen(scene, 1, ofTheMiddle).y, named.light, 0.0005F) << named.name;
    }
}

TEST(PathTracerTest, HidesADirectionalLightByWhatIsFarAway)
{
    RenderScene scene;
    buildWall(scene, {lamp(osg::LightKind::Directional, 3.0F, {})});
    add(scene, square(1000.0F, true, 0.2F), soot(1.0F));
    scene.commit();

    EXPECT_EQ(seen(scene, 1, ofTheMiddle).y, 0.0F);
}

TEST(PathTracerTest, ChangesNothingByALightThatDoesNotReachTheSurface)
{
    // What is drawn at random is seen in the light that goes to and fro between two walls.
    RenderScene without;
    buildWall(without, {});
    RenderScene behind;
    buildWall(behind, {pointLight(10.0F, {0.0F, 0.0F, -1.0F})});
    for (RenderScene *scene : {&without, &behind}) {
        add(*scene, square(6.0F, false), chalk(0.6F, 0.0F));
        scene->setEnvironment(EnvironmentLight(64, 32, [](V3 d) { return V3{0.5F + 0.4F * d.x, 0.3F, 0.2F}; }));
        scene->commit();
    }

    const Film plain = filmOf(without, 16, ofTheMiddle);

    EXPECT_GT(plain.color(0, 0).y, 0.0F);
    expectSame(filmOf(behind, 16, ofTheMiddle), plain);
}

TEST(PathTracerTest, LightsNothingFromBehindWhereNormalsLeanTowardsTheLight)
{
    // The surface lets half of the light through, so that it does not hide the light itself.
    RenderScene scene;
    Mesh wall = square(0.0F, true);
    wall.normals.assign(4, normalize({0.0F, 0.9F, 0.4F}));
    add(scene, std::move(wall), material([](osg::UBRDFMaterial &m) { m.setDiffuseColor({0.6F, 0.6F, 0.6F, 0.5F}); }));
    scene.addLight(pointLight(100.0F, {0.0F, 5.0F, -1.0F}));
    scene.commit();

    EXPECT_EQ(seen(scene, 16, ofTheMiddle).y, 0.0F);
}

TEST(PathTracerTest, AddsLightsToTheEnvironment)
{
    RenderScene scene;
    buildWall(scene, {pointLight(10.0F, {0.0F, 0.0F, 2.0F})});
    scene.setEnvironment(evenLight(0.5F));
    scene.commit();

    EXPECT_NEAR(seen(scene, 256, ofTheMiddle).y, 0.6F * 0.5F + 0.477465F, 0.005F);
}

TEST(PathTracerTest, SumsUpTheBouncesOfALightInTheMiddleOfASphere)
{
    // I / d^2 = 1 arrives everywhere, of which r / pi is seen at once, and 1 / (1 - r) times that with all bounces.
    for (const float reflectance : {0.3F, 0.5F, 0.7F}) {
        RenderScene scene;
        add(scene, sphere(2.0F), chalk(reflectance, 0.0F));
        scene.addLight(pointLight(4.0F, {}));
        scene.commit();

        const V3 light = seen(scene, 256, {{0.3F, 0.2F, 0.1F}, {1.0F, 0.5F, 0.0F}, {0.0F, 1.0F, 0.0F}, 1.2F});

        const float expected = reflectance / Pi / (1.0F - reflectance);
        EXPECT_NEAR(light.y, expected, 0.01F * expected) << reflectance;
    }
}

TEST(PathTracerTest, LightsByMoreLightsThanEachSurfaceAsksFor)
{
    // 1 + 4 + ... + 121 = 506, all from one place.
    RenderScene scene;
    add(scene, square(0.0F, true), chalk(0.6F, 0.0F));
    for (int i = 1; i <= 11; ++i)
        scene.addLight(pointLight(static_cast<float>(i * i), {0.0F, 0.0F, 2.0F}));
    scene.commit();

    EXPECT_NEAR(seen(scene, 256, ofTheMiddle).y, 24.159733F, 0.1F);
}

TEST(PathTracerTest, LightsAMeshByTheLightsOfItsGroupOnly)
{
    RenderScene scene;
    for (const float intensity : {10.0F, 20.0F, 40.0F})
        scene.addLight(pointLight(intensity, {0.0F, 0.0F, 2.0F}));
    Mesh wall = square(0.0F, true);
    wall.lightGroup = scene.addLightGroup({0, 2});
    add(scene, std::move(wall), chalk(0.6F, 0.0F));
    scene.commit();

    EXPECT_NEAR(seen(scene, 1, ofTheMiddle).y, 5.0F * 0.477465F, 0.003F);
}

TEST(PathTracerTest, TakesTheSamePictureOfManyLightsOnAnyNumberOfThreads)
{
    RenderScene scene;
    add(scene, sphere(2.0F), chalk(0.6F, 0.0F));
    for (int i = 0; i < 9; ++i)
        scene.addLight(pointLight(1.0F + static_cast<float>(i), {0.1F * static_cast<float>(i), 0.0F, 0.0F}));
    scene.commit();
    const Camera camera{{0.3F, 0.2F, 0.1F}, {1.0F, 0.5F, 0.0F}, {0.0F, 1.0F, 0.0F}, 1.2F};

    const Film many = filmOf(scene, 4, camera, 64); // several tiles
    const tbb::global_control one(tbb::global_control::max_allowed_parallelism, 1);

    expectSame(filmOf(scene, 4, camera, 64), many);
}
