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
        _changed.insert(folder);
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

void LibraryWatcher::announce()
{
    const QSet<QString> folders = std::move(_changed);
    _changed.clear();
    for (const QString &folder : folders)
        emit changed(folder);
}
