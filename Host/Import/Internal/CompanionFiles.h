// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

namespace kximport {

/// Finds the files that a model refers to: textures, material libraries, buffers.
///
/// References come from all kinds of systems: with backslashes, percent signs, a drive or a scheme in front, or in
/// another case than the file on disk.
class CompanionFiles
{
public:
    /// \a folder is the model's, with its closing slash.
    explicit CompanionFiles(std::string folder);

    /// The path of an existing regular file: the reference as it stands, then its percent signs decoded, then its name
    /// alone in the model's folder; each of them first exactly, then in any case. Nothing when there is no such file.
    std::optional<std::string> find(const std::string &reference) const;

private:
    std::string _folder;
};

} // namespace kximport
