// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/LocalPath.h"

#include <QDir>
#include <QFileInfo>

namespace kxAssetsInternal {

QString entryPath(const QUrl &url)
{
    QString path = url.toLocalFile();
    while (path.size() > 1 && path.endsWith(QLatin1Char('/')))
        path.chop(1);
    return path;
}

bool isTaken(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

bool isTaken(const QDir &directory, const QString &name)
{
    return !name.isEmpty() && isTaken(directory.filePath(name));
}

QString placeOf(const QString &path)
{
    if (path.isEmpty())
        return {};
    const QFileInfo info(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
    const QString directory = QFileInfo(info.absolutePath()).canonicalFilePath();
    if (directory.isEmpty())
        return {};
    return info.fileName().isEmpty() ? directory : QDir(directory).filePath(info.fileName());
}

bool renameEntry(const QString &from, const QString &to)
{
    if (from.isEmpty() || to.isEmpty() || isTaken(to))
        return false;
    return QDir().rename(from, to);
}

} // namespace kxAssetsInternal
