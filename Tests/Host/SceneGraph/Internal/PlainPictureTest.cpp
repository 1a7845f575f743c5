// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Internal/PlainPicture.h"

#include "SceneGraph/Internal/ImageCodecs.h"

#include "Support/TemporaryFolder.h"

#include <dlfcn.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using namespace osg;

/// The library for all pictures, however the one under test is.
const ImageCodecs &codecs()
{
    static const auto entry =
        reinterpret_cast<ImageCodecs::Entry>(dlsym(dlopen(KX_IMAGE_CODECS, RTLD_LAZY), ImageCodecs::EntryPoint));
    return *entry();
}

/// What it gives.
Pixmap readByCodecs(const std::string &path, const std::string &extension)
{
    auto picture = codecs().read(path, extension);
    EXPECT_TRUE(picture) << path;
    return picture ? std::move(picture.value()) : Pixmap();
}

class PlainPictureTest : public testing::Test
{
protected:
    /// A picture of noise, encoded by the other library.
    std::string encoded(const std::string &extension, std::uint32_t channels, std::uint32_t width = 13)
    {
        std::vector<std::uint8_t> pixels(std::size_t{width} * 7 * channels);
        std::uint32_t noise = 1;
        for (std::uint8_t &value : pixels)
            value = static_cast<std::uint8_t>((noise = noise * 1664525U + 1013904223U) >> 24U);
        const auto bytes = codecs().encode(extension, {width, 7, channels, PixelType::UInt8, pixels});
        EXPECT_TRUE(bytes);
        return {bytes.value().begin(), bytes.value().end()};
    }
    void expectSame(const std::string &path, const std::string &extension)
    {
        const auto plain = readPlainPicture(path);
        ASSERT_TRUE(plain) << path;
        const Pixmap other = readByCodecs(path, extension);
        EXPECT_EQ(plain->width, other.width);
        EXPECT_EQ(plain->height, other.height);
        EXPECT_EQ(plain->channels, other.channels);
        EXPECT_EQ(plain->type, other.type);
        EXPECT_TRUE(plain->pixels == other.pixels) << path;
    }

    kxtest::TemporaryFolder folder;
};

} // namespace

TEST_F(PlainPictureTest, ReadsPngAsTheOtherLibraryDoes)
{
    for (std::uint32_t channels = 1; channels <= 4; ++channels)
        expectSame(folder.write(std::to_string(channels) + ".png", encoded("png", channels)), "png");
}

TEST_F(PlainPictureTest, ReadsJpegAsTheOtherLibraryDoes)
{
    for (const std::uint32_t channels : {1U, 3U})
        expectSame(folder.write(std::to_string(channels) + ".jpg", encoded("jpg", channels, 64)), "jpg");
}

TEST_F(PlainPictureTest, LeavesWhatIsCutOffOrDamagedToTheOtherLibrary)
{
    for (const char *extension : {"png", "jpg"}) {
        const std::string whole = encoded(extension, 3, 64);
        for (std::size_t length = 0; length < whole.size(); length += 1 + whole.size() / 60)
            EXPECT_FALSE(readPlainPicture(folder.write("cut", whole.substr(0, length)))) << extension << ' ' << length;
        std::string damaged = whole;
        damaged[damaged.size() / 2] = static_cast<char>(damaged[damaged.size() / 2] ^ 0x55);
        (void)readPlainPicture(folder.write("damaged", damaged)); // noise in a JPEG may still be one
    }
}

TEST_F(PlainPictureTest, ReadsNothingElse)
{
    EXPECT_FALSE(readPlainPicture(folder.file("none.png")));
    EXPECT_FALSE(readPlainPicture(folder.write("empty.png", "")));
    EXPECT_FALSE(readPlainPicture(folder.write("text.png", "no picture")));
    EXPECT_FALSE(readPlainPicture(folder.write("tiff.png", encoded("tif", 3))));
}

TEST_F(PlainPictureTest, ReadsTheTexturesOfModelsAsTheOtherLibraryDoes)
{
    std::error_code error;
    int count = 0;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(KX_TEST_MODELS, error)) {
        std::string extension = entry.path().extension();
        std::transform(extension.begin(), extension.end(), extension.begin(),
                       [](unsigned char c) { return std::tolower(c); });
        if (extension != ".png" && extension != ".jpg" && extension != ".jpeg")
            continue;
        if (!readPlainPicture(entry.path()))
            continue;
        expectSame(entry.path(), extension.substr(1));
        ++count;
    }
    EXPECT_GT(count, 10) << "the package of test models has to be installed";
}
