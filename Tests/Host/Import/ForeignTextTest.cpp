// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/ForeignText.h"

#include <gtest/gtest.h>

using namespace kximport;
using namespace std::string_literals;

namespace {

TEST(ForeignTextTest, AcceptsUtf8OfEveryLength)
{
    EXPECT_TRUE(isUtf8("a"));
    EXPECT_TRUE(isUtf8("ä"));
    EXPECT_TRUE(isUtf8("木"));
    EXPECT_TRUE(isUtf8("\xF0\x9F\x8C\xB2"));
    EXPECT_TRUE(isUtf8(""));
}

TEST(ForeignTextTest, RefusesWhatOnlyLooksLikeUtf8)
{
    EXPECT_FALSE(isUtf8("\xE4"));             // ISO 8859-1
    EXPECT_FALSE(isUtf8("\xC0\x80"));         // overlong
    EXPECT_FALSE(isUtf8("\xE0\x80\x80"));     // overlong
    EXPECT_FALSE(isUtf8("\xED\xA0\x80"));     // half of a pair
    EXPECT_FALSE(isUtf8("\xF4\x90\x80\x80")); // beyond the last character
    EXPECT_FALSE(isUtf8("\xE6\x9C"));         // cut off
    EXPECT_FALSE(isUtf8("\xE6\x9C-"));        // interrupted
}

TEST(ForeignTextTest, ReadsOtherTextAsLatin1)
{
    EXPECT_EQ(toUtf8("H\xF6lzern"), "Hölzern");
    EXPECT_EQ(toUtf8("Hölzern"), "Hölzern");
}

TEST(ForeignTextTest, ConvertsUtf16OfBothByteOrders)
{
    EXPECT_EQ(fromUtf16("\xFF\xFE"
                        "a\0"
                        "\xE4\0"s),
              "aä");
    EXPECT_EQ(fromUtf16("\xFE\xFF"
                        "\0a"
                        "\0\xE4"s),
              "aä");
    EXPECT_EQ(fromUtf16("\xFF\xFE\x3C\xD8\x32\xDF"s), "\xF0\x9F\x8C\xB2");
}

TEST(ForeignTextTest, ReplacesHalfCharactersOfUtf16)
{
    EXPECT_EQ(fromUtf16("\xFF\xFE\x3C\xD8"s), "\xEF\xBF\xBD");
    EXPECT_EQ(fromUtf16("\xFF\xFE\x32\xDF"
                        "a\0"s),
              "\xEF\xBF\xBD"
              "a");
}

TEST(ForeignTextTest, LeavesTextWithoutMarkAlone)
{
    EXPECT_EQ(fromUtf16("v 1 2 3"), "v 1 2 3");
    EXPECT_EQ(fromUtf16("v"), "v");
    EXPECT_EQ(fromUtf16(""), "");
}

TEST(ForeignTextTest, KeepsEverythingOnOneLine)
{
    EXPECT_EQ(oneLine(" two\nlines\r\n\tand a tab "), "two lines   and a tab");
    EXPECT_EQ(oneLine("\n \n"), "");
    EXPECT_EQ(oneLine("\x1B[31mred"), "[31mred");
}

TEST(ForeignTextTest, TakesPathsApart)
{
    EXPECT_EQ(fileName("/a/b c/Stuhl.alt.obj"), "Stuhl.alt.obj");
    EXPECT_EQ(fileName("Stuhl.obj"), "Stuhl.obj");
    EXPECT_EQ(baseName("/a/Stuhl.alt.obj"), "Stuhl.alt");
    EXPECT_EQ(baseName("/a.b/Stuhl"), "Stuhl");
    EXPECT_EQ(baseName("/a/.obj"), ".obj");
    EXPECT_EQ(folderOf("/a/b/c.obj"), "/a/b/");
    EXPECT_EQ(folderOf("c.obj"), "./");
}

} // namespace
