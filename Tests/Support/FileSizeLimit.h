// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/resource.h>

namespace kxtest {

/// While it lives, no file of this process grows beyond a size: as on a full disk, and for every user.
class FileSizeLimit
{
public:
    enum Overrun {
        Fails, ///< the write that goes beyond
        Kills  ///< the process, in the middle of that write
    };

    FileSizeLimit(rlim_t bytes, Overrun overrun);
    ~FileSizeLimit();
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

private:
    rlimit _former{};
    void (*_formerHandler)(int);
};

} // namespace kxtest
