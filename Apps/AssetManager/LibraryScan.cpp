// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/LibraryScan.h"

#include "AssetManager/AssetFilter.h"
#include "Assets/kxAssetCategory.h"
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxUrlManager.h"

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QUrl>
#include <QXmlStreamReader>

#include <algorithm>
#include <set>
#include <utility>

namespace {

constexpr qint64 SliceTime = 8;      // milliseconds: half of a screen's refresh
constexpr qint64 AnnounceTime = 150; // milliseconds: often enough to look alive
constexpr qint64 Restraint = 10;     // of the time, one part in this many may go into announcing
constexpr int MostAtOnce = 2000;     // assets: what is taken over between two frames
constexpr int ShareAtOnce = 50;      // of those read so far: where these are many, each take-over costs more

qint64 now()
{
    return QDateTime::currentMSecsSinceEpoch();
}

kxUrlManager *managerOf(const QString &path)
{
    return kxUrlManager::getUrlManager(QUrl::fromLocalFile(path));
}

/// Whether the directory is one that an asset was saved to: it holds a payload, or is called as the library calls them.
bool looksLikeAsset(const QString &directory)
{
    for (const kxAssetCategoryType category : kxAssetCategory::getAllCategories())
        if (QFileInfo(directory).fileName().startsWith(kxAssetCategory::getItemFolderName(category, {})))
            return true;
    return !QDir(directory).entryList(kxAssetCategory::getAcceptedFileTypes(Undefined), QDir::Files).isEmpty();
}

/// What is wrong with metadata that no asset could be made of, as an end of a sentence.
QString problemOf(const QString &metadata)
{
    QFile file(metadata);
    if (!file.open(QIODevice::ReadOnly))
        return LibraryScan::tr("its description may not be read by you.");
    QXmlStreamReader reader(&file);
    while (!reader.atEnd())
        reader.readNext();
    return reader.hasError() ? LibraryScan::tr("its description is damaged.")
                             : LibraryScan::tr("its description is not that of an asset.");
}

} // namespace

LibraryScan::LibraryScan(QObject *parent) : QObject(parent)
{
    connect(&_timer, &QTimer::timeout, this, &LibraryScan::work);
    connect(&_ahead, &ReadAhead::advanced, this, [this] {
        if (_isRunning)
            _timer.start(0);
    });
}

LibraryScan::~LibraryScan() = default;

void LibraryScan::start()
{
    if (_isRunning)
        return;
    _isRunning = true;
    _assetCount = 0;
    _announcedAt = now();
    _timer.start(0);
    emit started();
}

void LibraryScan::stop()
{
    _isRunning = false;
    _timer.stop();
    _ahead.clear();
}

void LibraryScan::add(const QString &folder)
{
    Folder added;
    added.path = folder;
    added.isAsked = true;
    added.withContents = true;
    _roots.insert(folder);
    ask(added, folder);
}

void LibraryScan::refresh(const QString &folder)
{
    if (isAsked(folder) || isSilent(folder))
        return; // it is read when it answers
    Folder changed;
    changed.path = folder;
    changed.onlyChanges = true;
    changed.isAsked = true;
    if (_roots.contains(folder)) { // only these are few enough for a thread each
        ask(changed, folder);
        return;
    }
    _open.push_back(changed);
    start();
}

void LibraryScan::refreshAsset(const QString &directory)
{
    if (isSilent(directory))
        return;
    Folder parent;
    parent.path = QFileInfo(directory).path();
    parent.left.append(directory);
    parent.isListed = true;
    parent.onlyChanges = true;
    parent.isPartial = true;
    _open.push_back(parent);
    start();
}

/// Has the folder read as soon as there is an answer from the place.
void LibraryScan::ask(const Folder &folder, const QString &place, bool isSilent)
{
    Question question;
    question.id = ++_lastQuestion;
    question.folder = folder;
    question.place = place;
    question.isSilent = isSilent;
    question.since.start();
    _questions.push_back(question);
    _inquiry.ask([this, place, id = question.id, manager = managerOf(place), withContents = folder.withContents] {
        const QString canonical = QFileInfo(place).canonicalFilePath();
        if (manager)
            ReadAhead::read(*manager, place, withContents);
        return [this, id, canonical] { receive(id, canonical); };
    });
    if (!isSilent)
        start();
}

void LibraryScan::receive(int id, const QString &canonical)
{
    const auto found =
        std::find_if(_questions.begin(), _questions.end(), [id](const Question &asked) { return asked.id == id; });
    if (found == _questions.end())
        return; // nobody wants to know any more
    Folder folder = found->folder;
    folder.isReadAhead = found->place == folder.path;
    _questions.erase(found);
    start();
    _timer.start(0);
    const bool isElsewhere =
        folder.isReadAhead && !folder.onlyChanges && !canonical.isEmpty() && canonical != folder.path;
    if (!isElsewhere)
        (folder.onlyChanges ? _open : _waiting).push_back(folder);
    emit folderAnswered(folder.path);
    if (!isElsewhere)
        return;
    _roots.remove(folder.path);
    emit folderElsewhere(folder.path, canonical);
}

bool LibraryScan::isAsked(const QString &folder) const
{
    return std::any_of(_questions.begin(), _questions.end(),
                       [&](const Question &asked) { return asked.folder.path == folder; });
}

bool LibraryScan::isSilent(const QString &path) const
{
    return std::any_of(_questions.begin(), _questions.end(), [&](const Question &asked) {
        return asked.isSilent && AssetFilter::isIn(path, asked.folder.path);
    });
}

bool LibraryScan::hasSilence(const QString &library) const
{
    return std::any_of(_questions.begin(), _questions.end(), [&](const Question &asked) {
        return asked.isSilent && AssetFilter::isIn(asked.folder.path, library);
    });
}

void LibraryScan::cancel()
{
    if (!_isRunning)
        return;
    stop();
    _ahead.giveUp();
    _open.clear();
    _waiting.clear();
    _questions.erase(
        std::remove_if(_questions.begin(), _questions.end(), [](const Question &asked) { return !asked.isSilent; }),
        _questions.end());
    announce();
    emit finished(true);
}

void LibraryScan::forget(const QString &folder)
{
    const QString beginning = folder + '/';
    for (auto known = _known.lowerBound(beginning); known != _known.end() && known.key().startsWith(beginning);)
        known = _known.erase(known);
    _roots.remove(folder);
    _questions.erase(
        std::remove_if(_questions.begin(), _questions.end(),
                       [&](const Question &asked) { return AssetFilter::isIn(asked.folder.path, folder); }),
        _questions.end());
    if (_isStepping)
        _forgotten.append(folder);
    else
        drop(folder);
}

bool LibraryScan::hasAssetsIn(const QString &folder) const
{
    const QString beginning = folder + '/';
    const auto known = _known.lowerBound(beginning);
    return known != _known.end() && known.key().startsWith(beginning);
}

void LibraryScan::work()
{
    QElapsedTimer slice;
    slice.start();
    bool hasAdvanced = false;
    bool isHeldUp = false;
    while (_isRunning && !isHeldUp && slice.elapsed() < SliceTime && hasFolders()) {
        isHeldUp = !step();
        hasAdvanced = hasAdvanced || !isHeldUp;
    }
    if (_isRunning)
        noteSilence(hasAdvanced, isHeldUp);
    if (!_isRunning)
        return; // somebody who heard of something cancelled
    const bool isDue = now() - _announcedAt >= std::max(AnnounceTime, Restraint * _announcing);
    const auto most = static_cast<std::size_t>(std::max(MostAtOnce, _assetCount / ShareAtOnce));
    if (isDone() || isDue || _changed.size() >= most)
        announce();
    if (!_isRunning)
        return;
    if (!isDone()) {
        _timer.start(isHeldUp || !hasFolders() ? AnnounceTime : 0); // while it waits, what is there is shown
        return;
    }
    stop();
    emit finished(false);
}

bool LibraryScan::isDone() const
{
    return !hasFolders() &&
           std::all_of(_questions.begin(), _questions.end(), [](const Question &asked) { return asked.isSilent; });
}

/// Tells which drives have not answered for too long.
void LibraryScan::noteSilence(bool hasAdvanced, bool isHeldUp)
{
    QStringList silent;
    for (Question &asked : _questions)
        if (!asked.isSilent && asked.since.hasExpired(_patience)) {
            asked.isSilent = true;
            silent.append(asked.folder.path);
        }
    if (hasAdvanced || !isHeldUp)
        _heldUp.invalidate();
    if (isHeldUp && !_heldUp.isValid())
        _heldUp.start();
    else if (isHeldUp && _heldUp.hasExpired(_patience))
        silent.append(setAside());
    for (const QString &folder : silent)
        emit folderSilent(folder);
}

/// Leaves what was asked for last until that answers which it is held up by. Returns its path.
QString LibraryScan::setAside()
{
    const Folder &last = _open.back();
    const QString place = last.isListed ? last.left.last() : last.path;
    while (!_open.back().isAsked && !_open.back().isPartial)
        _open.pop_back();
    Folder again; // as a whole: what is known already costs little
    again.path = _open.back().path;
    again.isAsked = true;
    again.onlyChanges = true;
    again.withContents = _open.back().withContents;
    for (const Folder &left : _open)
        again.withContents = again.withContents || (left.withContents && AssetFilter::isIn(left.path, again.path));
    drop(again.path);
    ask(again, place, true);
    return again.path;
}

/// What lies in the folder is not read any more.
void LibraryScan::drop(const QString &folder)
{
    const auto isIn = [&](const Folder &left) { return AssetFilter::isIn(left.path, folder); };
    _open.erase(std::remove_if(_open.begin(), _open.end(), isIn), _open.end());
    _waiting.erase(std::remove_if(_waiting.begin(), _waiting.end(), isIn), _waiting.end());
    _ahead.giveUp();
    _heldUp.invalidate();
}

/// Whether it could go on; otherwise a directory has to be read ahead first.
bool LibraryScan::step()
{
    if (_open.empty()) {
        _open.push_back(_waiting.front());
        _waiting.erase(_waiting.begin());
    }
    Folder &folder = _open.back();
    if (!isReadAhead(folder))
        return false;
    _isStepping = true; // whoever hears of something may forget what is looked at
    if (!folder.isListed)
        list(folder);
    else if (!folder.left.isEmpty())
        readDirectory(folder.left.takeLast());
    else
        leave();
    _isStepping = false;
    for (const QString &forgotten : std::exchange(_forgotten, {}))
        drop(forgotten);
    return true;
}

/// Whether what is looked at next in the folder was read ahead.
bool LibraryScan::isReadAhead(const Folder &folder)
{
    if (folder.isListed ? folder.left.isEmpty() : folder.isReadAhead)
        return true;
    const QString &next = folder.isListed ? folder.left.last() : folder.path;
    if (_ahead.take(next))
        return true;
    if (!_ahead.isWanted(next))
        _ahead.want({next}, folder.withContents);
    return false;
}

void LibraryScan::list(Folder &folder)
{
    folder.isListed = true;
    for (Folder &earlier : _open)
        if (&earlier != &folder && earlier.path == folder.path)
            earlier.isPartial = true; // what it listed may have changed since
    const QFileInfo info(folder.path);
    kxUrlManager *manager = managerOf(folder.path);
    if (info.isDir() && (!info.isReadable() || !info.isExecutable()))
        emit folderFailed(folder.path, tr("The folder \"%1\" may not be read by you.").arg(folder.path));
    if (!manager)
        return;
    for (const QUrl &directory : manager->subDirectories(QUrl::fromLocalFile(folder.path)))
        folder.left.prepend(directory.toLocalFile());
    _ahead.want({folder.left.rbegin(), folder.left.rend()}, folder.withContents);
}

void LibraryScan::readDirectory(const QString &directory)
{
    Folder &folder = _open.back();
    if (!QFileInfo(directory).isDir())
        return; // it went after it was listed
    if (folder.onlyChanges && isUnchanged(directory)) {
        folder.assets.insert(directory);
        return;
    }
    const DirectoryStamp stamp(directory); // before it is read: what changes meanwhile is read again
    std::set<kxAssetItem *> items;
    managerOf(directory)->collectItems(QUrl::fromLocalFile(directory), Undefined, items, nullptr, true);
    Known read{stamp, {}};
    for (kxAssetItem *item : items)
        read.uuids.push_back(item->uuid());
    _changed.insert(_changed.end(), read.uuids.begin(), read.uuids.end());
    _assetCount += static_cast<int>(items.size());
    if (!items.empty()) {
        folder.assets.insert(directory);
        _known.insert(directory, read);
        return;
    }
    removeAssets(directory, _known.take(directory)); // it held some before
    reportDamage(directory, stamp);
    folder.plain.append(directory);
    emit folderFound(folder.path, directory);
    Folder below;
    below.path = directory;
    below.onlyChanges = folder.onlyChanges;
    below.withContents = folder.withContents;
    below.isReadAhead = true;
    _open.push_back(below); // what was referred to as the open folder is not valid any more
}

void LibraryScan::leave()
{
    const Folder folder = _open.back();
    _open.pop_back();
    if (folder.isPartial)
        return;
    removeGone(folder);
    if (!QFileInfo(folder.path).isDir())
        leaveVanished(folder);
    emit folderRead(folder.path, folder.plain);
}

/// A folder that went while it was read. Of all that went with it, what was asked for is named, once.
void LibraryScan::leaveVanished(const Folder &folder)
{
    if (folder.isAsked) {
        emit folderGone(folder.path, tr("The folder \"%1\" is not there. Is its drive connected?").arg(folder.path));
        return;
    }
    Folder nothing;
    nothing.path = folder.path;
    nothing.onlyChanges = true;
    removeGone(nothing);
    if (!_open.empty())
        _open.back().plain.removeAll(folder.path);
}

bool LibraryScan::isUnchanged(const QString &directory) const
{
    const auto known = _known.find(directory);
    return known != _known.end() && known->stamp == DirectoryStamp(directory) &&
           std::all_of(known->uuids.begin(), known->uuids.end(), [&](const std::string &uuid) {
               kxAssetItem *item = kxAssetItemFactory::the().findItem(uuid);
               return item && item->directoryUrl().toLocalFile() == directory;
           });
}

/// Takes the assets out of the registry that lay in the folder, or in folders in it that are not there any more.
void LibraryScan::removeGone(const Folder &folder)
{
    if (!folder.onlyChanges)
        return;
    const QSet<QString> plain(folder.plain.begin(), folder.plain.end());
    const QString beginning = folder.path + '/';
    auto known = _known.lowerBound(beginning);
    while (known != _known.end() && known.key().startsWith(beginning)) {
        const QString child = known.key().section('/', 0, beginning.count('/'));
        if (plain.contains(child) || folder.assets.contains(child)) {
            ++known;
            continue;
        }
        removeAssets(known.key(), *known);
        known = _known.erase(known);
    }
}

void LibraryScan::removeAssets(const QString &directory, const Known &known)
{
    for (const std::string &uuid : known.uuids) {
        kxAssetItem *item = kxAssetItemFactory::the().findItem(uuid);
        if (!item || item->directoryUrl().toLocalFile() != directory)
            continue; // it was moved, and is known where it is now
        kxAssetItemFactory::the().deleteItem(uuid);
        _changed.push_back(uuid);
    }
}

/// Says once for each time that it was written that a directory's metadata is damaged. Other XML is nobody's business.
void LibraryScan::reportDamage(const QString &directory, const DirectoryStamp &stamp)
{
    const QFileInfoList metadata = QDir(directory).entryInfoList({QStringLiteral("*.xml")}, QDir::Files);
    if (metadata.isEmpty() || !looksLikeAsset(directory)) {
        _damaged.remove(directory);
        return;
    }
    if (_damaged.value(directory) == stamp)
        return;
    _damaged.insert(directory, stamp);
    emit folderFailed(
        directory, tr("The asset in \"%1\" cannot be read: %2").arg(directory, problemOf(metadata.first().filePath())));
}

void LibraryScan::announce()
{
    const qint64 begin = now();
    const std::vector<std::string> changed = std::move(_changed);
    _changed.clear();
    if (!changed.empty())
        emit assetsChanged(changed);
    emit progressed(_assetCount, _open.empty() ? QString() : _open.back().path);
    _announcedAt = now();
    _announcing = _announcedAt - begin;
}
