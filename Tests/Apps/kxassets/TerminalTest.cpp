// SPDX-License-Identifier: Apache-2.0
#include "Terminal.h"

#include "Support/TemporaryFolder.h"

#include "Program.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

namespace {

class TerminalTest : public testing::Test
{
protected:
    /// A model with one material; the names of all such models' materials differ.
    std::string writeModel(const std::string &name) const
    {
        _folder.write(name + ".mtl", "newmtl " + name + "\nKd 1 0 0\n");
        return _folder.write(name + ".obj",
                             "mtllib " + name + ".mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl " + name + "\nf 1 2 3\n");
    }

    kxtest::TemporaryFolder _folder;
};

} // namespace

TEST_F(TerminalTest, ShowsProgressWithRateAndTimeLeft)
{
    std::vector<std::string> arguments = {"import", "--preview-size", "64", "--preview-samples", "32"};
    for (const char *name : {"One", "Two", "Three", "Four", "Five", "Six"})
        arguments.push_back(writeModel(name));

    kxtest::Terminal terminal(_folder.string(), arguments);

    EXPECT_EQ(terminal.waitForEnd(), 0) << terminal.shown();
    EXPECT_THAT(terminal.shown(), HasSubstr("\r\033[KImporting: 0 of 6 files"));
    EXPECT_THAT(terminal.shown(), ContainsRegex("Importing: [1-5] of 6 files, [0-9.]+ a second, [0-9]+ s left"));
}

TEST_F(TerminalTest, EndsABatchAfterTheStepUnderWayWhenInterrupted)
{
    std::vector<std::string> arguments = {"import", "--preview-size", "256", "--preview-samples", "48"};
    for (const char *name : {"One", "Two", "Three", "Four"})
        arguments.push_back(writeModel(name));
    kxtest::Terminal terminal(_folder.string(), arguments);
    ASSERT_TRUE(terminal.waitFor("imported  One")) << terminal.shown();

    terminal.interrupt();

    EXPECT_EQ(terminal.waitForEnd(), 3);
    EXPECT_THAT(terminal.shown(), HasSubstr("stopping; once more ends at once"));
    EXPECT_THAT(terminal.shown(), HasSubstr("kxassets: stopped before the end"));
    EXPECT_THAT(terminal.shown(), Not(HasSubstr("imported  Four")));
    EXPECT_EQ(kxtest::runProgram(_folder.string(), {"verify"}).exitCode, 0);
}

TEST_F(TerminalTest, EndsAtOnceWhenInterruptedTwice)
{
    // A parser that hangs and hears nothing: the program cannot have ended by itself when the second one comes.
    const std::filesystem::path parser = _folder.file("parser");
    const std::filesystem::path ready = _folder.file("ready");
    std::ofstream(parser) << "#!/bin/sh\ntrap '' INT\n: > '" << ready.string() << "'\nexec sleep 60\n";
    std::filesystem::permissions(parser, std::filesystem::perms::owner_all);
    ::setenv("KX_IMPORT_WORKER", parser.c_str(), 1);
    kxtest::Terminal terminal(_folder.string(), {"import", writeModel("One"), writeModel("Two")});
    ::unsetenv("KX_IMPORT_WORKER");
    ASSERT_TRUE(terminal.waitFor("Importing: 0 of 2 files")) << terminal.shown();
    for (int i = 0; i < 6000 && !std::filesystem::exists(ready); ++i) // until then it would end by the interrupt
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    ASSERT_TRUE(std::filesystem::exists(ready));
    terminal.interrupt();
    ASSERT_TRUE(terminal.waitFor("once more ends at once")) << terminal.shown();

    terminal.interrupt();

    EXPECT_EQ(terminal.waitForEnd(), -1);
}
