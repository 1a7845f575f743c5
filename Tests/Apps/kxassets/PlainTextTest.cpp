// SPDX-License-Identifier: Apache-2.0
#include "kxassets/PlainText.h"

#include <gtest/gtest.h>

TEST(PlainTextTest, LeavesOrdinaryTextOfAnyScriptAlone)
{
    EXPECT_EQ(PlainText::printable("Grün, matt 漆 №1"), "Grün, matt 漆 №1");
}

TEST(PlainTextTest, ReplacesWhatCommandsATerminalOrBreaksALine)
{
    EXPECT_EQ(PlainText::printable("a\033[31mb\nc\td\x7F"), "a?[31mb?c?d?");
}

TEST(PlainTextTest, ReplacesControlCharactersBeyondAscii)
{
    EXPECT_EQ(PlainText::printable("a\xC2\x9B\x33m b\xE2\x80\xA8"), "a?3m b?");
}

TEST(PlainTextTest, CountsTheColumnsOfATerminal)
{
    EXPECT_EQ(PlainText::columns(""), 0U);
    EXPECT_EQ(PlainText::columns("Grün"), 4U);
    EXPECT_EQ(PlainText::columns("Gru\xCC\x88n"), 4U); // the umlaut as letter and combining mark
    EXPECT_EQ(PlainText::columns("漆_黒"), 5U);
    EXPECT_EQ(PlainText::columns("\xF0\x9F\x8E\xA8"), 2U); // a palette
}
