// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Image.h"

#include "SceneGraph/Compare.h"
#include "SceneGraph/EditCP.h"
#include "Support/CapturedOutput.h"
#include "Support/RecordedLog.h"
#include "Support/TemporaryFolder.h"
#include "Support/WithoutPrivileges.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

#include <cmath>
#include <cstring>
#include <filesystem>

namespace {

using namespace osg;
using testing::ElementsAre;

/// A gradient without symmetry, so that a flip or a swap of channels shows; the alpha reaches 0.
FCRef<Image> makeGradient(std::uint32_t channels, PixelType type)
{
    constexpr std::uint32_t Width = 20;
    constexpr std::uint32_t Height = 12;
    FCRef<Image> image(Image::create());
    EXPECT_TRUE(image->set(Width, Height, channels, type));
    const CPEditor edit(image.get(), Image::PixelsFieldMask);
    std::uint8_t *pixels = image->editPixels().data();
    std::size_t at = 0;
    for (std::uint32_t y = 0; y < Height; ++y)
        for (std::uint32_t x = 0; x < Width; ++x)
            for (std::uint32_t c = 0; c < channels; ++c, ++at) {
                const std::uint32_t level = (c == 0 ? x * 12 : c == 1 ? y * 20 : c == 2 ? 100 + x * 3 : y * 11);
                if (type == PixelType::UInt8) {
                    pixels[at] = static_cast<std::uint8_t>(level);
                } else if (type == PixelType::Float) {
                    const float value = static_cast<float>(level) * 0.25F;
                    std::memcpy(pixels + at * 4, &value, 4);
                } else {
                    const auto bits = static_cast<std::uint16_t>(0x3000 + level * 8);
                    std::memcpy(pixels + at * 2, &bits, 2);
                }
            }
    return image;
}

struct FormatCase
{
    const char *extension;
    std::uint32_t channels;
    PixelType type;
};

std::string nameOf(const testing::TestParamInfo<FormatCase> &test)
{
    static constexpr const char *Types[] = {"UInt8", "Half", "Float"};
    return std::string(test.param.extension) + Types[static_cast<std::size_t>(test.param.type)] +
           std::to_string(test.param.channels);
}

class ImageFileLosslessTest : public testing::TestWithParam<FormatCase>
{};

TEST_P(ImageFileLosslessTest, KeepsEveryBit)
{
    const kxtest::TemporaryFolder folder;
    const std::string path = folder.file(std::string("picture.") + GetParam().extension);
    const FCRef<Image> image = makeGradient(GetParam().channels, GetParam().type);

    ASSERT_TRUE(image->write(path));
    const FCRef<Image> copy(Image::create());
    ASSERT_TRUE(copy->read(path));

    EXPECT_EQ(findDifference(image.get(), copy.get()), std::nullopt);
}

constexpr PixelType Byte = PixelType::UInt8;
INSTANTIATE_TEST_SUITE_P(
    Formats, ImageFileLosslessTest,
    testing::Values(FormatCase{"vif", 1, Byte}, FormatCase{"vif", 2, Byte}, FormatCase{"vif", 3, Byte},
                    FormatCase{"vif", 4, Byte}, FormatCase{"vif", 1, PixelType::Half},
                    FormatCase{"vif", 4, PixelType::Half}, FormatCase{"vif", 3, PixelType::Float},
                    FormatCase{"vif", 4, PixelType::Float}, FormatCase{"png", 1, Byte}, FormatCase{"png", 2, Byte},
                    FormatCase{"png", 3, Byte}, FormatCase{"png", 4, Byte}, FormatCase{"PNG", 4, Byte},
                    FormatCase{"tif", 1, Byte}, FormatCase{"tif", 3, Byte}, FormatCase{"tif", 4, Byte},
                    FormatCase{"tiff", 3, PixelType::Float}, FormatCase{"exr", 1, PixelType::Half},
                    FormatCase{"exr", 3, PixelType::Half}, FormatCase{"exr", 4, PixelType::Half},
                    FormatCase{"exr", 3, PixelType::Float}, FormatCase{"exr", 4, PixelType::Float},
                    FormatCase{"bmp", 3, Byte}, FormatCase{"bmp", 4, Byte}, FormatCase{"tga", 3, Byte},
                    FormatCase{"tga", 4, Byte}, FormatCase{"ppm", 3, Byte}),
    nameOf);

class ImageFileTest : public testing::Test
{
protected:
    FCRef<Image> readBack(const std::string &name)
    {
        FCRef<Image> image(Image::create());
        EXPECT_TRUE(image->read(folder.file(name)));
        return image;
    }

    /// The log lines of an attempt to read.
    std::vector<std::string> linesOfReading(const std::string &path)
    {
        const kxtest::RecordedLog log;
        const FCRef<Image> image = makeGradient(1, PixelType::UInt8);
        const FCRef<Image> untouched = makeGradient(1, PixelType::UInt8);
        EXPECT_FALSE(image->read(path));
        EXPECT_EQ(findDifference(image.get(), untouched.get()), std::nullopt);
        EXPECT_EQ(image->source(), "");
        return log.lines();
    }

    kxtest::TemporaryFolder folder;
};

TEST_F(ImageFileTest, KeepsJpegWithinItsLosses)
{
    const FCRef<Image> image = makeGradient(3, PixelType::UInt8);

    ASSERT_TRUE(image->write(folder.file("a.jpg")));
    const FCRef<Image> copy = readBack("a.jpg");

    ASSERT_EQ(copy->getPixels().size(), image->getPixels().size());
    for (std::size_t i = 0; i < image->getPixels().size(); ++i)
        EXPECT_NEAR(copy->getPixels()[i], image->getPixels()[i], 12) << i;
}

TEST_F(ImageFileTest, KeepsHdrWithinItsPrecision)
{
    const FCRef<Image> image = makeGradient(3, PixelType::Float);

    ASSERT_TRUE(image->write(folder.file("a.hdr")));
    const FCRef<Image> copy = readBack("a.hdr");

    ASSERT_EQ(copy->pixelType(), PixelType::Float);
    for (std::uint32_t y = 0; y < image->getHeight(); ++y)
        for (std::uint32_t x = 0; x < image->getWidth(); ++x) {
            const Vec4f expected = image->pixel(x, y);
            const float largest = std::max({expected[0], expected[1], expected[2]});
            for (std::size_t c = 0; c < 3; ++c)
                EXPECT_NEAR(copy->pixel(x, y)[c], expected[c], largest / 128.0F);
        }
}

TEST_F(ImageFileTest, GivesUpAlphaWhereTheFormatHasNone)
{
    for (const char *name : {"a.jpg", "a.hdr", "a.ppm"}) {
        ASSERT_TRUE(makeGradient(4, PixelType::UInt8)->write(folder.file(name))) << name;
        EXPECT_EQ(readBack(name)->getChannels(), 3U) << name;
    }
}

TEST_F(ImageFileTest, WritesGreyToFormatsThatWantColour)
{
    for (const char *name : {"a.hdr", "a.jpg", "a.tga"}) {
        ASSERT_TRUE(makeGradient(1, PixelType::UInt8)->write(folder.file(name))) << name;
        EXPECT_NEAR(readBack(name)->pixel(19, 0)[0], 228.0F / 255.0F, 0.05F) << name;
    }
}

TEST_F(ImageFileTest, WritesFloatToEightBitFormats)
{
    const FCRef<Image> image(Image::create());
    image->set(4, 4, 3, PixelType::Float);
    for (const char *name : {"a.png", "a.jpg", "a.bmp"}) {
        ASSERT_TRUE(image->write(folder.file(name))) << name;
        EXPECT_EQ(readBack(name)->pixel(0, 0)[0], 0.0F) << name;
    }
}

TEST_F(ImageFileTest, WritesHalfToTiffAsTheSameFloats)
{
    const FCRef<Image> image = makeGradient(4, PixelType::Half);

    ASSERT_TRUE(image->write(folder.file("a.tif")));
    const FCRef<Image> copy = readBack("a.tif");

    EXPECT_EQ(copy->pixelType(), PixelType::Float);
    EXPECT_EQ(copy->pixel(19, 11), image->pixel(19, 11));
    EXPECT_EQ(copy->pixel(3, 0), image->pixel(3, 0));
}

TEST_F(ImageFileTest, ReadsRowsFromTheBottomUp)
{
    // Top row white, bottom row black, in a format whose rows can be seen.
    folder.write("a.pgm", std::string("P5\n1 2\n255\n\xFF\0", 13));

    EXPECT_EQ(readBack("a.pgm")->getPixels().values(), (std::vector<std::uint8_t>{0, 255}));
}

TEST_F(ImageFileTest, ReadsSixteenBitsAsFloat)
{
    folder.write("a.pgm", std::string("P5\n1 1\n65535\n\x80\0", 15));

    const FCRef<Image> image = readBack("a.pgm");
    EXPECT_EQ(image->pixelType(), PixelType::Float);
    EXPECT_NEAR(image->pixel(0, 0)[0], 32768.0 / 65535.0, 1e-6);
}

TEST_F(ImageFileTest, RemembersWhereThePictureCameFrom)
{
    ASSERT_TRUE(makeGradient(3, PixelType::UInt8)->write(folder.file("a.png")));

    EXPECT_EQ(readBack("a.png")->source(), folder.file("a.png"));
}

TEST_F(ImageFileTest, TakesAnyName)
{
    const FCRef<Image> image = makeGradient(4, PixelType::UInt8);
    for (const std::string name : {"木 äa\xCC\x88.png", "a#1.png", "a?x=1.png", "a%04d.png", "a*.vif", "two\nlines.png",
                                   ".png", "a.b.c.png", "trailing. .png"}) {
        ASSERT_TRUE(image->write(folder.file(name))) << name;
        EXPECT_EQ(findDifference(image.get(), readBack(name).get()), std::nullopt) << name;
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 9);
}

TEST_F(ImageFileTest, ReadsAPictureWithAWrongExtensionByItsContent)
{
    const FCRef<Image> image = makeGradient(3, PixelType::UInt8);
    ASSERT_TRUE(image->write(folder.file("a.png")));
    for (const char *name : {"a.jpg", "a.tif", "a.exr", "a.dat", "picture"}) {
        folder.write(name, folder.read("a.png"));
        EXPECT_EQ(findDifference(image.get(), readBack(name).get()), std::nullopt) << name;
    }
}

TEST_F(ImageFileTest, SaysInOneLineWhyItCannotRead)
{
    folder.makeFolder("folder.png");
    folder.write("text.png", "this is no picture");
    folder.write("empty.png", "");
    ASSERT_EQ(::mkfifo(folder.file("pipe.png").c_str(), 0600), 0);
    const auto line = [&](const std::string &name, const std::string &why) {
        return "Cannot read image \"" + folder.file(name) + "\": " + why;
    };

    EXPECT_THAT(linesOfReading(folder.file("none.png")), ElementsAre(line("none.png", "No such file or directory")));
    EXPECT_THAT(linesOfReading(folder.file("none.vif")), ElementsAre(line("none.vif", "No such file or directory")));
    EXPECT_THAT(linesOfReading(folder.file("folder.png")), ElementsAre(line("folder.png", "Is a directory")));
    EXPECT_THAT(linesOfReading(folder.file("pipe.png")), ElementsAre(line("pipe.png", "Not a regular file")));
    for (const std::string name : {"text.png", "empty.png"}) {
        const auto lines = linesOfReading(folder.file(name));
        ASSERT_EQ(lines.size(), 1U);
        EXPECT_EQ(lines[0].substr(0, line(name, "").size()), line(name, ""));
        EXPECT_GT(lines[0].size(), line(name, "").size());
        EXPECT_EQ(lines[0].find('\n'), std::string::npos);
    }
}

TEST_F(ImageFileTest, RefusesAPictureThatIsCutOff)
{
    for (const std::string extension : {"png", "tif", "exr", "vif"}) {
        ASSERT_TRUE(makeGradient(4, PixelType::UInt8)->write(folder.file("a." + extension)));
        const std::string whole = folder.read("a." + extension);
        for (const std::size_t length : {std::size_t{1}, std::size_t{20}, whole.size() / 2, whole.size() * 9 / 10}) {
            folder.write("cut." + extension, whole.substr(0, length));
            kxtest::CapturedOutput output(kxtest::CapturedOutput::StandardError);
            EXPECT_EQ(linesOfReading(folder.file("cut." + extension)).size(), 1U) << extension << " " << length;
            EXPECT_EQ(output.text(), "") << extension << " " << length;
        }
    }
}

TEST_F(ImageFileTest, RefusesAHeaderThatClaimsTheWorld)
{
    // 65,000 pixels square in a file of a few bytes.
    folder.write("a.ppm", "P6\n65000 65000\n255\nabc");
    folder.write("b.hdr", "#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 60000 +X 60000\nabc");

    EXPECT_EQ(linesOfReading(folder.file("a.ppm")).size(), 1U);
    EXPECT_EQ(linesOfReading(folder.file("b.hdr")).size(), 1U);
}

TEST_F(ImageFileTest, SaysInOneLineWhyItCannotWrite)
{
    const FCRef<Image> image = makeGradient(3, PixelType::UInt8);
    folder.makeFolder("locked");
    ::chmod(folder.file("locked").c_str(), 0555);
    ::chmod(folder.string().c_str(), 0755);
    const auto linesOfWriting = [&](const Image &picture, const std::string &name) {
        const kxtest::RecordedLog log;
        EXPECT_FALSE(picture.write(folder.file(name)));
        EXPECT_FALSE(folder.contains(name));
        return log.lines();
    };
    const auto line = [&](const std::string &name, const std::string &why) {
        return "Cannot write image \"" + folder.file(name) + "\": " + why;
    };

    EXPECT_THAT(linesOfWriting(*image, "none/a.png"), ElementsAre(line("none/a.png", "No such file or directory")));
    EXPECT_THAT(linesOfWriting(*image, "none/a.vif"), ElementsAre(line("none/a.vif", "No such file or directory")));
    EXPECT_EQ(linesOfWriting(*image, "a.unknown").size(), 1U);
    EXPECT_THAT(linesOfWriting(*image, "noextension"), ElementsAre(line("noextension", "The format is not known")));
    EXPECT_THAT(linesOfWriting(*image, "a.null"), ElementsAre(line("a.null", "The format is not known")));
    EXPECT_THAT(linesOfWriting(*FCRef<Image>(Image::create()), "a.png"),
                ElementsAre(line("a.png", "The picture is empty")));
    const kxtest::WithoutPrivileges user;
    EXPECT_THAT(linesOfWriting(*image, "locked/a.png"), ElementsAre(line("locked/a.png", "Permission denied")));
    EXPECT_THAT(linesOfWriting(*image, "locked/a.vif"), ElementsAre(line("locked/a.vif", "Permission denied")));
}

TEST_F(ImageFileTest, RefusesToWriteADamagedPicture)
{
    const FCRef<Image> image = makeGradient(3, PixelType::UInt8);
    {
        const CPEditor edit(image.get(), Image::PixelsFieldMask);
        image->editPixels().resize(10);
    }
    const kxtest::RecordedLog log;

    EXPECT_FALSE(image->write(folder.file("a.png")));
    EXPECT_FALSE(image->write(folder.file("a.vif")));

    EXPECT_EQ(log.lines().size(), 2U);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(ImageFileTest, LeavesNothingButThePictureBehind)
{
    for (const char *name : {"a.png", "a.vif", "a.exr"})
        ASSERT_TRUE(makeGradient(3, PixelType::Float)->write(folder.file(name)));
    ASSERT_TRUE(makeGradient(4, PixelType::UInt8)->write(folder.file("a.png")));

    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 3);
    EXPECT_EQ(readBack("a.png")->getChannels(), 4U);
}

} // namespace
