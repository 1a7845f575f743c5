// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetSession.h"
#include "Kernel/kxLog.h"
#include "Kernel/kxModalQuestion.h"
#include "Kernel/kxVersion.h"
#include "kxassets/Command.h"
#include "kxassets/Interrupt.h"
#include "kxassets/Reporting.h"
#include "kxassets/ResultStream.h"

#include <CLI/CLI.hpp>

#include <QApplication>

#include <algorithm>
#include <map>
#include <string_view>

namespace {

constexpr const char *Footer =
    "An asset is named by its UUID, at least four characters that it begins with, or its exact name.\n"
    "Exit codes: 0 done, 1 findings or differences, 2 wrong usage, 3 failure.\n"
    "KXASSETS_LIBRARY names the library where --library is not given.";

/// What Qt has to say of its surroundings helps nobody who keeps materials.
void logQtMessage(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtFatalMsg || type == QtCriticalMsg)
        kxLog::error("%s", text.toUtf8().constData());
    else
        kxLog::debug("%s", text.toUtf8().constData());
}

std::string failureText(const CLI::App *app, const CLI::Error &error)
{
    const std::vector<CLI::App *> commands = app->get_subcommands();
    const std::string command = commands.empty() ? std::string() : commands.front()->get_name() + ' ';
    return std::string("kxassets: ") + error.what() + "\n'kxassets " + command + "--help' tells more.\n";
}

/// The first argument that is no option, when it is no command.
std::string unknownCommand(int argc, char **argv)
{
    const auto *const first = std::find_if(argv + 1, argv + argc, [](const char *text) { return *text != '-'; });
    const auto commands = allCommands();
    const bool isKnown =
        first == argv + argc || std::any_of(commands.begin(), commands.end(),
                                            [first](const Command &c) { return std::string_view(c.name) == *first; });
    return isKnown ? std::string() : *first;
}

/// What CLI11 ends with for --help and the like is 0; everything else is a misuse.
ExitCode explain(const CLI::App &app, const CLI::ParseError &error)
{
    return app.exit(error) == 0 ? ExitCode::Done : ExitCode::Usage;
}

ExitCode runProgram(int argc, char **argv)
{
    CLI::App app("Keeps libraries of materials, models and environments: imports them, finds them again, loads them, "
                 "and tells what differs.",
                 "kxassets");
    app.require_subcommand(1);
    app.set_version_flag("--version", std::string("kxassets ") + kxGetVersionString());
    app.footer(Footer);
    app.failure_message(failureText);
    app.get_formatter()->column_width(34);

    Options options;
    app.add_flag("-v,--verbose", options.isVerbose, "Show the library's diagnostic lines on standard error");
    std::map<const CLI::App *, Run> runs;
    for (const Command &command : allCommands()) {
        CLI::App *sub = app.add_subcommand(command.name, command.help);
        sub->fallthrough();
        runs[sub] = command.declare(*sub, options);
    }
    if (const std::string name = unknownCommand(argc, argv); !name.empty()) {
        complain("there is no command '" + name + "'; 'kxassets --help' lists them");
        return ExitCode::Usage;
    }
    if (argc < 2) {
        complain("which command? 'kxassets --help' lists them");
        return ExitCode::Usage;
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        return explain(app, error);
    }

    // Nothing here opens a window, and pictures are painted with or without a display.
    qInstallMessageHandler(logQtMessage);
    if (options.isVerbose)
        kxLog::setLevel(kxLogLevel::Debug);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    ResultStream results(options.isVerbose);
    Interrupt::install();
    kxModalQuestion::setMode(kxModalQuestion::Mode::Headless);
    const kxAssetSession session;
    Context context{options, results};
    const ExitCode code = runs.at(app.get_subcommands().front())(context);
    if (results.failure().empty())
        return code;
    complain("the results could not be written: " + results.failure());
    return ExitCode::Failed;
}

} // namespace

int main(int argc, char **argv)
{
    return static_cast<int>(runProgram(argc, argv));
}
