// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/SampleLibrary.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <filesystem>
#include <system_error>

namespace {

const QString Name = QStringLiteral("sample-library");

std::filesystem::path native(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

/// Only a whole copy stands at its place.
QString copy(const QString &from, const QString &to)
{
    const QString unfinished = to + QStringLiteral(".unfinished");
    std::error_code error;
    std::filesystem::remove_all(native(unfinished), error);
    std::filesystem::create_directories(native(QFileInfo(to).path()), error);
    if (!error)
        std::filesystem::copy(native(from), native(unfinished), std::filesystem::copy_options::recursive, error);
    if (!error)
        std::filesystem::rename(native(unfinished), native(to), error);
    return error ? QString::fromLocal8Bit(error.message().c_str()) : QString();
}

} // namespace

QString SampleLibrary::installed()
{
    return QDir(QCoreApplication::applicationDirPath() + QStringLiteral("/../" KX_DATA_FOLDER "/kxassets/") + Name)
        .canonicalPath();
}

QString SampleLibrary::find()
{
    // Where the build leaves it is seen from the program or from where that was started.
    for (const QString &folder :
         {QDir::currentPath() + '/' + Name,
          QCoreApplication::applicationDirPath() + QStringLiteral("/../../../") + Name, installed()})
        if (!folder.isEmpty() && QFileInfo(folder).isDir())
            return QDir(folder).canonicalPath();
    return {};
}

QString SampleLibrary::prepare(const QString &found, QString &trouble)
{
    if (found != installed())
        return found;
    QString own =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/kxAssets/") + Name;
    if (QFileInfo(own).isDir())
        return own;
    if (const QString reason = copy(found, own); !reason.isEmpty()) {
        trouble = QCoreApplication::translate("SampleLibrary", "The sample library could not be copied to \"%1\": %2.")
                      .arg(QDir::toNativeSeparators(own), reason);
        return {};
    }
    return own;
}
