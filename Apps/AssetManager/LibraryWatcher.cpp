// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/LibraryWatcher.h"

#include "AssetManager/AssetFilter.h"

#include <QFileInfo>

namespace {

constexpr int QuietTime = 300; // milliseconds: whoever copies an asset there writes several files
constexpr int LookTime = 1000; // milliseconds

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
    _lookTimer.setInterval(LookTime);
    connect(&_lookTimer, &QTimer::timeout, this, &LibraryWatcher::look);
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

void LibraryWatcher::setSeen(const QStringList &directories)
{
    QMap<QString, DirectoryStamp> seen;
    for (const QString &directory : directories.mid(0, MaxSeen)) {
        const auto known = _seen.constFind(directory);
        seen.insert(directory, known != _seen.constEnd() ? *known : DirectoryStamp(directory));
    }
    _seen = seen;
    if (_seen.isEmpty())
        _lookTimer.stop();
    else if (!_lookTimer.isActive())
        _lookTimer.start();
}

/// Also where something was only saved by this program: it is read once more then.
void LibraryWatcher::look()
{
    for (auto seen = _seen.begin(); seen != _seen.end(); ++seen) {
        const DirectoryStamp now(seen.key());
        if (now == *seen)
            continue;
        *seen = now;
        _changedAssets.insert(seen.key());
        _timer.start();
    }
}

void LibraryWatcher::announce()
{
    const QSet<QString> folders = std::move(_changed);
    _changed.clear();
    for (const QString &folder : folders)
        emit changed(folder);
    const QSet<QString> assets = std::move(_changedAssets);
    _changedAssets.clear();
    for (const QString &directory : assets)
        emit assetChanged(directory);
}
