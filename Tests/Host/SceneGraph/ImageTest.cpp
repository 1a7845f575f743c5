// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Image.h"

#include "SceneGraph/EditCP.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace {

using namespace osg;

using Bytes = std::vector<std::uint8_t>;

FCRef<Image> makeImage(std::uint32_t width, std::uint32_t height, std::uint32_t channels, const Bytes &pixels)
{
    FCRef<Image> image(Image::create());
    EXPECT_TRUE(image->set(width, height, channels, PixelType::UInt8));
    const CPEditor edit(image.get(), Image::PixelsFieldMask);
    image->editPixels() = pixels;
    return image;
}

template <class T> Bytes bytesOf(const std::vector<T> &values)
{
    Bytes bytes(values.size() * sizeof(T));
    std::memcpy(bytes.data(), values.data(), bytes.size());
    return bytes;
}

TEST(ImageTest, IsEmptyAndValidAtFirst)
{
    const FCRef<Image> image(Image::create());

    EXPECT_TRUE(image->isEmpty());
    EXPECT_TRUE(image->isValid());
    EXPECT_EQ(image->byteCount(), 0U);
}

TEST(ImageTest, IsSetToAnySizeInRangeWithZeros)
{
    const FCRef<Image> image(Image::create());

    EXPECT_TRUE(image->set(3, 2, 4, PixelType::Half));

    EXPECT_EQ(image->getWidth(), 3U);
    EXPECT_EQ(image->getHeight(), 2U);
    EXPECT_EQ(image->getChannels(), 4U);
    EXPECT_EQ(image->pixelType(), PixelType::Half);
    EXPECT_EQ(image->bytesPerPixel(), 8U);
    EXPECT_EQ(image->byteCount(), 48U);
    EXPECT_EQ(image->getPixels().values(), Bytes(48, 0));
    EXPECT_TRUE(image->isValid());
}

TEST(ImageTest, RefusesSizesOutOfRange)
{
    const FCRef<Image> image = makeImage(1, 1, 1, {7});

    EXPECT_FALSE(image->set(65536, 1, 1, PixelType::UInt8));
    EXPECT_FALSE(image->set(1, 65536, 1, PixelType::UInt8));
    EXPECT_FALSE(image->set(1, 1, 5, PixelType::UInt8));
    EXPECT_FALSE(image->set(1, 1, 1, static_cast<PixelType>(3)));

    EXPECT_EQ(image->getPixels().values(), Bytes{7});
}

TEST(ImageTest, IsInvalidWithoutAllItsPixels)
{
    const FCRef<Image> image = makeImage(2, 2, 1, {1, 2, 3});

    EXPECT_FALSE(image->isValid());
    EXPECT_EQ(image->byteCount(), 4U);
}

TEST(ImageTest, GivesPixelsAsRgba)
{
    const auto expectPixel = [](const FCRef<Image> &image, std::uint32_t x, const Vec4f &expected) {
        EXPECT_EQ(image->pixel(x, 0), expected);
    };
    expectPixel(makeImage(2, 1, 1, {0, 51}), 1, {{0.2F, 0.2F, 0.2F, 1.0F}});
    expectPixel(makeImage(1, 1, 2, {51, 102}), 0, {{0.2F, 0.2F, 0.2F, 0.4F}});
    expectPixel(makeImage(1, 1, 3, {0, 51, 255}), 0, {{0.0F, 0.2F, 1.0F, 1.0F}});
    expectPixel(makeImage(1, 1, 4, {0, 51, 255, 0}), 0, {{0.0F, 0.2F, 1.0F, 0.0F}});
}

TEST(ImageTest, GivesPixelsOfHalfAndFloatAsStored)
{
    const FCRef<Image> half(Image::create());
    half->set(1, 1, 1, PixelType::Half);
    const FCRef<Image> full(Image::create());
    full->set(1, 1, 1, PixelType::Float);
    {
        const CPEditor editHalf(half.get());
        half->editPixels() = bytesOf<std::uint16_t>({0x4900}); // 10
        const CPEditor editFull(full.get());
        full->editPixels() = bytesOf<float>({-1000.5F});
    }

    EXPECT_EQ(half->pixel(0, 0)[0], 10.0F);
    EXPECT_EQ(full->pixel(0, 0)[0], -1000.5F);
}

TEST(ImageTest, CountsRowsFromTheBottom)
{
    EXPECT_EQ(makeImage(1, 2, 1, {255, 0})->pixel(0, 0)[0], 1.0F);
}

TEST(ImageTest, GivesBlackForPixelsThatAreNotThere)
{
    const Vec4f black{{0.0F, 0.0F, 0.0F, 1.0F}};

    EXPECT_EQ(makeImage(1, 1, 1, {255})->pixel(1, 0), black);
    EXPECT_EQ(makeImage(1, 1, 1, {255})->pixel(0, 1), black);
    EXPECT_EQ(makeImage(2, 2, 4, {255})->pixel(1, 1), black);
    EXPECT_EQ(FCRef<Image>(Image::create())->pixel(0, 0), black);
}

TEST(ImageTest, AddsOpaqueAlphaInPlace)
{
    const FCRef<Image> image = makeImage(2, 1, 3, {1, 2, 3, 4, 5, 6});

    EXPECT_TRUE(image->reformat(Image::Rgba));

    EXPECT_EQ(image->getChannels(), 4U);
    EXPECT_EQ(image->getPixels().values(), (Bytes{1, 2, 3, 255, 4, 5, 6, 255}));
}

TEST(ImageTest, AddsOpaqueAlphaToHalfAndFloat)
{
    const FCRef<Image> half(Image::create());
    half->set(1, 1, 3, PixelType::Half);
    const FCRef<Image> full(Image::create());
    full->set(1, 1, 3, PixelType::Float);

    EXPECT_TRUE(half->reformat(Image::Rgba));
    EXPECT_TRUE(full->reformat(Image::Rgba));

    EXPECT_EQ(half->pixel(0, 0), (Vec4f{{0.0F, 0.0F, 0.0F, 1.0F}}));
    EXPECT_EQ(full->pixel(0, 0), (Vec4f{{0.0F, 0.0F, 0.0F, 1.0F}}));
    EXPECT_TRUE(half->isValid());
    EXPECT_TRUE(full->isValid());
}

TEST(ImageTest, SpreadsGrey)
{
    const FCRef<Image> image = makeImage(1, 1, 2, {9, 100});
    const FCRef<Image> rgb(Image::create());

    EXPECT_TRUE(image->reformat(Image::Rgb, rgb.get()));
    EXPECT_TRUE(image->reformat(Image::Rgba));

    EXPECT_EQ(rgb->getPixels().values(), (Bytes{9, 9, 9}));
    EXPECT_EQ(image->getPixels().values(), (Bytes{9, 9, 9, 100}));
}

TEST(ImageTest, TakesTheLuminanceForGrey)
{
    const FCRef<Image> image = makeImage(4, 1, 3, {255, 0, 0, 0, 255, 0, 0, 0, 255, 77, 77, 77});

    EXPECT_TRUE(image->reformat(Image::Luminance));

    EXPECT_EQ(image->getPixels().values(), (Bytes{54, 182, 18, 77}));
}

TEST(ImageTest, LeavesTheOriginalAloneWhereThereIsATarget)
{
    const FCRef<Image> image = makeImage(1, 1, 4, {1, 2, 3, 4});
    const FCRef<Image> target = makeImage(1, 1, 1, {9});

    EXPECT_TRUE(image->reformat(Image::Rgba, target.get()));
    EXPECT_TRUE(image->reformat(Image::Rgb, target.get()));

    EXPECT_EQ(target->getPixels().values(), (Bytes{1, 2, 3}));
    EXPECT_EQ(image->getPixels().values(), (Bytes{1, 2, 3, 4}));
}

TEST(ImageTest, RefusesToReformatWhatItCannot)
{
    const FCRef<Image> damaged = makeImage(2, 2, 4, {1});

    EXPECT_FALSE(damaged->reformat(Image::Rgb));
    EXPECT_FALSE(FCRef<Image>(Image::create())->reformat(Image::Rgb));
    const FCRef<Image> image = makeImage(1, 1, 4, {1, 2, 3, 4});
    EXPECT_FALSE(image->reformat(0));
    EXPECT_FALSE(image->reformat(4));

    EXPECT_EQ(image->getPixels().values(), (Bytes{1, 2, 3, 4}));
}

TEST(ImageTest, HashesSizeFormatAndPixels)
{
    const FCRef<Image> image = makeImage(2, 1, 1, {1, 2});

    EXPECT_EQ(image->contentHash(), makeImage(2, 1, 1, {1, 2})->contentHash());
    EXPECT_NE(image->contentHash(), makeImage(1, 2, 1, {1, 2})->contentHash());
    EXPECT_NE(image->contentHash(), makeImage(1, 1, 2, {1, 2})->contentHash());
    EXPECT_NE(image->contentHash(), makeImage(2, 1, 1, {2, 1})->contentHash());
}

} // namespace
