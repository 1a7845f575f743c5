// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/Trash.h"

#include "AssetManager/DiskTrouble.h"
#include "AssetManager/ShownName.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace {

const char *const FolderName = ".kx-trash";
const char *const OriginName = ".origin";

/// Makes the place as well. Qt's own classes do not tell why a folder could not be made.
std::error_code writeOrigin(const QDir &place, const QByteArray &text)
{
    const std::filesystem::path folder(place.path().toStdU16String());
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        return error;
    errno = 0;
    std::ofstream origin(folder / OriginName, std::ios::binary);
    origin.write(text.constData(), text.size());
    origin.close(); // a full disk says so here
    return origin ? error : std::error_code(errno, std::generic_category());
}

QString reasonOf(const std::error_code &error, const QString &name)
{
    const DiskTrouble::Kind trouble = DiskTrouble::of(error);
    if (trouble == DiskTrouble::Kind::Full)
        return Trash::tr("\"%1\" could not be deleted: the disk is full, and deleted assets are kept. Empty \"Deleted "
                         "assets\", or make room elsewhere.")
            .arg(name);
    if (trouble == DiskTrouble::Kind::Forbidden)
        return Trash::tr("\"%1\" could not be deleted: you may not write into its library.").arg(name);
    return Trash::tr("\"%1\" could not be deleted.").arg(name) + ' ' + DiskTrouble::sentence(error);
}

} // namespace

QString Trash::folder() const
{
    return QDir(_library).filePath(QLatin1String(FolderName));
}

bool Trash::isTrash(const QString &path)
{
    return path.contains(QStringLiteral("/%1/").arg(QLatin1String(FolderName)));
}

osg::Result<QString> Trash::makePlaceFor(const QString &path) const
{
    const QDir place(makeName());
    // Relative, so that the library may move.
    const QByteArray text = QDir(_library).relativeFilePath(QFileInfo(path).path()).toUtf8();
    if (const std::error_code error = writeOrigin(place, text)) {
        QDir(place).removeRecursively();
        return osg::Failure{reasonOf(error, ShownName::of(path)).toStdString()};
    }
    return place.filePath(QFileInfo(path).fileName());
}

QString Trash::makeName() const
{
    return folder() + '/' + QUuid::createUuid().toString(QUuid::WithoutBraces);
}

osg::Result<QString> Trash::makeHiddenPlaceFor(const QString &path) const
{
    const QDir place(makeName());
    std::error_code error;
    std::filesystem::create_directories(place.path().toStdU16String(), error);
    if (!error)
        return place.filePath(QFileInfo(path).fileName());
    const QString failure = tr("\"%1\" was left as it is: its present version could not be kept.");
    return osg::Failure{(failure.arg(ShownName::of(path)) + ' ' + DiskTrouble::sentence(error)).toStdString()};
}

std::vector<Trash::Entry> Trash::entries() const
{
    std::vector<Entry> found;
    const QFileInfoList places = QDir(folder()).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Time);
    for (const QFileInfo &place : places) {
        QFile origin(place.filePath() + '/' + QLatin1String(OriginName));
        const QStringList kept = QDir(place.filePath()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        if (kept.isEmpty() || !origin.open(QIODevice::ReadOnly))
            continue;
        const QString relative = QString::fromUtf8(origin.readAll());
        found.push_back({place.filePath() + '/' + kept.first(), QDir::cleanPath(QDir(_library).filePath(relative)),
                         place.lastModified()});
    }
    return found;
}

bool Trash::empty() const
{
    QDir trash(folder());
    return !trash.exists() || trash.removeRecursively();
}
