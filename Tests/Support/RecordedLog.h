// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mutex>
#include <string>
#include <vector>

namespace kxtest {

/// Collects what the scene graph logs instead of showing it, for as long as it lives. One at a time.
class RecordedLog
{
public:
    RecordedLog();
    ~RecordedLog();
    RecordedLog(const RecordedLog &) = delete;
    RecordedLog &operator=(const RecordedLog &) = delete;

    std::vector<std::string> lines() const;

private:
    mutable std::mutex _mutex;
    std::vector<std::string> _lines;
};

} // namespace kxtest
