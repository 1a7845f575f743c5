// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Result.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace osg {

/// A file opened for reading. Devices, pipes and folders are refused, so that nothing waits or never ends.
///
/// Content is copied out instead of being mapped: a file that somebody else cuts short meanwhile is then a failed read
/// and not a signal, and what was verified cannot change any more.
class RegularFile
{
public:
    /// The reason of a failure does not name the file.
    static Result<RegularFile> open(const std::string &path);

    RegularFile(RegularFile &&other) noexcept;
    RegularFile &operator=(RegularFile &&other) noexcept;
    ~RegularFile();

    /// Its length in bytes when it was opened.
    std::uint64_t size() const { return _size; }

    /// Fills \a target from \a offset; how much was there to be read. Leaves out what an input error hides.
    std::size_t readAt(std::uint64_t offset, std::span<std::byte> target) const;

    /// The whole content, or the reason why not; \a limit is the length that is not exceeded.
    Result<std::vector<std::byte>> readAll(std::uint64_t limit) const;

private:
    RegularFile(int descriptor, std::uint64_t size) : _descriptor(descriptor), _size(size) {}

    int _descriptor;
    std::uint64_t _size;
};

} // namespace osg
