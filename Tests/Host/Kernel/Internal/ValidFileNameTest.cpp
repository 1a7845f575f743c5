// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxFile.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string valid(const std::string &name)
{
    return kxFile::makeValidFileName(name);
}

TEST(ValidFileNameTest, KeepsLettersOfAnyScript)
{
    EXPECT_EQ(valid("Brushed Steel #2 (50%)"), "Brushed Steel #2 (50%)");
    EXPECT_EQ(valid("Stühle"), "Stühle");
    EXPECT_EQ(valid("Stu\u0308hle"), "Stu\u0308hle"); // the other form of the umlaut stays what it is
    EXPECT_EQ(valid("漆塗り"), "漆塗り");
    EXPECT_EQ(valid("Кожа"), "Кожа");
    EXPECT_EQ(valid("😀"), "😀");
}

TEST(ValidFileNameTest, ReplacesWhatSomeSystemRefuses)
{
    EXPECT_EQ(valid("a<b>c:d\"e/f\\g|h?i*j"), "a_b_c_d_e_f_g_h_i_j");
    EXPECT_EQ(valid("a\nb\tc\x7f"
                    "d\x01"),
              "a_b_c_d_");
    EXPECT_EQ(valid(std::string("a\0b", 3)), "a_b");
    EXPECT_EQ(valid("a\u2028b\u0085c"), "a_b_c");
}

TEST(ValidFileNameTest, ReplacesWhatActsAsAWildcard)
{
    EXPECT_EQ(valid("Lack [rot]*?"), "Lack _rot___");
}

TEST(ValidFileNameTest, ReplacesBytesThatAreNoText)
{
    EXPECT_EQ(valid("a\xff"
                    "b"),
              "a_b");
}

TEST(ValidFileNameTest, CutsDotsAndBlanksAtTheEnd)
{
    EXPECT_EQ(valid("Oak."), "Oak");
    EXPECT_EQ(valid("Oak . . "), "Oak");
    EXPECT_EQ(valid("v1.2"), "v1.2");
}

TEST(ValidFileNameTest, MakesNoHiddenFile)
{
    EXPECT_EQ(valid(".hidden"), "_hidden");
}

TEST(ValidFileNameTest, IsNeverEmpty)
{
    EXPECT_EQ(valid(""), "unnamed");
    EXPECT_EQ(valid("   "), "unnamed");
    EXPECT_EQ(valid(".."), "unnamed");
    EXPECT_EQ(valid("/"), "_");
}

TEST(ValidFileNameTest, AvoidsTheNamesOfDevices)
{
    EXPECT_EQ(valid("CON"), "CON_");
    EXPECT_EQ(valid("nul.txt"), "nul_.txt");
    EXPECT_EQ(valid("Com1"), "Com1_");
    EXPECT_EQ(valid("LPT9 .x"), "LPT9_ .x");
    EXPECT_EQ(valid("COM²"), "COM²_");
    EXPECT_EQ(valid("CONIN$"), "CONIN$_");
    EXPECT_EQ(valid("aux. "), "aux_");
    EXPECT_EQ(valid("Console"), "Console");
    EXPECT_EQ(valid("COM10"), "COM10");
}

TEST(ValidFileNameTest, BoundsTheLengthInBytes)
{
    EXPECT_EQ(valid(std::string(200, 'x')), std::string(200, 'x'));
    EXPECT_EQ(valid(std::string(201, 'x')), std::string(200, 'x'));
}

TEST(ValidFileNameTest, CutsNoCharacterApart)
{
    EXPECT_EQ(valid("x" + std::string(198, 'y') + "ü"), "x" + std::string(198, 'y'));
    std::string kanji;
    std::string expected;
    for (int i = 0; i < 80; ++i) {
        kanji += "漆";
        if (i < 66)
            expected += "漆";
    }
    EXPECT_EQ(valid(kanji), expected);
}

TEST(ValidFileNameTest, CutsNoAccentFromItsLetter)
{
    EXPECT_EQ(valid(std::string(198, 'y') + "u\u0308"), std::string(198, 'y'));
}

TEST(ValidFileNameTest, CutsDotsAndBlanksThatTheBoundLeaves)
{
    EXPECT_EQ(valid(std::string(198, 'x') + "..y"), std::string(198, 'x'));
}

TEST(ValidFileNameTest, LeavesAValidNameAsItIs)
{
    for (const char *name : {"a<b", ".hidden", "", "CON", "aux. ", "nul.txt", "Oak . . ", "LPT9 .x"})
        EXPECT_EQ(valid(valid(name)), valid(name)) << name;
}

} // namespace
