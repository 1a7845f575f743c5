// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Internal/Compression.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

using namespace osg;

std::span<const std::byte> bytesOf(const std::string &text)
{
    return std::as_bytes(std::span(text));
}

bool decompressesTo(const std::vector<std::byte> &block, const std::string &expected)
{
    std::string text(expected.size(), '?');
    return decompress(block, std::as_writable_bytes(std::span(text))) && text == expected;
}

TEST(CompressionTest, GivesBackWhatItCompressed)
{
    std::string text;
    for (int i = 0; i < 1000; ++i)
        text += std::to_string(i);

    const std::vector<std::byte> block = compressed(bytesOf(text));

    EXPECT_LT(block.size(), text.size());
    EXPECT_TRUE(decompressesTo(block, text));
}

TEST(CompressionTest, KeepsABlockLongEnoughForItsContent)
{
    const std::string zeros(1'000'000, '\0');

    const std::vector<std::byte> block = compressed(bytesOf(zeros));

    EXPECT_EQ(block.size(), 15'625U);
    EXPECT_TRUE(isPlausibleCompression(block.size(), zeros.size()));
    EXPECT_TRUE(decompressesTo(block, zeros));
}

TEST(CompressionTest, GivesNothingWhereNothingIsGained)
{
    std::mt19937 random(1);
    std::string noise(1000, ' ');
    for (char &c : noise)
        c = static_cast<char>(random());

    EXPECT_TRUE(compressed(bytesOf(noise)).empty());
    EXPECT_TRUE(compressed({}).empty());
}

TEST(CompressionTest, RefusesADamagedBlock)
{
    std::string text(1000, 'x');
    std::vector<std::byte> block = compressed(bytesOf(text));

    EXPECT_FALSE(decompressesTo({}, text));
    EXPECT_FALSE(decompressesTo(std::vector<std::byte>(20), text));
    EXPECT_FALSE(decompressesTo(block, text + "x"));
    EXPECT_FALSE(decompressesTo(block, text.substr(1)));
    block.resize(8);
    EXPECT_FALSE(decompressesTo(block, text));
}

TEST(CompressionTest, KnowsWhatALengthJustifies)
{
    EXPECT_TRUE(isPlausibleCompression(1, 64));
    EXPECT_FALSE(isPlausibleCompression(1, 128));
    EXPECT_FALSE(isPlausibleCompression(1000, ~std::uint64_t{0}));
}

} // namespace
