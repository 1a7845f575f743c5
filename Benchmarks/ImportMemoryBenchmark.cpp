// SPDX-License-Identifier: Apache-2.0
// The peak memory of importing all models in one call against that of the hungriest single one.
// ImportMemoryBenchmark KXASSETS FOLDER-OF-MODELS
#include "Import/kxForeignFormats.h"
#include "Support/Comparison.h"

#include <QDirIterator>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

/// In megabytes, of the program and of the processes that it starts and waits for. What it prints goes nowhere.
double peakOf(const std::vector<std::string> &command)
{
    const pid_t child = ::fork();
    if (child == 0) {
        std::vector<char *> arguments;
        arguments.reserve(command.size() + 1);
        for (const std::string &argument : command)
            arguments.push_back(const_cast<char *>(argument.c_str()));
        arguments.push_back(nullptr);
        if (std::freopen("/dev/null", "w", stdout) == nullptr || std::freopen("/dev/null", "w", stderr) == nullptr)
            ::_exit(126);
        ::execv(arguments[0], arguments.data());
        ::_exit(127);
    }
    // The sum of the program and of the largest of its children would be too much: they are not alive together at their
    // largest. Both are counted by the one figure that the system keeps, the largest of them all.
    int status = 0;
    rusage usage{};
    if (::wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) || WEXITSTATUS(status) > 3)
        std::abort();
    return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "ImportMemoryBenchmark KXASSETS FOLDER-OF-MODELS\n");
        return 2;
    }
    std::vector<std::string> files;
    for (QDirIterator i(QString::fromUtf8(argv[2]), QDir::Files, QDirIterator::Subdirectories); i.hasNext();) {
        const QString path = i.next();
        if (kxForeignFormats::isSceneFile(path.toStdString()))
            files.push_back(path.toStdString());
    }
    std::sort(files.begin(), files.end());

    const QTemporaryDir folder;
    int library = 0;
    const auto import = [&](const std::vector<std::string> &models) {
        std::vector<std::string> command{argv[1],
                                         "import",
                                         "--preview-size",
                                         "16",
                                         "--preview-samples",
                                         "1",
                                         "--library",
                                         folder.filePath(QString::number(library++)).toStdString()};
        command.insert(command.end(), models.begin(), models.end());
        return peakOf(command);
    };
    double largest = 0.0;
    std::string hungriest;
    for (const std::string &file : files)
        if (const double peak = import({file}); peak > largest) {
            largest = peak;
            hungriest = file;
        }
    const double all = import(files);
    std::fprintf(stderr, "%zu files: %.1f MB together, %.1f MB at most alone (%s)\n", files.size(), all, largest,
                 hungriest.c_str());
    kxbench::report("peak memory of importing all test models", "the hungriest of them alone", 2, 1.3, all / largest);
}
