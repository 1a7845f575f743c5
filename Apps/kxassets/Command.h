// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "kxassets/ExitCode.h"

#include <QString>

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace CLI {
class App;
}
class ResultStream;
class kxAssetLibrary;

/// What every sub-command gets.
struct Options
{
    std::string library; ///< as given, or from the environment; "": none
    bool isJson = false;
    bool isVerbose = false;
};

/// What a sub-command works with, once the arguments were understood and the host is up.
struct Context
{
    const Options &options;
    ResultStream &results;
};

using Run = std::function<ExitCode(Context &context)>;

/// One sub-command: declares its arguments, and hands back what runs when it was called.
struct Command
{
    const char *name;
    const char *help;
    Run (*declare)(CLI::App &app, Options &options);
};

std::span<const Command> allCommands();

// One function for each command, in the file named after it.
Run declareCheck(CLI::App &app, Options &options);
Run declareCompact(CLI::App &app, Options &options);
Run declareCompose(CLI::App &app, Options &options);
Run declareGroup(CLI::App &app, Options &options);
Run declareImport(CLI::App &app, Options &options);
Run declareList(CLI::App &app, Options &options);
Run declareLoad(CLI::App &app, Options &options);
Run declareMerge(CLI::App &app, Options &options);
Run declareMove(CLI::App &app, Options &options);
Run declarePreview(CLI::App &app, Options &options);
Run declareRemove(CLI::App &app, Options &options);
Run declareRename(CLI::App &app, Options &options);
Run declareRender(CLI::App &app, Options &options);
Run declareSave(CLI::App &app, Options &options);
Run declareScript(CLI::App &app, Options &options);
Run declareSheet(CLI::App &app, Options &options);
Run declareShow(CLI::App &app, Options &options);
Run declareTag(CLI::App &app, Options &options);
Run declareTree(CLI::App &app, Options &options);
Run declareVerify(CLI::App &app, Options &options);
