// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>

/// Text from files, made fit for a terminal.
namespace PlainText {

/// The text on one line and without control characters, each of which becomes a question mark: a name in a library must
/// neither break a table nor command the terminal.
std::string printable(const std::string &text);

/// The columns that a UTF-8 text takes on a terminal: two for East Asian characters, none for combining marks.
std::size_t columns(const std::string &text);

} // namespace PlainText
