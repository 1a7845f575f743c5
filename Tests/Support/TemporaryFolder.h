// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace kxtest {

/// An empty folder of its own below the system's folder for temporary files, removed with all it holds at the end.
///
/// Names are UTF-8 and relative to the folder. A failure of the disk throws.
class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

    const std::filesystem::path &path() const { return _path; }
    std::string string() const { return _path.string(); }

    /// The absolute path of \a name, whether it exists or not.
    std::string file(std::string_view name) const;
    bool contains(std::string_view name) const;

    /// Makes the folder \a name with its parents, and returns its absolute path.
    std::string makeFolder(std::string_view name) const;
    /// Writes \a bytes to \a name, making its parents, and returns its absolute path.
    std::string write(std::string_view name, std::string_view bytes) const;
    /// The bytes of \a name; fails the running test and returns nothing when it cannot be read.
    std::string read(std::string_view name) const;

private:
    std::filesystem::path _path;
};

} // namespace kxtest
