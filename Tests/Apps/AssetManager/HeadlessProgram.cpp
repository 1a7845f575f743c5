// SPDX-License-Identifier: Apache-2.0
#include "HeadlessProgram.h"

#include <QCoreApplication>
#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

#include <list>

void HeadlessProgram::start(QProcess &process, const QStringList &arguments) const
{
    const QString place = QString::fromStdString(_folder.path().string());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    environment.insert("HOME", place);
    environment.insert("XDG_CONFIG_HOME", place);
    environment.remove("PYTHONPATH");
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(place);
    process.start(QCoreApplication::applicationDirPath() + "/asset-manager", arguments);
}

HeadlessProgram::Result HeadlessProgram::run(const QStringList &arguments) const
{
    return runAll({arguments}).front();
}

std::vector<HeadlessProgram::Result> HeadlessProgram::runAll(const std::vector<QStringList> &arguments) const
{
    std::list<QProcess> processes;
    for (const QStringList &one : arguments)
        start(processes.emplace_back(), one);
    std::vector<Result> results;
    for (QProcess &process : processes) {
        EXPECT_TRUE(process.waitForFinished(Patience));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        results.push_back({process.exitCode(), process.readAllStandardOutput().toStdString(),
                           process.readAllStandardError().toStdString()});
    }
    return results;
}
