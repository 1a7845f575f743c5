// SPDX-License-Identifier: Apache-2.0
#include "SourceTree.h"

#include <gtest/gtest.h>

#include <regex>

namespace {

constexpr const char *Licence = "SPDX-License-Identifier: Apache-2.0";

/// The line that must hold the licence; -1 for files that cannot hold a comment or need none.
int licenceLine(const std::string &path, const std::vector<std::string> &lines)
{
    static const std::regex commented(R"(.*\.(bash|cmake|cpp|fbs|h|py|sh|yml)|(.*/)?CMakeLists\.txt)");
    if (!lines.empty() && lines.front().starts_with("#!"))
        return 1;
    return std::regex_match(path, commented) ? 0 : -1;
}

// Put together from pieces, so that this file itself passes.
std::regex machinePath()
{
    return std::regex(std::string("/") + "root/|/" + "farm/|/" + "work/(main|shared|steering|\\.library)|/" +
                      "tmp/(build|kx|bash_jobs)\\b");
}

std::regex skippedTest()
{
    return std::regex(std::string("GTEST_") + "SKIP|Q" + "SKIP|DIS" + "ABLED_");
}

void expectNowhere(const std::regex &expression, const char *advice)
{
    for (const std::string &path : architecture::projectFiles()) {
        const std::vector<std::string> lines = architecture::readLines(path);
        for (std::size_t i = 0; i < lines.size(); ++i)
            EXPECT_FALSE(std::regex_search(lines[i], expression))
                << path << ":" << i + 1 << ": " << lines[i] << ": " << advice;
    }
}

TEST(FileTextTest, BeginsWithTheLicence)
{
    for (const std::string &path : architecture::projectFiles()) {
        const std::vector<std::string> lines = architecture::readLines(path);
        const int line = licenceLine(path, lines);
        if (line < 0)
            continue;
        ASSERT_GT(lines.size(), static_cast<std::size_t>(line)) << path;
        const std::string comment =
            architecture::isHeader(path) || architecture::isSource(path) || path.ends_with(".fbs") ? "// " : "# ";
        EXPECT_EQ(lines[static_cast<std::size_t>(line)], comment + Licence) << path;
    }
}

TEST(FileTextTest, ProtectsHeadersAgainstBeingReadTwice)
{
    for (const std::string &path : architecture::projectFiles()) {
        if (!architecture::isHeader(path))
            continue;
        const std::vector<std::string> lines = architecture::readLines(path);
        ASSERT_GT(lines.size(), 1U) << path;
        EXPECT_EQ(lines[1], "#pragma once") << path;
    }
}

TEST(FileTextTest, NamesNoPathOfTheMachineItWasWrittenOn)
{
    expectNowhere(machinePath(), "a path that exists on one machine only; make it relative, or a parameter");
}

TEST(FileTextTest, LeavesNoTestOut)
{
    expectNowhere(skippedTest(), "every test runs everywhere; provide what it needs");
}

} // namespace
