// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/LibraryWatcher.h"

#include "AssetManager/AssetFilter.h"

#include <QFileInfo>

namespace {

constexpr int QuietTime = 300; // milliseconds: whoever copies an asset there writes several files

} // namespace

LibraryWatcher::LibraryWatcher(QObject *parent) : QObject(parent)
{
    _timer.setSingleShot(true);
    _timer.setInterval(QuietTime);
    connect(&_timer, &QTimer::timeout, this, &LibraryWatcher::announce);
    connect(&_watcher, &QFileSystemWatcher::directoryChanged, this, [this](const QString &folder) {
        _changed.insert(_shown.contains(folder) ? QFileInfo(folder).path() : folder);
        _timer.start();
    });
}

void LibraryWatcher::watch(const QString &folder)
{
    if (QFileInfo(folder).isDir())
        _watcher.addPath(folder); // false when it is watched already
}

void LibraryWatcher::forget(const QString &folder)
{
    for (const QString &path : _watcher.directories())
        if (AssetFilter::isIn(path, folder))
            _watcher.removePath(path);
}

void LibraryWatcher::watchShown(const QStringList &directories)
{
    const QSet<QString> wanted(directories.begin(), directories.end());
    const QSet<QString> gone = _shown - wanted;
    const QSet<QString> added = wanted - _shown;
    if (!gone.isEmpty())
        _watcher.removePaths(gone.values());
    if (!added.isEmpty())
        _watcher.addPaths(added.values());
    _shown = wanted;
}

void LibraryWatcher::announce()
{
    const QSet<QString> folders = std::move(_changed);
    _changed.clear();
    for (const QString &folder : folders)
        emit changed(folder);
}
