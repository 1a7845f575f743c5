// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace CLI {
class App;
}
struct Options;

/// Adds --library, whose value may also come from the environment.
void declareLibrary(CLI::App &app, Options &options);
/// Why the text cannot be a tag, or "". Metadata keeps tags as one text, in which commas, blanks and quotes separate them.
std::string checkTag(const std::string &text);
/// Adds --json.
void declareJson(CLI::App &app, Options &options);
