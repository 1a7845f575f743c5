// SPDX-License-Identifier: Apache-2.0
#include "Program.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>

#include <gtest/gtest.h>

#include <cstdlib>

namespace kxtest {

Outcome runProgram(const std::string &folder, const std::vector<std::string> &arguments)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("DISPLAY");
    environment.remove("WAYLAND_DISPLAY");
    environment.insert("KXASSETS_LIBRARY", "lib");
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(QString::fromStdString(folder));
    process.setStandardInputFile(QProcess::nullDevice());
    QStringList list;
    for (const std::string &argument : arguments)
        list.append(QString::fromStdString(argument));
    process.start(KX_TEST_PROGRAM, list);
    constexpr int Patience = 240000; // ms
    if (!process.waitForFinished(Patience) || process.exitStatus() != QProcess::NormalExit) {
        ADD_FAILURE() << "kxassets " << list.join(' ').toStdString() << " did not end by itself";
        process.kill();
        process.waitForFinished();
    }
    return {process.exitCode(), process.readAllStandardOutput().toStdString(),
            process.readAllStandardError().toStdString()};
}

std::map<std::string, std::string> uuidsByName(const std::string &folder)
{
    std::map<std::string, std::string> uuids;
    const QJsonDocument list =
        QJsonDocument::fromJson(QByteArray::fromStdString(runProgram(folder, {"list", "--json"}).output));
    EXPECT_TRUE(list.isArray());
    for (const QJsonValue &asset : list.array()) {
        const bool isNew =
            uuids.emplace(asset["name"].toString().toStdString(), asset["uuid"].toString().toStdString()).second;
        EXPECT_TRUE(isNew) << asset["name"].toString().toStdString();
    }
    return uuids;
}

std::string modelFile(const std::string &relativePath)
{
    const char *named = std::getenv("KX_TEST_MODELS");
    return std::string(named && *named ? named : KX_TEST_MODELS) + '/' + relativePath;
}

} // namespace kxtest
