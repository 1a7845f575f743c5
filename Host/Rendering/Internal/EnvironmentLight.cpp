// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/EnvironmentLight.h"

#include "Rendering/Internal/Sky.h"
#include "Rendering/Internal/TextureMap.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/Texture.h"
#include "SceneGraph/USkyEnvironmentMaterial.h"
#include "SceneGraph/USphereEnvironmentMaterial.h"

namespace kxRender {

namespace {

constexpr float MaxRadiance = 1e6F;
constexpr int MaxMapWidth = 2048; // larger pictures are filtered down: light needs no more
constexpr int SkyWidth = 512;

V3 limited(V3 c)
{
    const auto limit = [](float v) { return std::isfinite(v) ? std::clamp(v, 0.0F, MaxRadiance) : 0.0F; };
    return {limit(c.x), limit(c.y), limit(c.z)};
}

float finiteOr(float value, float fallback)
{
    return std::isfinite(value) ? value : fallback;
}

V3 factorOf(const osg::UEnvironmentMaterial &material)
{
    const osg::Color4f tint = material.getTint();
    return limited(V3{tint[0], tint[1], tint[2]} * std::max(0.0F, finiteOr(material.getIntensity(), 1.0F)));
}

V3 rotated(V3 d, float angle)
{
    const float c = std::cos(angle);
    const float s = std::sin(angle);
    return {c * d.x - s * d.z, d.y, s * d.x + c * d.z};
}

std::optional<EnvironmentLight> fromSphere(const osg::USphereEnvironmentMaterial &material)
{
    const osg::ImagePtr image = material.getImage();
    if (!image || image->isEmpty() || !image->isValid())
        return std::nullopt;
    const osg::FCRef<osg::Texture> texture(osg::Texture::create());
    {
        const osg::CPEditor edit(texture.get(), osg::Texture::ImageFieldMask | osg::Texture::WrapVFieldMask);
        texture->setImage(image);
        texture->setWrapV(static_cast<std::uint32_t>(osg::TextureWrap::Clamp));
    }
    const TextureMap map(texture.get());
    const int width = std::clamp(static_cast<int>(image->getWidth()), 2, MaxMapWidth);
    const V3 factor = factorOf(material);
    const float rotation = finiteOr(material.getRotation(), 0.0F);
    return EnvironmentLight(width, std::max(1, width / 2), [&](V3 direction) {
        const auto [u, v] = EnvironmentLight::toMap(rotated(direction, rotation));
        const auto pixel = map.sample(u, v);
        return limited(V3{pixel[0], pixel[1], pixel[2]} * factor);
    });
}

std::optional<EnvironmentLight> fromSky(const osg::USkyEnvironmentMaterial &material)
{
    const Sky sky(material);
    const V3 factor = factorOf(material);
    const float rotation = finiteOr(material.getRotation(), 0.0F);
    return EnvironmentLight(SkyWidth, SkyWidth / 2,
                            [&](V3 direction) { return limited(sky.radiance(rotated(direction, rotation)) * factor); });
}

/// The first sum above \a value, and what is left of it.
std::pair<int, float> find(const float *sums, int count, float value)
{
    const float *position = std::upper_bound(sums, sums + count, value);
    const int i = std::min(static_cast<int>(position - sums), count - 1);
    const float low = i > 0 ? sums[i - 1] : 0.0F;
    const float range = sums[i] - low;
    return {i, range > 0.0F ? std::clamp((value - low) / range, 0.0F, 0.99999994F) : 0.5F};
}

} // namespace

std::pair<float, float> EnvironmentLight::toMap(V3 d)
{
    return {0.5F + std::atan2(d.x, -d.z) / (2.0F * Pi), 0.5F + std::asin(std::clamp(d.y, -1.0F, 1.0F)) / Pi};
}

V3 EnvironmentLight::toDirection(float u, float v)
{
    const float phi = (u - 0.5F) * 2.0F * Pi;
    const float theta = (v - 0.5F) * Pi;
    return {std::cos(theta) * std::sin(phi), std::sin(theta), -std::cos(theta) * std::cos(phi)};
}

std::optional<EnvironmentLight> EnvironmentLight::from(const osg::MaterialPtr &material)
{
    if (const auto chooser = osg::SwitchMaterialPtr::dcast(material)) {
        const osg::MaterialPtr current = chooser->getCurrentMaterial();
        return osg::SwitchMaterialPtr::dcast(current) ? std::nullopt : from(current);
    }
    if (const auto sphere = osg::USphereEnvironmentMaterialPtr::dcast(material))
        return fromSphere(*sphere);
    if (const auto sky = osg::USkyEnvironmentMaterialPtr::dcast(material))
        return fromSky(*sky);
    return std::nullopt;
}

EnvironmentLight::EnvironmentLight(int width, int height, const std::function<V3(V3)> &radiance)
    : _width(width), _height(height)
{
    const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    _pixels.reserve(count);
    _columns.reserve(count);
    for (int y = 0; y < height; ++y) {
        const float v = (static_cast<float>(y) + 0.5F) / static_cast<float>(height);
        const float area = std::cos((v - 0.5F) * Pi);
        float sum = 0.0F;
        for (int x = 0; x < width; ++x) {
            const V3 value = radiance(toDirection((static_cast<float>(x) + 0.5F) / static_cast<float>(width), v));
            _pixels.push_back(value);
            sum += luminance(value) * area;
            _columns.push_back(sum);
        }
        _total += sum;
        _rows.push_back(_total);
    }
}

std::pair<int, int> EnvironmentLight::pixelOf(V3 direction) const
{
    const auto [u, v] = toMap(direction);
    return {std::clamp(static_cast<int>(u * static_cast<float>(_width)), 0, _width - 1),
            std::clamp(static_cast<int>(v * static_cast<float>(_height)), 0, _height - 1)};
}

V3 EnvironmentLight::texel(int x, int y) const
{
    const int wrappedX = (x % _width + _width) % _width;
    const int clampedY = std::clamp(y, 0, _height - 1);
    return _pixels[static_cast<std::size_t>(clampedY) * static_cast<std::size_t>(_width) +
                   static_cast<std::size_t>(wrappedX)];
}

V3 EnvironmentLight::radiance(V3 direction) const
{
    const auto [u, v] = toMap(direction);
    const float x = u * static_cast<float>(_width) - 0.5F;
    const float y = v * static_cast<float>(_height) - 0.5F;
    const int x0 = static_cast<int>(std::floor(x));
    const int y0 = static_cast<int>(std::floor(y));
    const float fx = x - static_cast<float>(x0);
    const float fy = y - static_cast<float>(y0);
    return mix(mix(texel(x0, y0), texel(x0 + 1, y0), fx), mix(texel(x0, y0 + 1), texel(x0 + 1, y0 + 1), fx), fy);
}

float EnvironmentLight::pdf(V3 direction) const
{
    if (!(_total > 0.0F))
        return 0.0F;
    const auto [x, y] = pixelOf(direction);
    const float cosine = std::sqrt(std::max(0.0F, 1.0F - direction.y * direction.y));
    if (cosine < 1e-5F)
        return 0.0F;
    const float v = (static_cast<float>(y) + 0.5F) / static_cast<float>(_height);
    const float weight = luminance(texel(x, y)) * std::cos((v - 0.5F) * Pi);
    return weight / _total * static_cast<float>(_width) * static_cast<float>(_height) / (2.0F * Pi * Pi * cosine);
}

EnvironmentLight::Sample EnvironmentLight::sample(float u, float v) const
{
    Sample sample;
    if (!(_total > 0.0F))
        return sample;
    const auto [y, fy] = find(_rows.data(), _height, v * _total);
    const float *columns = &_columns[static_cast<std::size_t>(y) * static_cast<std::size_t>(_width)];
    const auto [x, fx] = find(columns, _width, u * columns[_width - 1]);
    sample.direction = toDirection((static_cast<float>(x) + fx) / static_cast<float>(_width),
                                   (static_cast<float>(y) + fy) / static_cast<float>(_height));
    sample.pdf = pdf(sample.direction);
    sample.radiance = radiance(sample.direction);
    return sample;
}

} // namespace kxRender
