// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/LibrarySide.h"

#include "AssetManager/Settings.h"
#include "AssetManager/SilentDrives.h"
#include "AssetManager/Trash.h"
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxMaterialAssetItem.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <iterator>

namespace {

/// Composites are made of others.
bool needsPayload(const std::string &uuid)
{
    kxAssetItem *item = kxAssetItemFactory::the().findItem(uuid);
    const auto *material = dynamic_cast<kxMaterialAssetItem *>(item);
    return item && (!material || material->subMaterialUUIDs().empty());
}

QString silenceOf(const QString &library)
{
    return LibrarySide::tr("The folder \"%1\" does not answer. Is its drive or network connected?").arg(library);
}

} // namespace

LibrarySide::LibrarySide(QUndoStack &undo, QObject *parent)
    : QObject(parent), _assets(&_states), _actions(_assets, _folders, undo)
{
    _assets.setFavourites(Settings::favourites());
    _assets.setRecent(Settings::recent());
    connectScan();
    connectSilence();
    _watcher.setKnown([this](const QString &directory) { return _scan.stampOf(directory); });
    connect(&_watcher, &LibraryWatcher::changed, this, [this](const QString &folder) {
        if (!_folders.libraryOf(folder).isEmpty())
            _scan.refresh(folder);
    });
    connect(this, &LibrarySide::librariesChanged, &_watcher, &LibraryWatcher::setLibraries);
    connect(&_states, &AssetStates::changed, this, &LibrarySide::watchUsed);
    connect(&_watcher, &LibraryWatcher::assetChanged, &_scan, &LibraryScan::refreshAsset);
    connect(&_actions, &LibraryActions::assetsChanged, this, &LibrarySide::refreshAssets);
    connect(&_actions, &LibraryActions::foldersChanged, this, [this](const QStringList &paths) {
        for (const QString &path : paths)
            // What is in the trash is no asset any more, although it looks like one.
            if (!_folders.libraryOf(path).isEmpty() && !Trash::isTrash(path))
                _scan.refresh(path);
    });
    connect(&_actions, &LibraryActions::failed, this, &LibrarySide::failed);
    connect(&_previews, &PreviewCache::brokenFound, this, [this](const QString &uuid, bool isBroken) {
        const bool isUnusable = isBroken && needsPayload(uuid.toStdString());
        _states.setBroken(uuid.toStdString(), isUnusable ? tr("Its file is missing: it cannot be loaded.") : QString());
    });
}

/// What is removed after the libraries were left asks none of those that did not answer.
LibrarySide::~LibrarySide()
{
    QStringList silent = _folders.libraries();
    silent.erase(
        std::remove_if(silent.begin(), silent.end(), [this](const QString &library) { return !isSilent(library); }),
        silent.end());
    SilentDrives::the().setLastJudge(this, [silent](const QString &path) {
        return std::any_of(silent.begin(), silent.end(),
                           [&](const QString &library) { return AssetFilter::isIn(path, library); });
    });
}

void LibrarySide::connectSilence()
{
    SilentDrives::the().setJudge(this, [this](const QString &path) { return isSilent(path); });
    _previews.setLibraryOf([this](const QString &directory) { return _folders.libraryOf(directory); });
}

bool LibrarySide::isSilent(const QString &path) const
{
    return _scan.isSilent(path) || _watcher.isSilent(_folders.libraryOf(path));
}

void LibrarySide::connectScan()
{
    connect(&_scan, &LibraryScan::assetsChanged, this, &LibrarySide::refreshAssets);
    connect(&_scan, &LibraryScan::folderFound, this, [this](const QString &parent, const QString &folder) {
        _folders.addFolder(parent, folder);
        _watcher.watch(folder); // before it is read: what goes meanwhile is not missed
    });
    connect(&_scan, &LibraryScan::folderRead, this, [this](const QString &folder, const QStringList &subFolders) {
        _folders.setSubFolders(folder, subFolders);
        _watcher.watch(folder);
        if (_folders.libraryOf(folder) == folder)
            noteRead(folder);
    });
    connect(&_scan, &LibraryScan::folderFailed, this, &LibrarySide::noteFailure);
    connect(&_scan, &LibraryScan::folderGone, this, &LibrarySide::noteGone);
    connect(&_scan, &LibraryScan::folderSilent, this, &LibrarySide::noteSilence);
    connect(&_scan, &LibraryScan::folderAnswered, this, &LibrarySide::noteAnswer);
    connect(&_scan, &LibraryScan::folderElsewhere, this, &LibrarySide::openElsewhere);
    connect(&_scan, &LibraryScan::finished, this, [this] {
        for (const QString &library : _folders.libraries()) // also when a person did not want to wait
            _folders.setAwaited(library, false);
    });
}

/// A place that a drive was at is an empty folder without it.
void LibrarySide::noteRead(const QString &library)
{
    const QFileInfo info(library);
    if (!info.isDir() || !info.isReadable() || !info.isExecutable())
        return;
    const bool isEmpty = QDir(library).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    if (isEmpty && Settings::filledLibraries().contains(library)) {
        noteProblem(library, tr("The folder \"%1\" is empty now. Is its drive connected?").arg(library));
        return;
    }
    Settings::setFilled(library, _scan.hasAssetsIn(library));
    if (!_scan.hasSilence(library))
        _folders.setProblem(library, {});
}

void LibrarySide::noteFailure(const QString &folder, const QString &reason)
{
    if (_folders.libraryOf(folder) == folder)
        noteProblem(folder, reason);
    else if (!QFileInfo::exists(folder)) // it answered just now
        noteGone(folder, reason);
    else
        emit failed({reason});
}

/// A folder was moved or removed before its turn came, as folders may be; a library has gone with its drive.
void LibrarySide::noteGone(const QString &folder, const QString &reason)
{
    const QString library = _folders.libraryOf(folder);
    if (library != folder) {
        if (!library.isEmpty())
            _scan.refresh(QFileInfo(folder).path());
        return;
    }
    _watcher.setGone(library);
    noteProblem(library, reason);
}

/// Says it once, for as long as it is to be seen.
void LibrarySide::noteProblem(const QString &library, const QString &reason)
{
    if (_folders.problemOf(library) == reason)
        return;
    _folders.setProblem(library, reason);
    emit failed({reason});
}

void LibrarySide::noteSilence(const QString &folder)
{
    if (const QString library = _folders.libraryOf(folder); !library.isEmpty())
        noteProblem(library, silenceOf(library));
}

void LibrarySide::noteAnswer(const QString &folder)
{
    const QString library = _folders.libraryOf(folder);
    _folders.setAwaited(library, false);
    if (library.isEmpty() || _scan.hasSilence(library))
        return;
    if (_folders.problemOf(library) == silenceOf(library))
        _folders.setProblem(library, {});
}

void LibrarySide::openElsewhere(const QString &path, const QString &canonical)
{
    close(path);
    if (const QString reason = open(canonical); !reason.isEmpty())
        emit failed({reason});
}

void LibrarySide::refreshAssets(const std::vector<std::string> &uuids)
{
    for (const std::string &uuid : uuids)
        _previews.forget(QString::fromStdString(uuid));
    _assets.refresh(uuids);
    std::vector<std::string> gone;
    std::copy_if(uuids.begin(), uuids.end(), std::back_inserter(gone),
                 [this](const std::string &uuid) { return !_assets.find(uuid); });
    _states.forgetBroken(gone);
    _states.updateSoon();
    watchUsed();
    emit assetsChanged();
}

/// The marks of the scene's objects tell whether the stored assets are newer, whatever is shown of the libraries.
void LibrarySide::watchUsed()
{
    QStringList directories;
    for (const std::string &uuid : _states.used())
        if (const AssetEntry *entry = _assets.find(uuid))
            directories.append(entry->directory);
    _watcher.setUsed(directories);
}

QString LibrarySide::open(const QString &path)
{
    const QString library = QDir::cleanPath(QFileInfo(path).absoluteFilePath()); // nothing of it asks the drive
    for (const QString &other : _folders.libraries()) {
        if (other == library)
            return {};
        if (AssetFilter::isIn(library, other) || AssetFilter::isIn(other, library))
            return tr("\"%1\" and the open library \"%2\" lie in each other.").arg(library, other);
    }
    _folders.addLibrary(library);
    _folders.setAwaited(library, true);
    _scan.add(library);
    emit librariesChanged(_folders.libraries());
    return {};
}

void LibrarySide::close(const QString &path)
{
    const std::vector<std::string> uuids =
        _assets.uuids([&](const AssetEntry &entry) { return AssetFilter::isIn(entry.directory, path); });
    _scan.forget(path);
    _watcher.forget(path);
    for (const std::string &uuid : uuids)
        kxAssetItemFactory::the().deleteItem(uuid);
    refreshAssets(uuids);
    _folders.removeLibrary(path);
    Settings::setFilled(path, false);
    emit librariesChanged(_folders.libraries());
}

void LibrarySide::refresh()
{
    for (const QString &library : _folders.libraries())
        _scan.refresh(library);
}

void LibrarySide::setFavourite(const QStringList &uuids, bool isFavourite)
{
    QStringList favourites = Settings::favourites();
    for (const QString &uuid : uuids) {
        favourites.removeAll(uuid);
        if (isFavourite)
            favourites.append(uuid);
    }
    Settings::setFavourites(favourites);
    _assets.setFavourites(favourites);
    emit assetsChanged();
}

void LibrarySide::markUsed(const QStringList &uuids)
{
    Settings::addRecent(uuids);
    _assets.setRecent(Settings::recent());
}
