// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Internal/VifFormat.h"

#include "SceneGraph/Internal/Checksum.h"
#include "SceneGraph/Internal/Compression.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <numeric>

namespace {

using namespace osg;

/// Puts VIF files together by hand, after the description of the format.
class VifFormatTest : public testing::Test
{
protected:
    std::uint64_t checksum(const std::string &bytes) const { return checksumOf(std::as_bytes(std::span(bytes))); }

    template <class T> static void put(std::string &bytes, std::size_t offset, T value)
    {
        std::memcpy(bytes.data() + offset, &value, sizeof value);
    }

    /// With valid checksums, whatever the numbers say.
    std::string file() const
    {
        std::string header("KXVIF\r\n\x1a", 8);
        header.resize(64);
        put(header, 8, version);
        put(header, 12, width);
        put(header, 16, height);
        put(header, 20, channels);
        put(header, 24, type);
        put(header, 28, encoding);
        put(header, 32, storedSize != 0 ? storedSize : std::uint64_t{stored.size()});
        put(header, 40, checksum(stored));
        put(header, 56, checksum(header.substr(0, 56)));
        return header + stored;
    }

    std::string reasonFor(const std::string &bytes)
    {
        // A new file each time: replacing the content of one would make the system flush it to the disk.
        std::filesystem::remove(folder.file("a.vif"));
        const Result<Pixmap> picture = readVif(folder.write("a.vif", bytes));
        return picture ? "accepted" : picture.reason();
    }
    std::string reason() { return reasonFor(file()); }

    kxtest::TemporaryFolder folder;
    std::uint32_t version = 1;
    std::uint32_t width = 4;
    std::uint32_t height = 2;
    std::uint32_t channels = 3;
    std::uint32_t type = 0;
    std::uint32_t encoding = 0;
    std::uint64_t storedSize = 0;
    std::string stored = std::string(24, 'x');
};

TEST_F(VifFormatTest, ReadsAFileMadeByItsDescription)
{
    const Result<Pixmap> picture = readVif(folder.write("a.vif", file()));

    ASSERT_TRUE(picture);
    EXPECT_EQ(picture.value().width, 4U);
    EXPECT_EQ(picture.value().height, 2U);
    EXPECT_EQ(picture.value().channels, 3U);
    EXPECT_EQ(picture.value().pixels, std::vector<std::uint8_t>(24, 'x'));
}

TEST_F(VifFormatTest, WritesAFileAsItIsDescribed)
{
    const std::vector<std::uint8_t> pixels(24, 'x');

    ASSERT_TRUE(writeVif(folder.file("b.vif"), {4, 2, 3, PixelType::UInt8, pixels}));

    // So short and even that it is compressed.
    const auto block = compressed(std::as_bytes(std::span(pixels)));
    encoding = block.empty() ? 0 : 1;
    if (!block.empty())
        stored.assign(reinterpret_cast<const char *>(block.data()), block.size());
    EXPECT_EQ(folder.read("b.vif"), file());
}

TEST_F(VifFormatTest, CompressesWhatGetsShorter)
{
    std::vector<std::uint8_t> pixels(300 * 300 * 4);
    for (std::size_t i = 0; i < pixels.size(); ++i)
        pixels[i] = static_cast<std::uint8_t>(i / 1200);

    ASSERT_TRUE(writeVif(folder.file("b.vif"), {300, 300, 4, PixelType::UInt8, pixels}));

    EXPECT_LT(folder.read("b.vif").size(), pixels.size() / 10);
    EXPECT_EQ(readVif(folder.file("b.vif")).value().pixels, pixels);
}

TEST_F(VifFormatTest, KeepsAnEmptyPicture)
{
    ASSERT_TRUE(writeVif(folder.file("b.vif"), {0, 0, 0, PixelType::UInt8, {}}));

    EXPECT_TRUE(readVif(folder.file("b.vif")));
}

TEST_F(VifFormatTest, RefusesTheFileCutOffAnywhere)
{
    const std::string whole = file();
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_NE(reasonFor(whole.substr(0, length)), "accepted") << length;
    EXPECT_EQ(reasonFor(whole + "x"), "The file's length is not the one in its header");
}

TEST_F(VifFormatTest, RefusesTheFileWithAnyBitWrong)
{
    const std::string whole = file();
    for (std::size_t bit = 0; bit < whole.size() * 8; ++bit) {
        std::string damaged = whole;
        damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << (bit % 8)));
        EXPECT_NE(reasonFor(damaged), "accepted") << bit;
    }
}

TEST_F(VifFormatTest, RefusesAHeaderThatClaimsSixtyFourGigabytes)
{
    width = height = 65535;
    channels = 4;
    type = 2;
    EXPECT_EQ(reason(), "The header gives an impossible size");

    encoding = 1;
    EXPECT_EQ(reason(), "The header gives an impossible size");
    storedSize = std::uint64_t{64} << 30;
    EXPECT_EQ(reason(), "The header gives an impossible size");
}

TEST_F(VifFormatTest, RefusesAClaimBeyondWhatCompressionJustifies)
{
    width = height = 10'000;
    encoding = 1;

    EXPECT_EQ(reason(), "The header gives more pixels than the file holds");
}

TEST_F(VifFormatTest, RefusesNumbersOutOfRange)
{
    width = 65536;
    EXPECT_EQ(reason(), "The header gives an impossible size");
    width = 4;
    channels = 5;
    EXPECT_EQ(reason(), "The header gives an impossible size");
    channels = 3;
    type = 3;
    EXPECT_EQ(reason(), "The header gives an impossible size");
    type = 0;
    encoding = 2;
    EXPECT_EQ(reason(), "The pixels are encoded in an unknown way");
    encoding = 0;
    version = 2;
    EXPECT_EQ(reason(), "Version 2 of the format is not known");
    version = 1;
    height = 3;
    EXPECT_EQ(reason(), "The header gives more pixels than the file holds");
}

TEST_F(VifFormatTest, RefusesLengthsThatWrapAround)
{
    storedSize = ~std::uint64_t{0} - 39;

    EXPECT_EQ(reason(), "The file's length is not the one in its header");
}

TEST_F(VifFormatTest, RefusesACompressedBlockThatIsNone)
{
    encoding = 1;

    EXPECT_EQ(reason(), "The pixels cannot be decompressed");
}

TEST_F(VifFormatTest, RefusesForeignFiles)
{
    EXPECT_EQ(reasonFor(std::string(100, 'x')), "Not a VIF picture");
    EXPECT_EQ(reasonFor(""), "The file is too short for a VIF picture");
}

} // namespace
