// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/ExternalConverter.h"

#include "Assets/Internal/StandardOutput.h"
#include "Kernel/kxFile.h"
#include "Kernel/kxLog.h"
#include "Kernel/kxPlatform.h"

#include <QProcess>

#include <vector>

namespace kxAssetsInternal {

namespace {

QString converterPath()
{
    return QString::fromStdString(kxPlatform::getBinDir()) + QStringLiteral("\\ZEQ") + QStringLiteral("\\Morvane") +
           QStringLiteral(".exe");
}

/// Runs on after the save has returned, and is never deleted: that would end the converter.
QProcess &makeProcess()
{
    static auto *const processes = new std::vector<QProcess *>; // and neither is the list of them
    return *processes->emplace_back(new QProcess);
}

void removeConverted(const QString &path)
{
    const QByteArray name = path.toUtf8();
    printLine("Remove file: " + path.toStdString());
    if (kxFile::exists(name.constData(), false, true) && !kxFile::remove(name.constData()))
        kxLog::error("Failed to remove file '%s'.", name.constData());
}

} // namespace

void startConverter(const QString &path, PayloadAfterwards afterwards)
{
    QProcess &process = makeProcess();
    if (afterwards == PayloadAfterwards::Goes)
        QObject::connect(&process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), &process,
                         [path] { removeConverted(path); });
    printLine("Starting Morvane: " + path.toStdString());
    process.start(converterPath(), {QStringLiteral("-i"), path}, QIODevice::ReadWrite);
}

} // namespace kxAssetsInternal
