// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace kxtest {

/// While one lives, one operation on files below a folder fails: the system's functions that open, read, write, rename,
/// remove and make files are replaced by ones that look here first, for the whole of the test program.
///
/// One at a time, and only the thread that made it is looked at.
class FileFaults
{
public:
    enum class Kind {
        NoSpace,      ///< what needs room fails with ENOSPC, from the chosen operation on
        NoPermission, ///< what needs a permission fails with EACCES, once
        IoError,      ///< anything fails with EIO, once
        ShortWrite,   ///< one write takes half of its bytes, and the next ones find no space
    };

    /// The operation number \a failing fails, counted from 1 among those that the kind is about.
    FileFaults(const std::string &folder, Kind kind, int failing);
    ~FileFaults();
    FileFaults(const FileFaults &) = delete;
    FileFaults &operator=(const FileFaults &) = delete;

    /// Whether the work came as far as the failing operation.
    bool hasFailed() const;
    /// "write /path", what failed first; "" when nothing did.
    std::string failed() const;
};

} // namespace kxtest
