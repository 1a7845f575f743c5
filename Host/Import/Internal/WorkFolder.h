// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace kximport {

/// A folder of its own among the temporary files, for nobody else to read; removed with all it holds.
class WorkFolder
{
public:
    WorkFolder();
    ~WorkFolder();
    WorkFolder(const WorkFolder &) = delete;
    WorkFolder &operator=(const WorkFolder &) = delete;

    /// "" where it could not be made; then error() says why.
    const std::string &path() const { return _path; }
    const std::string &error() const { return _error; }

private:
    std::string _path;
    std::string _error;
};

} // namespace kximport
