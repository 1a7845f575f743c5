// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxPythonFolder.h"
#include "kxassets/Command.h"
#include "kxassets/Reporting.h"
#include "kxassets/ResultStream.h"

#include <CLI/CLI.hpp>
#include <QFileInfo>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <memory>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int SignalCode = 128; // as shells have it

struct Arguments
{
    std::string file;
    std::vector<std::string> rest;
};

/// Runs in place of this process, which is a fork: nothing is allocated here.
[[noreturn]] void runInterpreter(char *const *words, int output)
{
    ::dup2(output, STDOUT_FILENO);
    std::signal(SIGPIPE, SIG_DFL);
    std::signal(SIGINT, SIG_DFL);
    ::execv(KX_PYTHON, words);
    constexpr std::string_view text = "kxassets: the interpreter " KX_PYTHON " cannot be started\n";
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
    ::_exit(static_cast<int>(ExitCode::Failed));
}

/// A process of its own: whatever a script does, this program ends as it should, with what the script ended with.
ExitCode run(const Arguments &arguments, Context &context)
{
    if (!QFileInfo(QString::fromStdString(arguments.file)).isFile()) {
        complain("there is no script '" + arguments.file + "'");
        return ExitCode::Failed;
    }
    const QString folder = kxPythonFolder::find();
    if (folder.isEmpty()) {
        complain("this installation comes without the Python module kx");
        return ExitCode::Failed;
    }
    const QByteArray before = qgetenv("PYTHONPATH");
    qputenv("PYTHONPATH", before.isEmpty() ? folder.toUtf8() : folder.toUtf8() + ':' + before);
    std::vector<std::string> words{KX_PYTHON, arguments.file};
    words.insert(words.end(), arguments.rest.begin(), arguments.rest.end());
    std::vector<char *> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string &word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    const pid_t child = ::fork();
    if (child == 0)
        runInterpreter(pointers.data(), context.results.descriptor());
    int status = 0;
    while (child > 0 && ::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (child < 0) {
        complain(std::string("the interpreter cannot be started: ") + std::strerror(errno));
        return ExitCode::Failed;
    }
    return static_cast<ExitCode>(WIFEXITED(status) ? WEXITSTATUS(status) : SignalCode + WTERMSIG(status));
}

} // namespace

Run declareScript(CLI::App &app, Options & /*options*/)
{
    const auto arguments = std::make_shared<Arguments>();
    app.add_option("file", arguments->file, "The Python script, which can import kx")->type_name("FILE.py")->required();
    app.add_option("arguments", arguments->rest, "What the script finds in sys.argv, after --")->type_name("ARGS");
    app.footer("The exit code is the script's.\n\n"
               "Example: kxassets script report.py -- ~/Materials --verbose");
    return [arguments](Context &context) { return run(*arguments, context); };
}
