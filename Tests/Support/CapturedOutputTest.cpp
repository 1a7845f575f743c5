// SPDX-License-Identifier: Apache-2.0
#include "Support/CapturedOutput.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <iostream>

#include <unistd.h>

using kxtest::CapturedOutput;

namespace {

TEST(CapturedOutputTest, KeepsTheOrderOfEveryWayOfWriting)
{
    CapturedOutput output;

    std::cout << "one\n" << std::flush;
    std::fputs("two\n", stdout);
    std::fflush(stdout);
    const auto written = write(STDOUT_FILENO, "three\n", 6);
    std::cout << "four";

    EXPECT_EQ(written, 6);
    EXPECT_EQ(output.text(), "one\ntwo\nthree\nfour");
}

TEST(CapturedOutputTest, SeparatesTheTwoStreams)
{
    CapturedOutput output(CapturedOutput::StandardOutput);
    CapturedOutput error(CapturedOutput::StandardError);

    std::cout << "out";
    std::cerr << "err";

    EXPECT_EQ(error.text(), "err");
    EXPECT_EQ(output.text(), "out");
}

TEST(CapturedOutputTest, GivesTheStreamBack)
{
    CapturedOutput outer;
    {
        CapturedOutput inner;
        std::cout << "inner";
    }

    std::cout << "outer";

    EXPECT_EQ(outer.text(), "outer");
    EXPECT_EQ(outer.text(), "outer");
}

TEST(CapturedOutputTest, HoldsMoreThanOneBlock)
{
    CapturedOutput output;

    std::cout << std::string(100000, 'x');

    EXPECT_EQ(output.text(), std::string(100000, 'x'));
}

} // namespace
