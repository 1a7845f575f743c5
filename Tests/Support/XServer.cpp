// SPDX-License-Identifier: Apache-2.0
#include "Support/XServer.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kxtest {

namespace {

constexpr int Patience = 30000; // milliseconds
constexpr int NotThere = 127;   // as shells say it

/// In the forked process, which knows nothing of what else runs in this one. Does not return.
[[noreturn]] void becomeServer(pid_t parent, int announcement)
{
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != parent)
        _exit(1); // it ended before it was watched
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup2(announcement, STDOUT_FILENO);
    dup2(nothing, STDIN_FILENO);
    dup2(nothing, STDERR_FILENO); // it warns of keys that nobody has
    execlp("Xvfb", "Xvfb", "-displayfd", "1", "-screen", "0", "1600x1000x24", "-nolisten", "tcp",
           static_cast<char *>(nullptr));
    _exit(NotThere);
}

} // namespace

XServer::XServer()
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        _reason = std::strerror(errno);
        return;
    }
    start(ends[1]);
    close(ends[1]);
    if (_process > 0)
        _display = readDisplay(ends[0]);
    close(ends[0]);
}

XServer::~XServer()
{
    if (_process <= 0)
        return;
    kill(_process, SIGTERM); // it removes its socket
    waitpid(_process, nullptr, 0);
}

void XServer::start(int announcement)
{
    const pid_t self = getpid();
    _process = fork();
    if (_process == 0)
        becomeServer(self, announcement);
    if (_process < 0)
        _reason = std::strerror(errno);
}

/// The server writes its number and a line feed when it is ready, and closes its end when it fails.
std::string XServer::readDisplay(int announcement)
{
    std::string number;
    char letter = 0;
    pollfd waited{announcement, POLLIN, 0};
    while (poll(&waited, 1, Patience) > 0 && read(announcement, &letter, 1) == 1) {
        if (letter == '\n')
            return ':' + number;
        number += letter;
    }
    int status = 0;
    kill(_process, SIGKILL);
    waitpid(_process, &status, 0);
    _process = -1;
    _reason = WIFEXITED(status) && WEXITSTATUS(status) == NotThere ? "the program Xvfb is not installed (package xvfb)"
                                                                   : "the program Xvfb did not become ready";
    return {};
}

} // namespace kxtest
