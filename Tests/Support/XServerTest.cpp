// SPDX-License-Identifier: Apache-2.0
#include "Support/XServer.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Where its clients connect.
std::string socketOf(const std::string &display)
{
    return "/tmp/.X11-unix/X" + display.substr(1);
}

TEST(XServerTest, GivesEachItsOwnDisplay)
{
    const kxtest::XServer one;
    const kxtest::XServer other;

    ASSERT_FALSE(one.display().empty()) << one.reason();
    ASSERT_FALSE(other.display().empty()) << other.reason();
    EXPECT_NE(one.display(), other.display());
    EXPECT_TRUE(std::filesystem::exists(socketOf(one.display())));
}

TEST(XServerTest, EndsWithTheObject)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    {
        const kxtest::XServer server; // inherits the pipe as well, and keeps it open while it lives
        close(ends[1]);
        ASSERT_FALSE(server.display().empty()) << server.reason();
        pollfd still{ends[0], POLLIN, 0};
        ASSERT_EQ(poll(&still, 1, 0), 0) << "the pipe does not show whether the server lives";
    }

    // its socket would not tell: another server may have the number by now
    pollfd ended{ends[0], POLLIN, 0};
    EXPECT_EQ(poll(&ended, 1, 0), 1) << "the server still runs";
    close(ends[0]);
}

TEST(XServerTest, EndsWithAProcessThatIsKilled)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t process = fork();
    if (process == 0) {
        const kxtest::XServer server; // inherits the pipe as well, and keeps it open while it lives
        const char isRunning = server.display().empty() ? 0 : 1;
        if (write(ends[1], &isRunning, 1) == 1)
            pause();
        _exit(1);
    }
    close(ends[1]);
    char isRunning = 0;
    ASSERT_EQ(read(ends[0], &isRunning, 1), 1);
    ASSERT_EQ(isRunning, 1);

    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);

    pollfd waited{ends[0], POLLIN, 0};
    ASSERT_EQ(poll(&waited, 1, 30000), 1) << "the server still runs";
    EXPECT_EQ(read(ends[0], &isRunning, 1), 0);
    close(ends[0]);
}

TEST(XServerTest, SaysWhatIsMissing)
{
    const std::string before = std::getenv("PATH");
    setenv("PATH", "/nowhere", 1);
    const kxtest::XServer server;
    setenv("PATH", before.c_str(), 1);

    EXPECT_EQ(server.display(), "");
    EXPECT_EQ(server.reason(), "the program Xvfb is not installed (package xvfb)");
}

} // namespace
