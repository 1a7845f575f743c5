// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace architecture {

/// One #include as it stands in a file.
struct Include
{
    std::string target; ///< what stands between the quotes or brackets
    bool isQuoted = false;
};

/// The include of a source line; nothing for any other line.
std::optional<Include> parseInclude(std::string_view line);

/// What is wrong with \a include in the project file \a path, and what to write instead; nothing when it is allowed.
std::optional<std::string> findViolation(std::string_view path, const Include &include);

} // namespace architecture
