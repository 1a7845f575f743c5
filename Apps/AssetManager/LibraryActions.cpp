// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/LibraryActions.h"

#include "AssetManager/AssetModel.h"
#include "AssetManager/AssetTies.h"
#include "AssetManager/DirectoryMove.h"
#include "AssetManager/DiskTrouble.h"
#include "AssetManager/FolderMerge.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/LastingCommand.h"
#include "AssetManager/LibraryCommands.h"
#include "AssetManager/ShownName.h"
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxUrlManager.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QUndoStack>
#include <QUrl>

#include <map>
#include <set>

namespace {

kxAssetItem *itemOf(const QString &uuid)
{
    return kxAssetItemFactory::the().findItem(uuid.toStdString());
}

QString nameOf(const QString &path)
{
    return QFileInfo(path).fileName();
}

/// Registers what lies in a directory that was brought to its place.
void collect(const QString &directory)
{
    const QUrl url = QUrl::fromLocalFile(directory);
    if (const kxUrlManager *manager = kxUrlManager::getUrlManager(url))
        manager->collectItems(url, Undefined, nullptr);
}

/// What lay at or below \a from lies in the same way below \a to now.
void follow(const LibraryActions::Move &move)
{
    for (const std::string &uuid : move.uuids) {
        kxAssetItem *item = kxAssetItemFactory::the().findItem(uuid);
        const QString directory = item ? item->directoryUrl().toLocalFile() : QString();
        if (item && AssetFilter::isIn(directory, move.from))
            item->setDirectoryUrl(QUrl::fromLocalFile(move.to + directory.mid(move.from.size())));
        else
            collect(move.to);
    }
}

} // namespace

LibraryActions::LibraryActions(AssetModel &model, FolderModel &folders, QUndoStack &undo, QObject *parent)
    : QObject(parent), _model(model), _folders(folders), _undo(undo)
{}

LibraryActions::~LibraryActions() = default;

void LibraryActions::report(const QStringList &failures)
{
    if (!failures.isEmpty())
        emit failed(failures);
}

QString LibraryActions::libraryOf(const QString &path) const
{
    return _folders.libraryOf(path);
}

std::vector<std::string> LibraryActions::assetsIn(const QString &path) const
{
    return _model.uuids([&](const AssetEntry &entry) { return AssetFilter::isIn(entry.directory, path); });
}

QString LibraryActions::obstacleOf(const QString &path) const
{
    if (!libraryOf(path).isEmpty())
        return {};
    return tr("\"%1\" was left as it is: its library is not open any more.").arg(ShownName::of(path));
}

QString LibraryActions::carryOut(const Move &move)
{
    for (const QString &path : {move.from, move.to})
        if (QString reason = obstacleOf(path); !reason.isEmpty())
            return reason;
    if (QFileInfo::exists(move.to))
        return tr("\"%1\" could not be put back: something else is at its place now.").arg(ShownName::of(move.from));
    if (QString reason = DirectoryMove::move(move.from, move.to); !reason.isEmpty())
        return reason;
    if (Trash::isTrash(move.to))
        for (const std::string &uuid : move.uuids)
            kxAssetItemFactory::the().deleteItem(uuid);
    else
        follow(move);
    emit assetsChanged(move.uuids);
    emit foldersChanged({QFileInfo(move.from).path(), QFileInfo(move.to).path()});
    return {};
}

void LibraryActions::begin(const Batch &batch)
{
    _batches.begin(batch.text(batch.total), batch.total);
}

void LibraryActions::perform(Batch &batch, const Move &move)
{
    if (const QString reason = carryOut(move); !reason.isEmpty())
        batch.failures.append(reason);
    else
        batch.done.push_back(move);
}

void LibraryActions::finish(Batch batch)
{
    const int count = _batches.end() ? batch.total : static_cast<int>(batch.done.size());
    if (!batch.done.empty())
        push(std::make_unique<MoveCommand>(*this, batch.text(count), std::move(batch.done)));
    report(batch.failures);
}

void LibraryActions::renameAsset(const QString &uuid, const QString &name)
{
    if (_batches.waits([this, uuid, name] { renameAsset(uuid, name); }))
        return;
    kxAssetItem *item = itemOf(uuid);
    if (!item)
        return;
    const QString former = QString::fromStdString(item->name());
    if (const QString reason = rename(uuid, name); !reason.isEmpty())
        report({reason});
    else
        push(std::make_unique<RenameCommand>(*this, uuid, former, name));
}

QString LibraryActions::rename(const QString &uuid, const QString &name)
{
    kxAssetItem *item = itemOf(uuid);
    if (!item)
        return tr("An asset was not renamed: it is not in an open library any more.");
    const QString former = QString::fromStdString(item->name());
    const bool isRenamed = item->changeName(name);
    emit assetsChanged({uuid.toStdString()});
    if (isRenamed)
        return {};
    const QString reason = DiskTrouble::advice(item->directoryUrl().toLocalFile(), tr("May its folder be written?"));
    return tr("\"%1\" could not be renamed.").arg(former) + ' ' + reason;
}

void LibraryActions::renameFolder(const QString &path, const QString &name)
{
    if (_batches.waits([this, path, name] { renameFolder(path, name); }))
        return;
    const QString to = QFileInfo(path).path() + '/' + name;
    if (name.contains('/') || name.startsWith('.'))
        report({tr("A folder cannot be called \"%1\".").arg(name)});
    else if (QFileInfo::exists(to))
        report({tr("There is something called \"%1\" already.").arg(name)});
    else {
        Batch batch{[path](int) { return tr("Rename of \"%1\"").arg(nameOf(path)); }, 1, {}, {}};
        begin(batch);
        perform(batch, {path, to, assetsIn(path)});
        finish(batch);
    }
}

QString LibraryActions::createFolder(const QString &parent)
{
    kxUrlManager *manager = kxUrlManager::getUrlManager(QUrl::fromLocalFile(parent));
    if (!manager)
        return {};
    const QString name = manager->getUniqueDirectoryName(QUrl::fromLocalFile(parent), tr("New folder"));
    QString path = parent + '/' + name;
    if (!QDir().mkpath(path)) {
        report({tr("No folder could be made in \"%1\".").arg(nameOf(parent)) + ' ' +
                DiskTrouble::advice(parent, tr("May its folder be written?"))});
        return {};
    }
    emit foldersChanged({parent});
    push(std::make_unique<NewFolderCommand>(*this, path));
    return path;
}

std::vector<std::pair<QString, std::vector<std::string>>> LibraryActions::directoriesOf(const QStringList &uuids) const
{
    std::vector<std::pair<QString, std::vector<std::string>>> directories;
    std::set<QString> known;
    for (const QString &uuid : uuids) {
        const AssetEntry *entry = _model.find(uuid.toStdString());
        if (entry && known.insert(entry->directory).second)
            directories.emplace_back(entry->directory, std::vector<std::string>());
    }
    // Several assets may share a directory, and then go together.
    std::map<QString, std::vector<std::string> *> uuidsOf;
    for (auto &[directory, assets] : directories)
        uuidsOf[directory] = &assets;
    _model.uuids([&](const AssetEntry &entry) {
        if (const auto found = uuidsOf.find(entry.directory); found != uuidsOf.end())
            found->second->push_back(entry.uuid);
        return false;
    });
    return directories;
}

void LibraryActions::moveInto(const QString &folder, const QString &directory, const std::vector<std::string> &uuids,
                              Batch &batch)
{
    if (QFileInfo(directory).path() == folder)
        return;
    const QUrl target = QUrl::fromLocalFile(folder);
    kxUrlManager *manager = kxUrlManager::getUrlManager(target);
    if (!manager || manager->containsItems(target, Undefined))
        batch.failures.append(tr("\"%1\" is no folder for assets.").arg(nameOf(folder)));
    else
        perform(batch, {directory, folder + '/' + manager->getUniqueDirectoryName(target, nameOf(directory)), uuids});
}

void LibraryActions::moveAssets(const QStringList &uuids, const QString &folder)
{
    if (_batches.waits([this, uuids, folder] { moveAssets(uuids, folder); }))
        return;
    const auto directories = directoriesOf(uuids);
    Batch batch{[](int count) { return tr("Move of %n asset(s)", nullptr, count); }, uuids.size(), {}, {}};
    begin(batch);
    for (auto next = directories.begin(); next != directories.end() && _batches.goesOn(); ++next)
        moveInto(folder, next->first, next->second, batch);
    finish(std::move(batch));
}

void LibraryActions::moveFolders(const QStringList &paths, const QString &folder)
{
    if (_batches.waits([this, paths, folder] { moveFolders(paths, folder); }))
        return;
    Batch batch{[](int count) { return tr("Move of %n folder(s)", nullptr, count); }, paths.size(), {}, {}};
    begin(batch);
    for (auto path = paths.begin(); path != paths.end() && _batches.goesOn(); ++path) {
        if (AssetFilter::isIn(folder, *path))
            batch.failures.append(tr("\"%1\" cannot be moved into itself.").arg(nameOf(*path)));
        else if (QFileInfo(*path).path() != folder && QFileInfo::exists(folder + '/' + nameOf(*path)))
            mergeFolder(*path, folder, batch.failures);
        else
            moveInto(folder, *path, assetsIn(*path), batch);
    }
    finish(std::move(batch));
}

void LibraryActions::mergeFolder(const QString &path, const QString &folder, QStringList &failures)
{
    const std::vector<std::string> uuids = assetsIn(path);
    const FolderMerge merge(path, folder + '/' + nameOf(path), [this](const QString &in) { return assetsIn(in); });
    const QUrl target = QUrl::fromLocalFile(folder);
    const kxUrlManager *manager = kxUrlManager::getUrlManager(target);
    QUrl result;
    if (!manager || !manager->move(QUrl::fromLocalFile(path), target, result, false))
        failures.append(QString(tr("\"%1\" was not moved.").arg(nameOf(path)) + ' ' +
                                DiskTrouble::advice(folder, DiskTrouble::advice(path, {})))
                            .trimmed());
    collect(folder + '/' + nameOf(path));
    emit assetsChanged(uuids);
    emit foldersChanged({QFileInfo(path).path(), folder});
    if (std::vector<Move> moves = merge.moves(); !moves.empty())
        push(std::make_unique<MergeCommand>(*this, tr("Merge of \"%1\"").arg(nameOf(path)), std::move(moves),
                                            merge.emptied()));
}

void LibraryActions::noteReplaced(const std::string &uuid, const QString &directory)
{
    if (kxAssetItem *item = kxAssetItemFactory::the().findItem(uuid))
        item->setDirectoryUrl(QUrl::fromLocalFile(directory));
    collect(directory); // with the metadata that it has now
    emit assetsChanged({uuid});
    emit foldersChanged({QFileInfo(directory).path()});
}

void LibraryActions::makeFolders(const QStringList &paths)
{
    for (const QString &path : paths) {
        if (!obstacleOf(path).isEmpty())
            continue;
        QDir().mkpath(path); // where that fails, moving things into it says why
        emit foldersChanged({QFileInfo(path).path()});
    }
}

void LibraryActions::removeEmptyFolders(const QStringList &paths)
{
    for (auto path = paths.rbegin(); path != paths.rend(); ++path) {
        if (!obstacleOf(*path).isEmpty())
            continue;
        QDir().rmdir(*path);
        emit foldersChanged({QFileInfo(*path).path()});
    }
}

void LibraryActions::trash(const QString &directory, const std::vector<std::string> &uuids, Batch &batch)
{
    if (const QString reason = obstacleOf(directory); !reason.isEmpty()) {
        batch.failures.append(reason);
        return;
    }
    const osg::Result<QString> place = Trash(libraryOf(directory)).makePlaceFor(directory);
    if (place)
        perform(batch, {directory, place.value(), uuids});
    else
        batch.failures.append(QString::fromStdString(place.reason()));
}

void LibraryActions::trashAssets(const QStringList &uuids)
{
    if (_batches.waits([this, uuids] { trashAssets(uuids); }))
        return;
    const auto directories = directoriesOf(uuids);
    Batch batch{[](int count) { return tr("Deletion of %n asset(s)", nullptr, count); }, uuids.size(), {}, {}};
    begin(batch);
    for (auto next = directories.begin(); next != directories.end() && _batches.goesOn(); ++next)
        trash(next->first, next->second, batch);
    finish(std::move(batch));
}

void LibraryActions::trashFolders(const QStringList &paths)
{
    if (_batches.waits([this, paths] { trashFolders(paths); }))
        return;
    QStringList folders;
    for (const QString &path : paths)
        if (const QString library = _folders.libraryOf(path); !library.isEmpty() && library != path)
            folders.append(path);
    if (folders.isEmpty())
        return;
    const QString first = nameOf(folders.first());
    const auto text = [first](int count) {
        return count == 1 ? tr("Deletion of \"%1\"").arg(first) : tr("Deletion of %n folder(s)", nullptr, count);
    };
    Batch batch{text, folders.size(), {}, {}};
    begin(batch);
    for (auto folder = folders.begin(); folder != folders.end() && _batches.goesOn(); ++folder)
        trash(*folder, assetsIn(*folder), batch);
    finish(std::move(batch));
}

void LibraryActions::putBack(const Trash::Entry &entry, Batch &batch)
{
    const QUrl origin = QUrl::fromLocalFile(entry.origin);
    kxUrlManager *manager = kxUrlManager::getUrlManager(origin);
    if (!manager || !QDir().mkpath(entry.origin))
        batch.failures.append(
            tr("\"%1\" could not be put back: \"%2\" cannot be made.").arg(ShownName::of(entry.path), entry.origin));
    else
        perform(batch,
                {entry.path, entry.origin + '/' + manager->getUniqueDirectoryName(origin, nameOf(entry.path)), {}});
}

void LibraryActions::restore(const std::vector<Trash::Entry> &entries)
{
    if (entries.empty() || _batches.waits([this, entries] { restore(entries); }))
        return;
    const QString first = ShownName::of(entries.front().path);
    const auto text = [first](int count) {
        return count == 1 ? tr("Restoring of \"%1\"").arg(first)
                          : tr("Restoring of %n deleted thing(s)", nullptr, count);
    };
    Batch batch{text, static_cast<int>(entries.size()), {}, {}};
    begin(batch);
    for (auto entry = entries.begin(); entry != entries.end() && _batches.goesOn(); ++entry)
        putBack(*entry, batch);
    finish(std::move(batch));
}

/// What became of the disk and of the scene is one step.
void LibraryActions::push(std::unique_ptr<QUndoCommand> command, const AssetTies *before)
{
    const QString text = command->text();
    LastingCommand::Parts parts;
    parts.push_back(std::move(command));
    if (std::unique_ptr<QUndoCommand> ties = before ? before->changes() : nullptr)
        parts.push_back(std::move(ties));
    _undo.push(std::make_unique<LastingCommand>(text, std::move(parts)).release()); // the stack's
}

void LibraryActions::remember(const std::vector<std::string> &uuids, const QString &text, const AssetTies *before)
{
    emit assetsChanged(uuids);
    std::vector<Move> moves;
    for (const std::string &uuid : uuids) {
        const AssetEntry *entry = _model.find(uuid);
        const QString library = entry ? _folders.libraryOf(entry->directory) : QString();
        if (library.isEmpty())
            continue;
        // The place in the trash is made when it is needed.
        moves.push_back({QString(), entry->directory, {uuid}});
    }
    if (!moves.empty())
        push(std::make_unique<MoveCommand>(*this, text, std::move(moves)), before);
}
