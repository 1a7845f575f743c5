// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Internal/RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <utility>

namespace osg {

namespace {

constexpr std::size_t MaxReadAtOnce = std::size_t{1} << 30; // the system takes less than 2 GiB

Failure systemFailure()
{
    return {std::strerror(errno)};
}

} // namespace

Result<RegularFile> RegularFile::open(const std::string &path)
{
    // Without O_NONBLOCK the opening of a pipe waits for a writer.
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        return systemFailure();

    RegularFile file(descriptor, 0);
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return systemFailure();
    if (S_ISDIR(status.st_mode))
        return Failure{"Is a directory"};
    if (!S_ISREG(status.st_mode))
        return Failure{"Not a regular file"};
    file._size = static_cast<std::uint64_t>(status.st_size);
    return file;
}

RegularFile::RegularFile(RegularFile &&other) noexcept
    : _descriptor(std::exchange(other._descriptor, -1)), _size(other._size)
{}

RegularFile &RegularFile::operator=(RegularFile &&other) noexcept
{
    std::swap(_descriptor, other._descriptor);
    std::swap(_size, other._size);
    return *this;
}

RegularFile::~RegularFile()
{
    if (_descriptor >= 0)
        ::close(_descriptor);
}

std::size_t RegularFile::readAt(std::uint64_t offset, std::span<std::byte> target) const
{
    std::size_t done = 0;
    while (done < target.size()) {
        if (offset + done > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max()))
            return done;
        const ssize_t count = ::pread(_descriptor, target.data() + done, std::min(target.size() - done, MaxReadAtOnce),
                                      static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return done;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

Result<std::vector<std::byte>> RegularFile::readAll(std::uint64_t limit) const
{
    if (_size > limit)
        return Failure{"The file is too large"};
    std::vector<std::byte> bytes(static_cast<std::size_t>(_size));
    errno = 0;
    if (readAt(0, bytes) != bytes.size())
        return Failure{errno != 0 ? std::strerror(errno) : "The file became shorter while it was read"};
    return bytes;
}

} // namespace osg
