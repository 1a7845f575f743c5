// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/WorkerProcess.h"

#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>

using kximport::WorkerProcess;
using kximport::WorkerRequest;
using testing::StartsWith;
using namespace std::chrono_literals;

namespace {

class WorkerProcessTest : public testing::Test
{
protected:
    osg::Result<std::vector<std::string>> run(const std::string &selfTest)
    {
        WorkerRequest request;
        request.path = folder.file("a.obj");
        request.resultFile = folder.file("result.osb");
        request.workFolder = folder.string();
        request.memory = limits.memory;
        request.selfTest = selfTest;
        return WorkerProcess(program, limits, goOn).run(request);
    }
    /// A program that does what \a commands say; its report goes to descriptor 3.
    void scriptInstead(const std::string &commands)
    {
        program = folder.write("worker.sh", "#!/bin/sh\n" + commands);
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    }

    kxtest::TemporaryFolder folder;
    kxImportLimits limits{std::uint64_t{2} << 30, 60s};
    std::string program = KX_TEST_IMPORT_WORKER;
    std::function<bool()> goOn;
};

TEST_F(WorkerProcessTest, SaysThatAParserCrashed)
{
    const auto result = run("crash");

    ASSERT_FALSE(result);
    EXPECT_THAT(result.reason(), StartsWith("the parser crashed ("));
}

TEST_F(WorkerProcessTest, StopsAParserThatHangs)
{
    limits.time = 300ms;
    const auto start = std::chrono::steady_clock::now();

    const auto result = run("hang");

    ASSERT_FALSE(result);
    EXPECT_EQ(result.reason(), "the parser took longer than 0.3 s");
    EXPECT_LT(std::chrono::steady_clock::now() - start, 20s);
}

TEST_F(WorkerProcessTest, StopsAParserThatHangsWithoutReport)
{
    limits.time = 300ms;

    const auto result = run("quiet hang");

    ASSERT_FALSE(result);
    EXPECT_EQ(result.reason(), "the parser took longer than 0.3 s");
}

TEST_F(WorkerProcessTest, StopsAParserThatNobodyWantsAnyMore)
{
    const std::string pidFile = folder.file("pid");
    int asked = 0;
    goOn = [&] { return ++asked < 3 || !folder.contains("pid"); };
    const std::string begin = "echo $$ >'" + pidFile + ".new'; mv '" + pidFile + ".new' '" + pidFile + "'\n";

    for (const std::string &script : {begin + "exec sleep 100\n", begin + "exec 3>&-; exec sleep 100\n"}) {
        scriptInstead(script);
        const auto result = run("");

        ASSERT_FALSE(result);
        EXPECT_EQ(result.reason(), "it was stopped");
        EXPECT_EQ(kill(std::stoi(folder.read("pid")), 0), -1) << "the process is gone";
        EXPECT_EQ(errno, ESRCH);
        EXPECT_GE(asked, 3);
        std::filesystem::remove(pidFile);
        asked = 0;
    }
}

TEST_F(WorkerProcessTest, StopsAReportWithoutEndThatNobodyWantsAnyMore)
{
    int asked = 0;
    goOn = [&asked] { return ++asked < 3; };

    const auto result = run("flood");

    ASSERT_FALSE(result);
    EXPECT_EQ(result.reason(), "it was stopped");
}

TEST_F(WorkerProcessTest, StopsAParserThatEatsMemory)
{
    limits.memory = std::uint64_t{1} << 30;

    const auto result = run("memory");

    ASSERT_FALSE(result);
    EXPECT_EQ(result.reason(), "the parser needs more than 1024 MiB of memory");
}

TEST_F(WorkerProcessTest, StopsAParserThatEatsMemoryWithoutLimitOfItsOwn)
{
    limits.memory = std::uint64_t{64} << 20;
    scriptInstead("exec '" KX_TEST_IMPORT_WORKER "' --memory=0 --self-test=memory -- x\n");

    const auto result = run("");

    ASSERT_FALSE(result);
    EXPECT_EQ(result.reason(), "the parser needs more than 64 MiB of memory");
}

TEST_F(WorkerProcessTest, StopsAReportWithoutEnd)
{
    limits.time = 300ms;

    const auto result = run("flood");

    ASSERT_FALSE(result);
    EXPECT_EQ(result.reason(), "the parser took longer than 0.3 s");
}

TEST_F(WorkerProcessTest, TellsAnUnexpectedEnd)
{
    const auto result = run("exit");

    ASSERT_FALSE(result);
    EXPECT_EQ(result.reason(), "the parser crashed (exit code 7)");
}

TEST_F(WorkerProcessTest, NamesTheSignal)
{
    scriptInstead("kill -BUS $$\n");

    const auto result = run("");

    ASSERT_FALSE(result);
    EXPECT_EQ(result.reason(), "the parser crashed (Bus error)");
}

TEST_F(WorkerProcessTest, BelievesAReportOnlyWithTheRightEnd)
{
    scriptInstead("echo done >&3; exit 1\n");

    const auto result = run("");

    ASSERT_FALSE(result);
    EXPECT_EQ(result.reason(), "the parser crashed (exit code 1)");
}

TEST_F(WorkerProcessTest, HandsNotesOver)
{
    scriptInstead("echo note eins >&3; echo chatter; echo more >&2; echo note zwei >&3; echo done >&3\n");

    const auto result = run("");

    ASSERT_TRUE(result) << result.reason();
    EXPECT_THAT(result.value(), testing::ElementsAre("eins", "zwei"));
}

TEST_F(WorkerProcessTest, TellsTheProgramsOwnReason)
{
    scriptInstead("echo 'failed it is upside down' >&3; exit 1\n");

    const auto result = run("");

    ASSERT_FALSE(result);
    EXPECT_EQ(result.reason(), "it is upside down");
}

TEST_F(WorkerProcessTest, GivesTheProgramNothingElseOfItsOwn)
{
    const int descriptor = dup(2); // one that is inherited unless somebody prevents it
    scriptInstead("ls /proc/self/fd >'" + folder.file("list") + "'; read line; echo done >&3\n");

    const auto result = run("");
    close(descriptor);

    ASSERT_TRUE(result) << result.reason();
    // Input, output, errors, the report, and the folder that is being listed.
    EXPECT_EQ(folder.read("list"), "0\n1\n2\n3\n4\n");
}

TEST_F(WorkerProcessTest, SaysThatTheProgramCannotBeStarted)
{
    program = folder.file("not there");

    const auto result = run("");

    ASSERT_FALSE(result);
    EXPECT_EQ(result.reason(), "the program '" + program + "' cannot be started: No such file or directory");
}

TEST_F(WorkerProcessTest, WorksWhereTheProgramIgnoresItsChildren)
{
    scriptInstead("echo note ja >&3; echo done >&3\n");
    const auto before = signal(SIGCHLD, SIG_IGN);

    const auto result = run("");

    signal(SIGCHLD, before);
    ASSERT_TRUE(result) << result.reason();
    EXPECT_THAT(result.value(), testing::ElementsAre("ja"));
}

} // namespace
