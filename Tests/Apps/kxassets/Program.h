// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <string>
#include <vector>

namespace kxtest {

/// What a run of the program left.
struct Outcome
{
    int exitCode = -1;
    std::string output;
    std::string error;
};

/// Runs the command line program, with \a folder as its working directory and its library in KXASSETS_LIBRARY. The
/// environment knows no display.
Outcome runProgram(const std::string &folder, const std::vector<std::string> &arguments);

/// The UUIDs of the library's assets by their names; expects that no two have the same name.
std::map<std::string, std::string> uuidsByName(const std::string &folder);

/// Where the models of the test package lie. The environment names another place than the one chosen when configuring.
std::string modelFile(const std::string &relativePath);

} // namespace kxtest
