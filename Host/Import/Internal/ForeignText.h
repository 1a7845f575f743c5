// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace kximport {

/// True where \a text is UTF-8 without a byte that does not belong.
bool isUtf8(std::string_view text);

/// \a text as it is when it is UTF-8; otherwise read as ISO 8859-1, which old exporters write.
std::string toUtf8(std::string_view text);

/// UTF-8 from a file that begins with the mark of UTF-16 in either byte order; any other text as it is. Half a character
/// becomes U+FFFD.
std::string fromUtf16(std::string bytes);

/// \a text with control characters replaced by blanks, so that it stays within its line, and without blanks at its ends.
std::string oneLine(std::string_view text);

/// The file's name without folders, with or without the last extension.
std::string fileName(const std::string &path);
std::string baseName(const std::string &path);

/// With its closing slash; "./" for a mere name.
std::string folderOf(const std::string &path);

} // namespace kximport
