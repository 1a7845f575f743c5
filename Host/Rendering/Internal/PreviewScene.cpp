// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/PreviewScene.h"

#include "Rendering/Internal/Lathe.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Texture.h"
#include "SceneGraph/UBRDFMaterial.h"

namespace kxRender {

namespace {

constexpr float OrbRadius = 1.0F;
constexpr float OrbHeight = 1.075F; // of its middle above the ground
constexpr float GrooveDepth = 0.055F;
constexpr int OrbSteps = 360;
constexpr int Segments = 192;

float degrees(float d)
{
    return d * Pi / 180.0F;
}

/// 1 in the middle of a band, 0 outside of it, with soft shoulders.
float band(float x, float center, float halfWidth, float softness)
{
    const float d = (halfWidth - std::abs(x - center)) / softness + 0.5F;
    const float c = clamp01(d);
    return c * c * (3.0F - 2.0F * c);
}

/// From the top down, as (distance from the axis, height).
std::vector<ProfilePoint> orbProfile()
{
    std::vector<ProfilePoint> profile;
    for (int i = 0; i <= OrbSteps; ++i) {
        const float t = Pi * static_cast<float>(i) / OrbSteps;
        const float dimple = 0.16F * band(t, 0.0F, degrees(27.0F), degrees(14.0F));
        const float groove = GrooveDepth * band(t, degrees(62.0F), degrees(3.2F), degrees(2.2F));
        const float r = OrbRadius - dimple - groove;
        profile.push_back({r * std::sin(t), r * std::cos(t)});
    }
    return profile;
}

/// A ring with flat faces and narrow round edges.
std::vector<ProfilePoint> ringProfile()
{
    constexpr float Inner = 0.56F;
    constexpr float Outer = 1.02F;
    constexpr float Low = 0.0F;
    constexpr float High = 0.26F;
    constexpr float Round = 0.035F;
    constexpr int Steps = 8;
    struct Corner
    {
        float x;
        float y;
        float start;
    };
    const Corner corners[] = {{Outer - Round, High - Round, 90.0F},
                              {Outer - Round, Low + Round, 0.0F},
                              {Inner + Round, Low + Round, -90.0F},
                              {Inner + Round, High - Round, -180.0F}};
    std::vector<ProfilePoint> profile;
    for (const Corner &corner : corners)
        for (int i = 0; i <= Steps; ++i) {
            const float a = degrees(corner.start - 90.0F * static_cast<float>(i) / Steps);
            profile.push_back({corner.x + Round * std::cos(a), corner.y + Round * std::sin(a)});
        }
    profile.push_back(profile.front());
    return profile;
}

/// Light grey with fine lines, one tile.
osg::FCRef<osg::Image> groundPicture()
{
    constexpr std::uint32_t Size = 256;
    osg::FCRef<osg::Image> image(osg::Image::create());
    const osg::CPEditor edit(image.get(), osg::AllFieldMask);
    if (!image->set(Size, Size, 1, osg::PixelType::UInt8))
        return image;
    std::uint8_t *pixel = image->editPixels().data();
    for (std::uint32_t y = 0; y < Size; ++y)
        for (std::uint32_t x = 0; x < Size; ++x) {
            const bool isLine = x < 5 || y < 5;
            const bool isDark = ((x / 128) + (y / 128)) % 2 == 0;
            *pixel++ = isLine ? 104 : isDark ? 150 : 158;
        }
    return image;
}

osg::FCRef<osg::UBRDFMaterial> groundMaterial()
{
    osg::FCRef<osg::Texture> texture(osg::Texture::create());
    {
        const osg::CPEditor edit(texture.get(), osg::AllFieldMask);
        texture->setImage(groundPicture());
    }
    osg::FCRef<osg::UBRDFMaterial> material(osg::UBRDFMaterial::create());
    const osg::CPEditor edit(material.get(), osg::AllFieldMask);
    material->setDiffuseColor({0.72F, 0.73F, 0.75F, 1.0F});
    material->setDiffuseTexture(texture);
    material->setRoughness(0.55F);
    material->setSpecularColor({0.5F, 0.5F, 0.5F, 1.0F});
    return material;
}

/// The ground, bent upwards far behind.
Mesh ground()
{
    constexpr float Near = 9.0F;
    constexpr float Bend = -6.0F;
    constexpr float Radius = 4.0F;
    constexpr float Half = 16.0F;
    constexpr float TileSize = 0.85F;
    constexpr int Steps = 24;
    std::vector<std::array<float, 3>> line{{Near, 0.0F, 0.0F}, {Bend, 0.0F, 0.0F}}; // z, y, angle
    for (int i = 1; i <= Steps; ++i) {
        const float a = degrees(80.0F * static_cast<float>(i) / Steps);
        line.push_back({Bend - Radius * std::sin(a), Radius * (1.0F - std::cos(a)), a});
    }
    Mesh mesh;
    float along = -Near;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (i > 0)
            along += std::hypot(line[i][0] - line[i - 1][0], line[i][1] - line[i - 1][1]);
        for (const float x : {-Half, Half}) {
            mesh.positions.push_back({x, line[i][1], line[i][0]});
            mesh.normals.push_back({0.0F, std::cos(line[i][2]), std::sin(line[i][2])});
            mesh.coordinates.push_back({x / TileSize + 0.5F, along / TileSize});
        }
        if (i == 0)
            continue;
        const auto n = static_cast<std::uint32_t>(mesh.positions.size());
        for (const std::uint32_t index : {n - 4, n - 3, n - 2, n - 3, n - 1, n - 2})
            mesh.indices.push_back(index);
    }
    return mesh;
}

/// The light of a box with soft borders around a direction, its half width and height as angles.
float box(V3 d, float azimuth, float elevation, float halfWidth, float halfHeight, float softness)
{
    const float a = std::atan2(d.x, d.z) - degrees(azimuth);
    const float wrapped = std::remainder(a, 2.0F * Pi);
    const float e = std::asin(std::clamp(d.y, -1.0F, 1.0F)) - degrees(elevation);
    const float soft = degrees(softness);
    return band(wrapped * std::cos(degrees(elevation)), 0.0F, degrees(halfWidth), soft) *
           band(e, 0.0F, degrees(halfHeight), soft);
}

} // namespace

EnvironmentLight studioLight()
{
    return EnvironmentLight(512, 256, [](V3 d) {
        V3 light = mix(V3{0.05F, 0.05F, 0.055F}, V3{0.20F, 0.21F, 0.23F}, clamp01(0.5F + 0.5F * d.y));
        light += V3{1.0F, 0.93F, 0.84F} * (11.0F * box(d, -48.0F, 42.0F, 24.0F, 17.0F, 3.0F));
        light += V3{0.80F, 0.90F, 1.0F} * (5.5F * box(d, 82.0F, 24.0F, 10.0F, 30.0F, 3.0F));
        light += V3{0.95F, 0.97F, 1.0F} *
                 (3.2F * band(std::acos(std::clamp(d.y, -1.0F, 1.0F)), 0.0F, degrees(24.0F), degrees(6.0F)));
        light += V3{1.0F, 0.98F, 0.95F} * (1.6F * box(d, 20.0F, 8.0F, 7.0F, 14.0F, 4.0F));
        light += V3{0.75F, 0.85F, 1.0F} * (2.2F * box(d, 175.0F, 38.0F, 40.0F, 9.0F, 5.0F));
        return light;
    });
}

Camera previewCamera()
{
    return {{0.0F, 2.35F, 6.6F}, {0.0F, 0.97F, 0.0F}, {0.0F, 1.0F, 0.0F}, degrees(22.0F)};
}

void buildPreviewScene(RenderScene &scene, const osg::MaterialPtr &material)
{
    const SurfaceLibrary::Layers shown = scene.surfaces().add(material);
    Mesh orb = lathe(orbProfile(), Segments, 4.0F, 2.0F);
    place(orb, degrees(34.0F), degrees(-16.0F), {0.0F, OrbHeight, 0.0F});
    orb.layers = shown;
    scene.addMesh(std::move(orb));
    Mesh ring = lathe(ringProfile(), Segments, 4.0F, 1.0F);
    ring.layers = shown;
    scene.addMesh(std::move(ring));

    const osg::FCRef<osg::UBRDFMaterial> groundSurface = groundMaterial();
    Mesh floor = ground();
    floor.layers = scene.surfaces().add(groundSurface.get());
    scene.addMesh(std::move(floor));
    scene.setEnvironment(studioLight());
    scene.commit();
}

} // namespace kxRender
