// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/LibraryWatcher.h"

#include "AssetManager/AssetFilter.h"

#include <QFile>
#include <QFileInfo>

#include <utility>

#include <sys/stat.h>

namespace {

constexpr int QuietTime = 300;  // milliseconds: whoever copies an asset there writes several files
constexpr int LookTime = 1000;  // milliseconds
constexpr int AnswerTime = 200; // milliseconds: longer than a drive takes that is awake

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
        std::optional<DirectoryStamp> stamp = assets.value(directory);
        if (!stamp && _stampOf && _stampOf(directory) != DirectoryStamp())
            stamp = _stampOf(directory);
        all.insert(directory, stamp);
    }
    assets = all;
}

void LibraryWatcher::setLibraries(const QStringList &libraries)
{
    std::map<QString, std::optional<Place>> places;
    for (const QString &library : libraries) {
        const auto known = _libraries.find(library);
        places.emplace(library, known != _libraries.end() ? known->second : std::nullopt);
        if (known == _libraries.end())
            lookAt(library, {});
    }
    _libraries = std::move(places);
    lookWhileNeeded();
}

void LibraryWatcher::setGone(const QString &library)
{
    if (const auto known = _libraries.find(library); known != _libraries.end())
        known->second = Place();
}

void LibraryWatcher::lookWhileNeeded()
{
    if (_seen.isEmpty() && _used.isEmpty() && _libraries.empty())
        _lookTimer.stop();
    else if (!_lookTimer.isActive())
        _lookTimer.start();
}

QString LibraryWatcher::libraryOf(const QString &directory) const
{
    for (const auto &[library, place] : _libraries)
        if (AssetFilter::isIn(directory, library))
            return library;
    return {};
}

void LibraryWatcher::look()
{
    QMap<QString, QStringList> directories;
    for (const auto &[library, place] : _libraries)
        directories.insert(library, {});
    for (const Stamps &assets : {_seen, _used})
        for (auto asset = assets.begin(); asset != assets.end(); ++asset)
            directories[libraryOf(asset.key())].append(asset.key());
    for (auto library = directories.begin(); library != directories.end(); ++library)
        lookAt(library.key(), *library);
}

/// \a library is "" for what lies in none.
void LibraryWatcher::lookAt(const QString &library, const QStringList &directories)
{
    if (_asked.contains(library))
        return;
    Asked &asked = _asked[library];
    asked.since.start();
    asked.isAnswered = std::make_shared<std::atomic<bool>>(false);
    _inquiry.ask([this, library, directories, isAnswered = asked.isAnswered] {
        Sight sight;
        if (!library.isEmpty())
            sight.library = Place(library);
        for (const QString &directory : directories)
            sight.assets.insert(directory, DirectoryStamp(directory));
        *isAnswered = true;
        return [this, library, sight] { receive(library, sight); };
    });
}

bool LibraryWatcher::isSilent(const QString &library) const
{
    const auto asked = _asked.find(library);
    return asked != _asked.end() && asked->since.hasExpired(AnswerTime) && !*asked->isAnswered;
}

void LibraryWatcher::receive(const QString &library, const Sight &sight)
{
    _asked.remove(library);
    noteLibrary(library, sight.library);
    compare(_seen, sight.assets);
    compare(_used, sight.assets);
}

/// Where there is something else at the path than before, nothing is watched any more.
void LibraryWatcher::noteLibrary(const QString &library, const Place &now)
{
    const auto known = _libraries.find(library);
    if (known == _libraries.end() || known->second == now)
        return;
    const bool isFirstSight = !known->second;
    known->second = now;
    if (isFirstSight && !now.isNothing())
        return;
    forget(library);
    _changed.insert(library);
    _timer.start();
}

/// Also where something was only saved by this program: it is read once more then.
void LibraryWatcher::compare(Stamps &assets, const QMap<QString, DirectoryStamp> &now)
{
    for (auto found = now.begin(); found != now.end(); ++found) {
        const auto asset = assets.find(found.key());
        if (asset == assets.end() || *asset == *found)
            continue;
        const bool isFirstSight = !*asset;
        *asset = *found;
        if (isFirstSight)
            continue;
        _changedAssets.insert(found.key());
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
