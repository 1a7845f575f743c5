// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <set>
#include <string>
#include <vector>

namespace kximport {

/// What could not be brought along from a file that is otherwise fine: one line each, the same one once.
class ImportNotes
{
public:
    /// A file may have more to complain about than anybody reads.
    static constexpr std::size_t MaxLines = 200;

    /// \a modelPath stands in every line.
    explicit ImportNotes(std::string modelPath);

    /// \a text follows the model's path; control characters in it are replaced.
    void add(const std::string &text);

    /// In the order of their coming.
    const std::vector<std::string> &lines() const { return _lines; }

private:
    std::string _modelPath;
    std::vector<std::string> _lines;
    std::set<std::string> _known;
};

} // namespace kximport
