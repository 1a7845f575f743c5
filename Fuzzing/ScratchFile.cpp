// SPDX-License-Identifier: Apache-2.0
#include "ScratchFile.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

ScratchFile::ScratchFile(const std::string &name)
{
    const std::string folder = "/dev/shm/kx-fuzzing-" + std::to_string(::getpid());
    ::mkdir(folder.c_str(), 0700);
    _path = folder + '/' + name;
}

void ScratchFile::write(const std::uint8_t *data, std::size_t size) const
{
    const int file = ::open(_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (file < 0 || ::write(file, data, size) != static_cast<ssize_t>(size) || ::close(file) != 0)
        std::abort();
}

void silenceStandardOutput()
{
    if (std::freopen("/dev/null", "w", stdout) == nullptr)
        std::abort();
}
