// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/LibraryWatcher.h"

#include "AssetManager/AssetFilter.h"

#include <QFile>
#include <QFileInfo>

#include <utility>

#include <sys/stat.h>

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

LibraryWatcher::Place::Place(const QString &path)
{
    struct stat status = {};
    if (stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISDIR(status.st_mode))
        return;
    device = status.st_dev;
    file = status.st_ino;
}

void LibraryWatcher::setSeen(const QStringList &directories)
{
    replace(_seen, directories);
    lookWhileNeeded();
}

void LibraryWatcher::setUsed(const QStringList &directories)
{
    replace(_used, directories);
    lookWhileNeeded();
}

void LibraryWatcher::replace(Stamps &assets, const QStringList &directories)
{
    Stamps all;
    for (const QString &directory : directories.mid(0, MaxSeen)) {
        const auto known = assets.constFind(directory);
        all.insert(directory, known != assets.constEnd() ? *known : DirectoryStamp(directory));
    }
    assets = all;
}

void LibraryWatcher::setLibraries(const QStringList &libraries)
{
    std::map<QString, Place> places;
    for (const QString &library : libraries) {
        const auto known = _libraries.find(library);
        places.emplace(library, known != _libraries.end() ? known->second : Place(library));
    }
    _libraries = std::move(places);
    lookWhileNeeded();
}

void LibraryWatcher::lookWhileNeeded()
{
    if (_seen.isEmpty() && _used.isEmpty() && _libraries.empty())
        _lookTimer.stop();
    else if (!_lookTimer.isActive())
        _lookTimer.start();
}

/// Whether there is something else at the path than when it was looked at last; then nothing is watched there any more.
bool LibraryWatcher::isElsewhere(const QString &library, Place &place)
{
    const Place now(library);
    if (now == place)
        return false;
    place = now;
    forget(library);
    return true;
}

void LibraryWatcher::look()
{
    for (auto &[library, place] : _libraries) {
        if (!isElsewhere(library, place))
            continue;
        _changed.insert(library);
        _timer.start();
    }
    lookAt(_seen);
    lookAt(_used);
}

/// Also where something was only saved by this program: it is read once more then.
void LibraryWatcher::lookAt(Stamps &assets)
{
    for (auto asset = assets.begin(); asset != assets.end(); ++asset) {
        const DirectoryStamp now(asset.key());
        if (now == *asset)
            continue;
        *asset = now;
        _changedAssets.insert(asset.key());
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
