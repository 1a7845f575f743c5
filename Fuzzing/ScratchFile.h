// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// A file in memory that takes each input in turn, because readers want a path.
class ScratchFile
{
public:
    /// \a name is the file's, in a folder of this process alone.
    explicit ScratchFile(const std::string &name);

    void write(const std::uint8_t *data, std::size_t size) const;
    const std::string &path() const { return _path; }

private:
    std::string _path;
};

/// Lines of the readers would fill the disk.
void silenceStandardOutput();
