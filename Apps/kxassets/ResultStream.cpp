// SPDX-License-Identifier: Apache-2.0
#include "kxassets/ResultStream.h"

#include "kxassets/PlainText.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

ResultStream::ResultStream(bool showsDiagnostics)
{
    std::signal(SIGPIPE, SIG_IGN);
    std::fflush(stdout);
    _descriptor = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int elsewhere = showsDiagnostics ? ::dup(STDERR_FILENO) : ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (elsewhere >= 0) {
        ::dup2(elsewhere, STDOUT_FILENO);
        ::close(elsewhere);
    }
}

ResultStream::~ResultStream()
{
    std::fflush(stdout);
    if (_descriptor >= 0)
        ::close(_descriptor);
}

void ResultStream::line(const std::string &text)
{
    write(PlainText::printable(text) + '\n');
}

void ResultStream::write(const std::string &text)
{
    const char *data = text.data();
    std::size_t left = text.size();
    while (left > 0 && !_isClosed) {
        const ssize_t written = ::write(_descriptor, data, left);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0) {
            _isClosed = true;
            if (written < 0 && errno != EPIPE)
                _failure = std::strerror(errno);
            return;
        }
        data += written;
        left -= static_cast<std::size_t>(written);
    }
}
