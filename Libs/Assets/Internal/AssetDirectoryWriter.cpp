// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/AssetDirectoryWriter.h"

#include "Assets/Internal/StandardOutput.h"
#include "Kernel/kxFile.h"
#include "Kernel/kxLog.h"
#include "Kernel/kxPlatform.h"

#include <QFile>
#include <QProcess>

namespace kxAssetsInternal {

namespace {

void removeConverted(const QString &path)
{
    const QByteArray name = path.toUtf8();
    printLine("Remove file: " + path.toStdString());
    if (kxFile::exists(name.constData(), false, true) && !kxFile::remove(name.constData()))
        kxLog::error("Failed to remove file '%s'.", name.constData());
}

} // namespace

void writePreview(const QString &basePath, const osg::ImagePtr &image, const std::vector<std::string> &formats,
                  int format)
{
    if (!image)
        return;
    const auto chosen = static_cast<std::size_t>(format);
    const auto pathWith = [&basePath](const std::string &extension) {
        return basePath + QLatin1Char('.') + QString::fromStdString(extension);
    };
    if (!image->write(pathWith(formats[chosen]).toStdString()))
        return;
    for (std::size_t i = 0; i < formats.size(); ++i)
        if (i != chosen && QFile::exists(pathWith(formats[i])))
            QFile::remove(pathWith(formats[i]));
}

void startConverter(const QString &path, bool removeAfter)
{
    const QString converter = QString::fromStdString(kxPlatform::getBinDir()) + QStringLiteral("\\ZEQ") +
                              QStringLiteral("\\Morvane") + QStringLiteral(".exe");
    // Runs on after the save has returned, and is never deleted.
    auto *process = new QProcess;
    if (removeAfter)
        QObject::connect(process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), process,
                         [path] { removeConverted(path); });
    printLine("Starting Morvane: " + path.toStdString());
    process->start(converter, {QStringLiteral("-i"), path}, QIODevice::ReadWrite);
}

} // namespace kxAssetsInternal
