// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Support/TemporaryFolder.h"

#include <QStringList>

#include <string>
#include <vector>

class QProcess;

/// The program as a person starts it where there is no display, with settings of its own, in \a folder.
class HeadlessProgram
{
public:
    struct Result
    {
        int code = -1;
        std::string output;
        std::string errors;
    };

    explicit HeadlessProgram(const kxtest::TemporaryFolder &folder) : _folder(folder) {}

    void start(QProcess &process, const QStringList &arguments) const;
    Result run(const QStringList &arguments) const;
    /// Beside each other: most of the time of each is waiting.
    std::vector<Result> runAll(const std::vector<QStringList> &arguments) const;

    static constexpr int Patience = 120000; // milliseconds

private:
    const kxtest::TemporaryFolder &_folder;
};
