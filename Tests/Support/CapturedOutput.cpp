// SPDX-License-Identifier: Apache-2.0
#include "Support/CapturedOutput.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <iostream>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace kxtest {

namespace {

int checked(int result, const char *call)
{
    if (result < 0)
        throw std::system_error(errno, std::generic_category(), call);
    return result;
}

int makeUnnamedFile()
{
    std::FILE *file = std::tmpfile();
    if (!file)
        throw std::system_error(errno, std::generic_category(), "tmpfile");
    const int descriptor = checked(fcntl(fileno(file), F_DUPFD_CLOEXEC, 3), "fcntl");
    std::fclose(file);
    return descriptor;
}

void flushStreams()
{
    std::cout.flush();
    std::cerr.flush();
    std::fflush(stdout);
    std::fflush(stderr);
}

std::string readAll(int descriptor)
{
    std::string all;
    std::array<char, 4096> block{};
    checked(static_cast<int>(lseek(descriptor, 0, SEEK_SET)), "lseek");
    for (;;) {
        const ssize_t count = read(descriptor, block.data(), block.size());
        if (count <= 0)
            return all;
        all.append(block.data(), static_cast<std::size_t>(count));
    }
}

} // namespace

CapturedOutput::CapturedOutput(Stream stream) : _descriptor(stream), _original(-1), _file(makeUnnamedFile())
{
    flushStreams();
    _original = checked(fcntl(_descriptor, F_DUPFD_CLOEXEC, 3), "fcntl");
    checked(dup2(_file, _descriptor), "dup2");
}

CapturedOutput::~CapturedOutput()
{
    end();
}

std::string CapturedOutput::text()
{
    end();
    return _text;
}

void CapturedOutput::end()
{
    if (_file < 0)
        return;
    flushStreams();
    dup2(_original, _descriptor);
    close(_original);
    _text = readAll(_file);
    close(_file);
    _file = -1;
}

} // namespace kxtest
