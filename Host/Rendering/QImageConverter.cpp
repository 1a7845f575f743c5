// SPDX-License-Identifier: Apache-2.0
#include "Rendering/QImageConverter.h"

#include "SceneGraph/EditCP.h"

#include <QPixelFormat>
#include <QRgba64>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr float Max16 = 65535.0F;

quint16 toSixteenBits(float value)
{
    // Written so that what is no number becomes 0.
    return value > 0.0F ? static_cast<quint16>(std::lround(std::min(value, 1.0F) * Max16)) : quint16{0};
}

bool hasMoreThanEightBits(const QImage &image)
{
    const QPixelFormat format = image.pixelFormat();
    return format.redSize() > 8 || format.greenSize() > 8 || format.blueSize() > 8 ||
           image.format() == QImage::Format_Grayscale16;
}

/// The layout of a scene image with the same values.
QImage::Format layoutFor(const QImage &image)
{
    if (hasMoreThanEightBits(image))
        return QImage::Format_RGBA64;
    if (image.hasAlphaChannel())
        return QImage::Format_RGBA8888;
    return image.format() == QImage::Format_Grayscale8 ? QImage::Format_Grayscale8 : QImage::Format_RGB888;
}

std::uint32_t channelsOf(QImage::Format format)
{
    if (format == QImage::Format_Grayscale8)
        return 1;
    return format == QImage::Format_RGB888 ? 3 : 4;
}

void copyFloats(const QImage &source, std::uint8_t *target)
{
    for (int y = source.height() - 1; y >= 0; --y) {
        const auto *row = reinterpret_cast<const QRgba64 *>(source.constScanLine(y));
        for (int x = 0; x < source.width(); ++x, target += 4 * sizeof(float)) {
            const float pixel[] = {static_cast<float>(row[x].red()) / Max16, static_cast<float>(row[x].green()) / Max16,
                                   static_cast<float>(row[x].blue()) / Max16,
                                   static_cast<float>(row[x].alpha()) / Max16};
            std::memcpy(target, pixel, sizeof(pixel));
        }
    }
}

void copyBytes(const QImage &source, std::size_t rowSize, std::uint8_t *target)
{
    for (int y = source.height() - 1; y >= 0; --y, target += rowSize)
        std::memcpy(target, source.constScanLine(y), rowSize);
}

QImage fromBytes(const osg::ImagePtr &image, QImage::Format format)
{
    QImage result(static_cast<int>(image->getWidth()), static_cast<int>(image->getHeight()), format);
    if (result.isNull())
        return result;
    const std::size_t rowSize = image->getWidth() * image->bytesPerPixel();
    const std::uint8_t *row = image->getPixels().data();
    for (int y = result.height() - 1; y >= 0; --y, row += rowSize)
        std::memcpy(result.scanLine(y), row, rowSize);
    return result;
}

QImage fromPixels(const osg::ImagePtr &image)
{
    QImage result(static_cast<int>(image->getWidth()), static_cast<int>(image->getHeight()), QImage::Format_RGBA64);
    for (int y = 0; y < result.height(); ++y) {
        auto *row = reinterpret_cast<QRgba64 *>(result.scanLine(result.height() - 1 - y));
        for (int x = 0; x < result.width(); ++x) {
            const osg::Vec4f pixel = image->pixel(static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y));
            row[x] = QRgba64::fromRgba64(toSixteenBits(pixel[0]), toSixteenBits(pixel[1]), toSixteenBits(pixel[2]),
                                         toSixteenBits(pixel[3]));
        }
    }
    return result;
}

} // namespace

QImage QImageConverter::convertToQImage(const osg::ImagePtr &image)
{
    if (!image || image->isEmpty() || !image->isValid())
        return {};
    if (image->pixelType() != osg::PixelType::UInt8)
        return fromPixels(image);
    switch (image->getChannels()) {
    case 1:
        return fromBytes(image, QImage::Format_Grayscale8);
    case 3:
        return fromBytes(image, QImage::Format_RGB888);
    case 4:
        return fromBytes(image, QImage::Format_RGBA8888);
    default:
        return fromPixels(image).convertToFormat(QImage::Format_RGBA8888);
    }
}

bool QImageConverter::convertToOSGImage(const QImage &source, const osg::ImagePtr &image)
{
    if (source.isNull() || !image)
        return false;
    const QImage::Format layout = layoutFor(source);
    const QImage converted = source.convertToFormat(layout);
    const bool isFloat = layout == QImage::Format_RGBA64;

    const osg::CPEditor edit(image, osg::AllFieldMask);
    if (converted.isNull() ||
        !image->set(static_cast<std::uint32_t>(source.width()), static_cast<std::uint32_t>(source.height()),
                    channelsOf(layout), isFloat ? osg::PixelType::Float : osg::PixelType::UInt8))
        return false;
    if (isFloat)
        copyFloats(converted, image->editPixels().data());
    else
        copyBytes(converted, image->getWidth() * image->bytesPerPixel(), image->editPixels().data());
    return true;
}
