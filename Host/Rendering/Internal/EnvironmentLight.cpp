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

/// For equal steps of a running sum, the first index whose sum is above the step: a search that begins there takes hardly
/// any steps. Chen and Asau, "On Generating Random Variates from an Empirical Distribution", AIIE Transactions 6(2), 1974.
void appendGuide(std::vector<std::uint16_t> &guide, const float *sums, int count)
{
    const float step = sums[count - 1] / static_cast<float>(count);
    int i = 0;
    for (int k = 0; k < count; ++k) {
        while (i < count - 1 && sums[i] <= step * static_cast<float>(k))
            ++i;
        guide.push_back(static_cast<std::uint16_t>(i));
    }
}

/// The first sum above the \a share of them all, and what is left of it.
std::pair<int, float> find(const float *sums, const std::uint16_t *guide, int count, float share)
{
    const float value = share * sums[count - 1];
    int i = guide[std::min(static_cast<int>(share * static_cast<float>(count)), count - 1)];
    while (i > 0 && sums[i - 1] > value) // rounding may have led one too far
        --i;
    while (i < count - 1 && sums[i] <= value)
        ++i;
    const float low = i > 0 ? sums[i - 1] : 0.0F;
    const float range = sums[i] - low;
    return {i, range > 0.0F ? std::clamp((value - low) / range, 0.0F, 0.99999994F) : 0.5F};
}

} // namespace

std::pair<float, float> EnvironmentLight::toMap(V3 d)
{
    return {0.5F + fastAtan2(d.x, -d.z) / (2.0F * Pi), 0.5F + fastAtan2(d.y, std::sqrt(d.x * d.x + d.z * d.z)) / Pi};
}

V3 EnvironmentLight::toDirection(float u, float v)
{
    // Half a turn further, so that no share is negative.
    const auto [cosine, sine] = turned(u);
    const auto [height, width] = turned(0.5F * v);
    return {-width * sine, -height, width * cosine};
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
        _rowCosines.push_back(area);
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
    _columnGuide.reserve(count);
    for (int y = 0; y < height; ++y)
        appendGuide(_columnGuide, &_columns[static_cast<std::size_t>(y) * static_cast<std::size_t>(width)], width);
    appendGuide(_rowGuide, _rows.data(), height);
}

V3 EnvironmentLight::between(float x, float y) const
{
    // Moved by a whole pixel, so that cutting off the fraction rounds down.
    const float movedX = x + 0.5F;
    const float movedY = y + 0.5F;
    const int left = static_cast<int>(movedX) - 1;
    const int below = static_cast<int>(movedY) - 1;
    const float fx = x - 0.5F - static_cast<float>(left);
    const float fy = y - 0.5F - static_cast<float>(below);
    const int x0 = left < 0 ? _width - 1 : std::min(left, _width - 1);
    const int x1 = left + 1 >= _width ? 0 : left + 1;
    const int y0 = std::clamp(below, 0, _height - 1);
    const int y1 = std::min(below + 1, _height - 1);
    return mix(mix(texel(x0, y0), texel(x1, y0), fx), mix(texel(x0, y1), texel(x1, y1), fx), fy);
}

float EnvironmentLight::pdf(int x, int y, float cosine) const
{
    if (!(_total > 0.0F) || cosine < 1e-5F)
        return 0.0F;
    const float weight = luminance(texel(x, y)) * _rowCosines[static_cast<std::size_t>(y)];
    return weight / _total * static_cast<float>(_width) * static_cast<float>(_height) / (2.0F * Pi * Pi * cosine);
}

EnvironmentLight::Arrival EnvironmentLight::lookUp(V3 direction) const
{
    const auto [u, v] = toMap(direction);
    const float x = clamp01(u) * static_cast<float>(_width);
    const float y = clamp01(v) * static_cast<float>(_height);
    const float cosine = std::sqrt(std::max(0.0F, 1.0F - direction.y * direction.y));
    return {between(x, y),
            pdf(std::min(static_cast<int>(x), _width - 1), std::min(static_cast<int>(y), _height - 1), cosine)};
}

EnvironmentLight::Sample EnvironmentLight::sample(float u, float v) const
{
    if (!(_total > 0.0F))
        return {};
    const auto [y, fy] = find(_rows.data(), _rowGuide.data(), _height, v);
    const std::size_t row = static_cast<std::size_t>(y) * static_cast<std::size_t>(_width);
    const auto [x, fx] = find(&_columns[row], &_columnGuide[row], _width, u);
    const float mapX = static_cast<float>(x) + fx;
    const float mapY = static_cast<float>(y) + fy;
    const V3 direction = toDirection(mapX / static_cast<float>(_width), mapY / static_cast<float>(_height));
    const float cosine = std::sqrt(std::max(0.0F, 1.0F - direction.y * direction.y));
    return {direction, between(mapX, mapY), pdf(x, y, cosine)};
}

} // namespace kxRender
