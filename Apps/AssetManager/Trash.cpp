// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/Trash.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>

namespace {

const char *const FolderName = ".kx-trash";
const char *const OriginName = ".origin";

} // namespace

QString Trash::folder() const
{
    return QDir(_library).filePath(QLatin1String(FolderName));
}

bool Trash::isTrash(const QString &path)
{
    return path.contains(QStringLiteral("/%1/").arg(QLatin1String(FolderName)));
}

QString Trash::makePlaceFor(const QString &path) const
{
    const QDir place(folder() + '/' + QUuid::createUuid().toString(QUuid::WithoutBraces));
    if (!QDir().mkpath(place.path()))
        return {};
    QFile origin(place.filePath(QLatin1String(OriginName)));
    // Relative, so that the library may move.
    const QByteArray text = QDir(_library).relativeFilePath(QFileInfo(path).path()).toUtf8();
    const bool isWritten = origin.open(QIODevice::WriteOnly) && origin.write(text) == text.size() &&
                           origin.flush(); // a full disk says so here
    if (!isWritten) {
        QDir(place).removeRecursively();
        return {};
    }
    return place.filePath(QFileInfo(path).fileName());
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
