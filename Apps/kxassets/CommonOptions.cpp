// SPDX-License-Identifier: Apache-2.0
#include "kxassets/CommonOptions.h"

#include "kxassets/Command.h"

#include <CLI/CLI.hpp>

void declareLibrary(CLI::App &app, Options &options)
{
    app.add_option("-l,--library", options.library, "The library's folder")
        ->type_name("DIR")
        ->envname("KXASSETS_LIBRARY");
}

std::string checkTag(const std::string &text)
{
    if (text.empty())
        return "a tag cannot be empty";
    if (text.find_first_of(", \t\n\"") != std::string::npos)
        return "'" + text + "' cannot be a tag: no blanks, commas and quotes";
    return {};
}

void declareJson(CLI::App &app, Options &options)
{
    app.add_flag("--json", options.isJson, "Print JSON");
}
