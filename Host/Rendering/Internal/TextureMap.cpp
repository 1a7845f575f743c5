// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/TextureMap.h"

#include "Rendering/Internal/Vector.h"

#include <algorithm>
#include <cmath>

namespace kxRender {

namespace {

/// IEC 61966-2-1.
float fromSrgb(float value)
{
    return value <= 0.04045F ? value / 12.92F : std::pow((value + 0.055F) / 1.055F, 2.4F);
}

/// The index that a coordinate beyond the picture stands for.
int wrapped(int i, int size, std::uint32_t mode)
{
    if (mode == static_cast<std::uint32_t>(osg::TextureWrap::Clamp))
        return std::clamp(i, 0, size - 1);
    const int period = mode == static_cast<std::uint32_t>(osg::TextureWrap::Mirror) ? 2 * size : size;
    i %= period;
    if (i < 0)
        i += period;
    return i < size ? i : period - 1 - i;
}

/// The two pixels along one axis that a coordinate lies between.
struct Neighbours
{
    int low;
    int high;
    float fraction;
};

Neighbours neighboursOf(float coordinate, int size, std::uint32_t mode)
{
    constexpr float Far = 1e6F; // beyond it a float holds no fraction that matters
    const float x = std::clamp(std::clamp(coordinate, -Far, Far) * static_cast<float>(size) - 0.5F, -2e9F, 2e9F);
    int low = static_cast<int>(x);
    low -= static_cast<float>(low) > x ? 1 : 0;
    const float fraction = x - static_cast<float>(low);
    if (low >= 0 && low + 1 < size) // as nearly all are
        return {low, low + 1, fraction};
    return {wrapped(low, size, mode), wrapped(low + 1, size, mode), fraction};
}

float finite(float value)
{
    return std::isfinite(value) ? value : 0.0F;
}

} // namespace

bool TextureMap::isUsable(const osg::TexturePtr &texture)
{
    return texture && texture->getImage() && !texture->getImage()->isEmpty() && texture->getImage()->isValid();
}

TextureMap::TextureMap(const osg::TexturePtr &texture)
    : _width(static_cast<int>(texture->getImage()->getWidth())),
      _height(static_cast<int>(texture->getImage()->getHeight())), _wrapU(texture->getWrapU()),
      _wrapV(texture->getWrapV())
{
    const float c = std::cos(finite(texture->getRotation()));
    const float s = std::sin(finite(texture->getRotation()));
    const float su = finite(texture->getScale()[0]);
    const float sv = finite(texture->getScale()[1]);
    _matrix = {c * su, -s * sv, finite(texture->getOffset()[0]), s * su, c * sv, finite(texture->getOffset()[1])};

    const osg::ImagePtr image = texture->getImage();
    _isBytes = image->pixelType() == osg::PixelType::UInt8;
    for (std::size_t i = 0; i < _decode.size(); ++i) {
        const float value = static_cast<float>(i) / 255.0F;
        _decode[i] = texture->getIsSrgb() ? fromSrgb(value) : value;
    }
    const std::size_t count = static_cast<std::size_t>(_width) * static_cast<std::size_t>(_height);
    if (_isBytes)
        _bytes.reserve(count * 4);
    else
        _floats.reserve(count);
    for (std::uint32_t y = 0; y < image->getHeight(); ++y)
        for (std::uint32_t x = 0; x < image->getWidth(); ++x) {
            const osg::Vec4f pixel = image->pixel(x, y);
            _isOpaque = _isOpaque && pixel[3] >= 1.0F;
            if (_isBytes)
                for (std::size_t i = 0; i < 4; ++i)
                    _bytes.push_back(static_cast<std::uint8_t>(std::lround(pixel[i] * 255.0F)));
            else
                _floats.push_back({finite(pixel[0]), finite(pixel[1]), finite(pixel[2]), finite(pixel[3])});
        }
}

std::array<float, 2> TextureMap::mapped(float u, float v) const
{
    return {_matrix[0] * u + _matrix[1] * v + _matrix[2], _matrix[3] * u + _matrix[4] * v + _matrix[5]};
}

std::array<float, 2> TextureMap::pixelStep() const
{
    const float scaleU = std::hypot(_matrix[0], _matrix[3]);
    const float scaleV = std::hypot(_matrix[1], _matrix[4]);
    return {1.0F / (static_cast<float>(_width) * std::max(scaleU, 1e-4F)),
            1.0F / (static_cast<float>(_height) * std::max(scaleV, 1e-4F))};
}

std::array<float, 4> TextureMap::texel(int x, int y) const
{
    const std::size_t i = static_cast<std::size_t>(y) * static_cast<std::size_t>(_width) + static_cast<std::size_t>(x);
    if (!_isBytes)
        return _floats[i];
    const std::uint8_t *p = &_bytes[4 * i];
    return {_decode[p[0]], _decode[p[1]], _decode[p[2]], static_cast<float>(p[3]) * (1.0F / 255.0F)};
}

std::array<float, 4> TextureMap::sample(float u, float v) const
{
    const std::array<float, 2> at = mapped(finite(u), finite(v));
    const Neighbours x = neighboursOf(at[0], _width, _wrapU);
    const Neighbours y = neighboursOf(at[1], _height, _wrapV);
    const auto a = texel(x.low, y.low);
    const auto b = texel(x.high, y.low);
    const auto c = texel(x.low, y.high);
    const auto d = texel(x.high, y.high);
    std::array<float, 4> result{};
    for (std::size_t i = 0; i < 4; ++i)
        result[i] = mix(mix(a[i], b[i], x.fraction), mix(c[i], d[i], x.fraction), y.fraction);
    return result;
}

} // namespace kxRender
