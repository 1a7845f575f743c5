// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/PictureOperations.h"

#include "SceneGraph/EditCP.h"
#include "SceneGraph/NameAttachment.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace kximport {

namespace {

using Bytes = std::vector<std::uint8_t>;

bool isPlain(const osg::Image &image)
{
    return image.isValid() && !image.isEmpty() && image.pixelType() == osg::PixelType::UInt8;
}

bool hasAlpha(const osg::Image &image)
{
    return image.getChannels() == 2 || image.getChannels() == 4;
}

std::size_t pixelCount(const osg::Image &image)
{
    return std::size_t{image.getWidth()} * image.getHeight();
}

/// Where one pixel lies that covers pixel (\a x, \a y) of a picture of another size.
std::size_t offsetFor(const osg::Image &image, std::size_t x, std::size_t width, std::size_t y, std::size_t height)
{
    const std::size_t column = x * image.getWidth() / width;
    const std::size_t row = y * image.getHeight() / height;
    return (row * image.getWidth() + column) * image.getChannels();
}

bool alphaSaysSomething(const osg::Image &image)
{
    if (!hasAlpha(image))
        return false;
    const std::size_t channels = image.getChannels();
    const Bytes &pixels = image.getPixels().values();
    for (std::size_t i = channels - 1; i < pixels.size(); i += channels)
        if (pixels[i] != 255)
            return true;
    return false;
}

osg::ImagePtr makeImage(const osg::Image &like, std::uint32_t channels, Bytes &&pixels)
{
    const osg::ImagePtr image = osg::Image::create();
    {
        const osg::CPEditor edit(image);
        image->setWidth(like.getWidth());
        image->setHeight(like.getHeight());
        image->setChannels(channels);
        image->setDataType(like.getDataType());
        image->editPixels().values() = std::move(pixels);
    }
    return image;
}

} // namespace

osg::ImagePtr withoutAlpha(const osg::Image &image)
{
    if (!image.isValid() || image.isEmpty() || !hasAlpha(image))
        return nullptr;
    const std::size_t from = image.bytesPerPixel();
    const std::size_t to = from - from / image.getChannels();
    const Bytes &source = image.getPixels().values();
    Bytes pixels(pixelCount(image) * to);
    for (std::size_t i = 0; i < pixelCount(image); ++i)
        for (std::size_t j = 0; j < to; ++j)
            pixels[i * to + j] = source[i * from + j];
    return makeImage(image, image.getChannels() - 1, std::move(pixels));
}

osg::ImagePtr withHardAlpha(const osg::Image &image, float threshold)
{
    if (!isPlain(image) || !hasAlpha(image))
        return nullptr;
    const std::size_t channels = image.getChannels();
    Bytes pixels = image.getPixels().values();
    for (std::size_t i = channels - 1; i < pixels.size(); i += channels)
        pixels[i] = static_cast<float>(pixels[i]) >= threshold * 255.0F ? 255 : 0;
    return makeImage(image, image.getChannels(), std::move(pixels));
}

osg::ImagePtr withOpacity(const osg::ImagePtr &colors, const osg::Image &opacity)
{
    if (!isPlain(opacity) || (colors && !isPlain(*colors)))
        return nullptr;
    const osg::Image &size = colors ? *colors : opacity;
    const std::size_t width = size.getWidth();
    const std::size_t height = size.getHeight();
    const std::size_t opacityChannel = alphaSaysSomething(opacity) ? opacity.getChannels() - 1 : 0;

    Bytes pixels(width * height * 4, 255);
    for (std::size_t y = 0; y < height; ++y)
        for (std::size_t x = 0; x < width; ++x) {
            std::uint8_t *pixel = pixels.data() + (y * width + x) * 4;
            if (colors) {
                const std::uint8_t *color = colors->getPixels().data() + offsetFor(*colors, x, width, y, height);
                const bool isGrey = colors->getChannels() <= 2;
                for (std::size_t i = 0; i < 3; ++i)
                    pixel[i] = color[isGrey ? 0 : i];
            }
            pixel[3] = opacity.getPixels()[offsetFor(opacity, x, width, y, height) + opacityChannel];
        }
    return makeImage(size, 4, std::move(pixels));
}

osg::ImagePtr invertedToGreen(const osg::Image &image, std::size_t channel)
{
    if (!isPlain(image) || channel >= image.getChannels())
        return nullptr;
    const std::size_t channels = image.getChannels();
    const Bytes &source = image.getPixels().values();
    Bytes pixels(pixelCount(image) * 3);
    for (std::size_t i = 0; i < pixelCount(image); ++i)
        pixels[i * 3 + 1] = static_cast<std::uint8_t>(255 - source[i * channels + channel]);
    return makeImage(image, 3, std::move(pixels));
}

} // namespace kximport
