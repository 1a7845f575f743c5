// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace architecture {

/// The files that belong to the project, as sorted paths relative to its top folder: what is built, and what people
/// have lying about beside it, is left out.
std::vector<std::string> projectFiles();

/// The lines of a project file, without their ends.
std::vector<std::string> readLines(const std::string &path);

bool isHeader(std::string_view path);
bool isSource(std::string_view path);

/// "Host/Kernel" of "Host/Kernel/kxLog.h"; empty for a file in the top folder.
std::string folderOf(std::string_view path);
/// "kxLog" of "Host/Kernel/kxLog.h".
std::string stemOf(std::string_view path);

} // namespace architecture
