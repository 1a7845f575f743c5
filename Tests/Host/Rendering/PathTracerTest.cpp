// SPDX-License-Identifier: Apache-2.0
// Scenes whose light can be worked out by hand.
#include "Rendering/Internal/PathTracer.h"

#include "Rendering/Internal/Lathe.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <gtest/gtest.h>

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

EnvironmentLight evenLight(float strength)
{
    return EnvironmentLight(64, 32, [strength](V3) { return V3{strength, strength, strength}; });
}

/// The mean of a picture, seen from (0, 0, 5) towards the middle unless told otherwise.
V3 seen(const RenderScene &scene, int samples,
        const Camera &camera = {{0.0F, 0.0F, 5.0F}, {}, {0.0F, 1.0F, 0.0F}, 0.1F})
{
    PathTracer tracer(scene);
    tracer.setBackgroundVisible(true);
    Film film(Side, Side);
    EXPECT_TRUE(tracer.render(camera, film, samples, {}));
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
