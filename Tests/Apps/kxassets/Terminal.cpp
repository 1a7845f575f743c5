// SPDX-License-Identifier: Apache-2.0
#include "Terminal.h"

#include <gtest/gtest.h>

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>

namespace kxtest {

Terminal::Terminal(const std::string &folder, const std::vector<std::string> &arguments)
{
    std::vector<std::string> words = arguments;
    words.insert(words.begin(), KX_TEST_PROGRAM);
    std::vector<char *> argv;
    for (std::string &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);

    _process = ::forkpty(&_terminal, nullptr, nullptr, nullptr);
    if (_process == 0) {
        ::setenv("KXASSETS_LIBRARY", "lib", 1);
        if (::chdir(folder.c_str()) == 0)
            ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    EXPECT_GT(_process, 0);
}

Terminal::~Terminal()
{
    if (_process > 0) {
        ::kill(_process, SIGKILL);
        ::waitpid(_process, nullptr, 0);
    }
    ::close(_terminal);
}

bool Terminal::read()
{
    constexpr int Patience = 240000; // ms
    pollfd waiting{_terminal, POLLIN, 0};
    if (::poll(&waiting, 1, Patience) <= 0)
        return false;
    std::array<char, 4096> bytes{};
    const ssize_t count = ::read(_terminal, bytes.data(), bytes.size());
    if (count <= 0)
        return false; // the program closed its side
    _shown.append(bytes.data(), static_cast<std::size_t>(count));
    return true;
}

bool Terminal::waitFor(const std::string &text)
{
    while (_shown.find(text) == std::string::npos)
        if (!read())
            return false;
    return true;
}

void Terminal::interrupt() const
{
    constexpr char CtrlC = '\003';
    EXPECT_EQ(::write(_terminal, &CtrlC, 1), 1);
}

int Terminal::waitForEnd()
{
    while (read())
        ;
    int status = 0;
    ::waitpid(_process, &status, 0);
    _process = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace kxtest
