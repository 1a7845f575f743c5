// SPDX-License-Identifier: Apache-2.0
#include "Rendering/QImageConverter.h"

#include "Rendering/kxImageRenderWidget.h"
#include "SceneGraph/EditCP.h"

#include <QPixelFormat>

#include <gtest/gtest.h>

namespace {

QImage picture(QImage::Format format)
{
    QImage image(5, 3, QImage::Format_RGBA64);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 5; ++x)
            image.setPixelColor(x, y, QColor(x * 60, y * 100, 200 - x * 30, x == 0 ? 128 : 255));
    return image.convertToFormat(format);
}

class QImageConverterFormatTest : public testing::TestWithParam<int>
{};

std::vector<int> allFormats()
{
    std::vector<int> formats;
    for (int format = QImage::Format_Mono; format < QImage::NImageFormats; ++format)
        formats.push_back(format);
    return formats;
}

} // namespace

TEST_P(QImageConverterFormatTest, GivesBackWhatItWasGiven)
{
    const QImage original = picture(static_cast<QImage::Format>(GetParam()));
    const osg::FCRef<osg::Image> image(osg::Image::create());

    ASSERT_TRUE(QImageConverter::convertToOSGImage(original, image));
    const QImage back = QImageConverter::convertToQImage(image);

    // Premultiplied bytes say less of a colour than 16 bits can: those are compared as they are.
    const bool isPremultiplied = original.pixelFormat().premultiplied() == QPixelFormat::Premultiplied;
    const QImage::Format common = isPremultiplied ? original.format() : QImage::Format_RGBA64;
    EXPECT_EQ(back.convertToFormat(common), original.convertToFormat(common));
    EXPECT_EQ(image->getRefCount(), 1);
}

INSTANTIATE_TEST_SUITE_P(All, QImageConverterFormatTest, testing::ValuesIn(allFormats()));

TEST(QImageConverterTest, TurnsRowsUpsideDown)
{
    const osg::FCRef<osg::Image> image(osg::Image::create());
    {
        const osg::CPEditor edit(image.get(), osg::AllFieldMask);
        ASSERT_TRUE(image->set(1, 2, 4, osg::PixelType::UInt8));
        image->editPixels() = osg::MField<std::uint8_t>{1, 2, 3, 4, 5, 6, 7, 8};
    }

    const QImage converted = QImageConverter::convertToQImage(image);

    EXPECT_EQ(converted.pixelColor(0, 1), QColor(1, 2, 3, 4)) << "the scene's first row is the lowest";
    EXPECT_EQ(converted.pixelColor(0, 0), QColor(5, 6, 7, 8));
    EXPECT_EQ(kxImageRenderWidget::convertToQImage(image), converted);
}

TEST(QImageConverterTest, SpreadsGreyWithAlpha)
{
    const osg::FCRef<osg::Image> image(osg::Image::create());
    {
        const osg::CPEditor edit(image.get(), osg::AllFieldMask);
        ASSERT_TRUE(image->set(1, 1, 2, osg::PixelType::UInt8));
        image->editPixels() = osg::MField<std::uint8_t>{100, 50};
    }

    EXPECT_EQ(QImageConverter::convertToQImage(image).pixelColor(0, 0), QColor(100, 100, 100, 50));
}

TEST(QImageConverterTest, AnswersNullWithNull)
{
    const osg::FCRef<osg::Image> image(osg::Image::create());

    EXPECT_TRUE(QImageConverter::convertToQImage(nullptr).isNull());
    EXPECT_TRUE(QImageConverter::convertToQImage(image).isNull());
    EXPECT_FALSE(QImageConverter::convertToOSGImage(QImage(), image));
    EXPECT_FALSE(QImageConverter::convertToOSGImage(picture(QImage::Format_RGB32), nullptr));
    EXPECT_TRUE(image->isEmpty());
}

TEST(QImageConverterTest, RefusesDamagedImages)
{
    const osg::FCRef<osg::Image> image(osg::Image::create());
    const osg::CPEditor edit(image.get(), osg::AllFieldMask);
    image->setWidth(1000);
    image->setHeight(1000);
    image->setChannels(4);
    image->editPixels().resize(10);

    EXPECT_TRUE(QImageConverter::convertToQImage(image).isNull());
}
