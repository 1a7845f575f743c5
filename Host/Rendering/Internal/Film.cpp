// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/Film.h"

#include "SceneGraph/EditCP.h"

#include <algorithm>

namespace kxRender {

namespace {

/// Where the shoulder begins; below it light is shown as it is.
constexpr float Shoulder = 0.6F;

/// Straight up to the shoulder, then towards 1 with the slope kept.
float compressed(float x)
{
    if (x <= Shoulder)
        return x;
    const float range = 1.0F - Shoulder;
    const float over = (x - Shoulder) / range;
    return Shoulder + range * over / (1.0F + over);
}

/// IEC 61966-2-1.
float toSrgb(float v)
{
    v = clamp01(v);
    return v <= 0.0031308F ? 12.92F * v : 1.055F * std::pow(v, 1.0F / 2.4F) - 0.055F;
}

std::uint8_t toByte(float v)
{
    return static_cast<std::uint8_t>(std::lround(clamp01(v) * 255.0F));
}

} // namespace

V3 toneMapped(V3 color)
{
    const float peak = maxOf(color);
    if (!(peak > 0.0F) || !isFinite(color))
        return {};
    // The strongest channel is compressed and the others follow, so that hues stay; what is far too bright fades to
    // white as on film.
    const float mapped = compressed(peak);
    const V3 hueKept = color * (mapped / peak);
    const float fade = clamp01((peak - 1.0F) / (peak + 4.0F));
    const V3 result = mix(hueKept, V3{mapped, mapped, mapped}, fade);
    return {toSrgb(result.x), toSrgb(result.y), toSrgb(result.z)};
}

Film::Film(int width, int height)
    : _width(width), _height(height), _pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height))
{}

void Film::add(int x, int y, V3 color, float alpha)
{
    Pixel &pixel = at(x, y);
    pixel.color += isFinite(color) ? color : V3{};
    pixel.alpha += alpha;
    ++pixel.count;
}

V3 Film::color(int x, int y) const
{
    const Pixel &pixel = at(x, y);
    return pixel.count > 0 ? pixel.color / static_cast<float>(pixel.count) : V3{};
}

float Film::alpha(int x, int y) const
{
    const Pixel &pixel = at(x, y);
    return pixel.count > 0 ? pixel.alpha / static_cast<float>(pixel.count) : 0.0F;
}

std::array<std::uint8_t, 4> Film::developed(int x, int y, float exposure) const
{
    const float a = alpha(x, y);
    const V3 shown = a > 0.0F ? toneMapped(color(x, y) * (exposure / a)) : V3{};
    return {toByte(shown.x), toByte(shown.y), toByte(shown.z), toByte(a)};
}

osg::ImagePtr Film::develop(float exposure) const
{
    osg::FCRef<osg::Image> image(osg::Image::create());
    const osg::CPEditor edit(image.get(), osg::AllFieldMask);
    if (!image->set(static_cast<std::uint32_t>(_width), static_cast<std::uint32_t>(_height), 4, osg::PixelType::UInt8))
        return nullptr;
    std::uint8_t *bytes = image->editPixels().data();
    for (int y = 0; y < _height; ++y)
        for (int x = 0; x < _width; ++x)
            bytes = std::ranges::copy(developed(x, y, exposure), bytes).out;
    return image.take();
}

} // namespace kxRender
