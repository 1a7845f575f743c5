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
#include "AssetManager/ReplaceCommand.h"
#include "AssetManager/SaveLeftovers.h"
#include "AssetManager/ShownName.h"
#include "AssetSession/kxAssetManagerModule.h"
#include "AssetSession/kxAssetOperations.h"
#include "AssetSession/kxNodeSaving.h"
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Assets/kxUrlManager.h"
#include "Kernel/kxController.h"
#include "Kernel/kxNodeUtils.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/NameAttachment.h"

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

/// Of the asset that an object of the scene came from; "" for none.
std::string uuidOf(std::uint32_t id)
{
    const auto container = osg::AttachmentContainerPtr::dcast(osg::FieldContainerFactory::the().getContainer(id));
    const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::getAssetAttachment(container);
    return attachment ? attachment->getUuid() : std::string();
}

/// Registers what lies in a directory that was brought to its place.
void collect(const QString &directory)
{
    const QUrl url = QUrl::fromLocalFile(directory);
    if (const kxUrlManager *manager = kxUrlManager::getUrlManager(url))
        manager->collectItems(url, Undefined, nullptr);
}

/// Without what the sentence begins with anyway.
QString causeOf(const std::string &reason)
{
    const QString text = QString::fromStdString(reason);
    const QString introduction = QStringLiteral(" was not saved: ");
    const int end = text.indexOf(introduction);
    return end < 0 ? text : text.mid(end + introduction.size());
}

/// Whatever is known better than by \a otherwise, which has the words of programmers.
QString notSaved(const QString &name, const QString &folder, const std::string &otherwise)
{
    const QString reason = DiskTrouble::advice(folder, {});
    return reason.isEmpty() ? LibraryActions::tr("\"%1\" was not saved: %2").arg(name, causeOf(otherwise))
                            : LibraryActions::tr("\"%1\" was not saved.").arg(name) + ' ' + reason;
}

QString notRetagged(const QString &name, const QString &directory)
{
    const QString sentence = LibraryActions::tr("The tags of \"%1\" could not be changed.").arg(name);
    return QString(sentence + ' ' + DiskTrouble::advice(directory, {})).trimmed();
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

bool LibraryActions::waits(std::function<void()> action)
{
    if (!_progress)
        return false;
    _waiting.push_back(std::move(action));
    return true;
}

void LibraryActions::begin(const QString &text, int total, const BatchProgress::Look &look)
{
    _progress = std::make_unique<BatchProgress>(text, total, kxController::getMainWindow(), look);
}

void LibraryActions::begin(const Batch &batch)
{
    begin(batch.text(batch.total), batch.total, _look);
}

bool LibraryActions::end()
{
    const bool isWhole = !_progress->isCanceled();
    _progress.reset();
    if (!_waiting.empty())
        QMetaObject::invokeMethod(this, &LibraryActions::doWaiting, Qt::QueuedConnection);
    return isWhole;
}

void LibraryActions::doWaiting()
{
    while (!_progress && !_waiting.empty()) {
        const std::function<void()> next = std::move(_waiting.front());
        _waiting.erase(_waiting.begin());
        next();
    }
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
    const int count = end() ? batch.total : static_cast<int>(batch.done.size());
    if (!batch.done.empty())
        push(std::make_unique<MoveCommand>(*this, batch.text(count), std::move(batch.done)));
    report(batch.failures);
}

void LibraryActions::renameAsset(const QString &uuid, const QString &name)
{
    if (waits([this, uuid, name] { renameAsset(uuid, name); }))
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
    if (waits([this, path, name] { renameFolder(path, name); }))
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
    if (waits([this, uuids, folder] { moveAssets(uuids, folder); }))
        return;
    const auto directories = directoriesOf(uuids);
    Batch batch{[](int count) { return tr("Move of %n asset(s)", nullptr, count); }, uuids.size(), {}, {}};
    begin(batch);
    for (auto next = directories.begin(); next != directories.end() && _progress->goesOn(); ++next)
        moveInto(folder, next->first, next->second, batch);
    finish(std::move(batch));
}

void LibraryActions::moveFolders(const QStringList &paths, const QString &folder)
{
    if (waits([this, paths, folder] { moveFolders(paths, folder); }))
        return;
    Batch batch{[](int count) { return tr("Move of %n folder(s)", nullptr, count); }, paths.size(), {}, {}};
    begin(batch);
    for (auto path = paths.begin(); path != paths.end() && _progress->goesOn(); ++path) {
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
    if (waits([this, uuids] { trashAssets(uuids); }))
        return;
    const auto directories = directoriesOf(uuids);
    Batch batch{[](int count) { return tr("Deletion of %n asset(s)", nullptr, count); }, uuids.size(), {}, {}};
    begin(batch);
    for (auto next = directories.begin(); next != directories.end() && _progress->goesOn(); ++next)
        trash(next->first, next->second, batch);
    finish(std::move(batch));
}

void LibraryActions::trashFolders(const QStringList &paths)
{
    if (waits([this, paths] { trashFolders(paths); }))
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
    for (auto folder = folders.begin(); folder != folders.end() && _progress->goesOn(); ++folder)
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
    if (entries.empty() || waits([this, entries] { restore(entries); }))
        return;
    const QString first = ShownName::of(entries.front().path);
    const auto text = [first](int count) {
        return count == 1 ? tr("Restoring of \"%1\"").arg(first)
                          : tr("Restoring of %n deleted thing(s)", nullptr, count);
    };
    Batch batch{text, static_cast<int>(entries.size()), {}, {}};
    begin(batch);
    for (auto entry = entries.begin(); entry != entries.end() && _progress->goesOn(); ++entry)
        putBack(*entry, batch);
    finish(std::move(batch));
}

namespace {

QStringList edited(const QStringList &tags, const QStringList &added, const QStringList &removed)
{
    QStringList result;
    for (const QString &tag : tags)
        if (!removed.contains(tag))
            result.append(tag);
    for (const QString &tag : added)
        if (!result.contains(tag))
            result.append(tag);
    return result;
}

} // namespace

void LibraryActions::editTags(const QStringList &uuids, const QStringList &added, const QStringList &removed)
{
    if (waits([this, uuids, added, removed] { editTags(uuids, added, removed); }))
        return;
    auto edit = std::make_unique<ReplaceCommand>(*this, QString());
    int count = 0;
    QStringList failures;
    begin(tr("Tags of %n asset(s)", nullptr, uuids.size()), uuids.size(), _look);
    for (auto uuid = uuids.begin(); uuid != uuids.end() && _progress->goesOn(); ++uuid) {
        const AssetEntry *entry = _model.find(uuid->toStdString());
        const QStringList before = entry ? QStringList(entry->tags) : QStringList();
        const QStringList after = edited(before, added, removed);
        if (!entry || after == before)
            continue;
        const QString reason =
            keepMetadata(*entry, *edit).isEmpty() ? retag(*uuid, after) : notRetagged(entry->name, entry->directory);
        if (reason.isEmpty())
            ++count;
        else
            failures.append(reason);
    }
    end();
    edit->settle();
    edit->setText(tr("Tags of %n asset(s)", nullptr, count));
    if (!edit->isEmpty())
        push(std::move(edit));
    report(failures);
}

/// What is written anew when tags are, which is no texture; "" or why it cannot be kept.
QString LibraryActions::keepMetadata(const AssetEntry &entry, ReplaceCommand &edit)
{
    const QDir directory(entry.directory);
    QStringList files;
    for (const QString &name : directory.entryList({QStringLiteral("*.xml"), QStringLiteral("*.osb")}, QDir::Files))
        files.append(directory.filePath(name));
    if (const QString preview = kxAssetOperations::previewFile(entry.uuid); QFileInfo::exists(preview))
        files.append(preview);
    for (const QString &file : files)
        if (QString reason = edit.keepFile(entry.uuid, file); !reason.isEmpty())
            return reason;
    return {};
}

QString LibraryActions::retag(const QString &uuid, const QStringList &tags)
{
    kxAssetItem *item = itemOf(uuid);
    if (!item)
        return tr("An asset's tags were not changed: it is not in an open library any more.");
    const QString name = QString::fromStdString(item->name());
    if (item->category() != Material) // items of environment materials show none that they may keep
        return tr("\"%1\" has no tags: only materials have them.").arg(name);
    kxAssetOperations::TagEdit edit;
    edit.clears = true;
    for (const QString &tag : tags)
        edit.added.push_back(tag.toStdString());
    const osg::Result<void> done = kxAssetOperations::retag(uuid.toStdString(), edit);
    emit assetsChanged({uuid.toStdString()});
    if (done)
        return {};
    return notRetagged(name, item->directoryUrl().toLocalFile());
}

void LibraryActions::renderPreviews(const QStringList &uuids)
{
    if (waits([this, uuids] { renderPreviews(uuids); }))
        return;
    auto renewal = std::make_unique<ReplaceCommand>(*this, tr("New previews of %n asset(s)", nullptr, uuids.size()));
    QStringList failures;
    begin(tr("Rendering previews"), uuids.size(), {"previewProgress", 0});
    for (auto uuid = uuids.begin(); uuid != uuids.end() && _progress->goesOn(); ++uuid)
        if (const QString reason = renderPreview(uuid->toStdString(), *renewal); !reason.isEmpty())
            failures.append(reason);
    end();
    renewal->settle();
    if (!renewal->isEmpty())
        push(std::move(renewal));
    report(failures);
}

/// "" or the reason why not.
QString LibraryActions::renderPreview(const std::string &uuid, ReplaceCommand &renewal)
{
    kxAssetItem *item = kxAssetItemFactory::the().findItem(uuid);
    const QString name = QString::fromStdString(item ? item->name() : uuid);
    if (const QString file = kxAssetOperations::previewFile(uuid); !file.isEmpty())
        if (QString reason = renewal.keepFile(uuid, file); !reason.isEmpty())
            return reason;
    const bool isRendered = bool(kxAssetOperations::renderPreview(uuid));
    emit assetsChanged({uuid});
    if (isRendered)
        return {};
    const QString reason = DiskTrouble::advice(item ? item->directoryUrl().toLocalFile() : QString(), {});
    return QString(tr("No new preview could be made of \"%1\".").arg(name) + ' ' + reason).trimmed();
}

void LibraryActions::saveNodes(const std::vector<std::uint32_t> &ids, const QString &folder)
{
    if (waits([this, ids, folder] { saveNodes(ids, folder); }))
        return;
    const auto total = static_cast<int>(ids.size());
    std::vector<std::string> saved;
    QStringList failures;
    const AssetTies before(ids);
    begin(tr("Saving of %n object(s)", nullptr, total), total, _look);
    for (auto id = ids.begin(); id != ids.end() && _progress->goesOn(); ++id) {
        const osg::NodePtr node = kxNodeUtils::getNodeFromId(*id);
        if (!node)
            continue;
        const SaveLeftovers leftovers(folder);
        const auto result = kxNodeSaving({}).save(node, {}, QUrl::fromLocalFile(folder));
        if (result)
            saved.push_back(result.value().uuid);
        else {
            failures.append(notSaved(QString::fromStdString(osg::getName(node)), folder, result.reason()));
            leftovers.remove();
        }
    }
    end();
    emit foldersChanged({folder});
    remember(saved, tr("Saving of %n object(s)", nullptr, static_cast<int>(saved.size())), &before);
    report(failures);
}

void LibraryActions::saveMaterials(const std::vector<std::uint32_t> &ids, const QString &folder)
{
    if (waits([this, ids, folder] { saveMaterials(ids, folder); }))
        return;
    const auto total = static_cast<int>(ids.size());
    std::vector<std::string> saved;
    QStringList failures;
    const AssetTies before(ids);
    begin(tr("Saving of %n material(s)", nullptr, total), total, _look);
    for (auto id = ids.begin(); id != ids.end() && _progress->goesOn(); ++id) {
        const auto material = osg::MaterialPtr::dcast(osg::FieldContainerFactory::the().getContainer(*id));
        if (!material)
            continue;
        const QString name = QString::fromStdString(osg::getName(material));
        kxMaterialAssetItem item;
        item.initFrom(material, {}, false);
        const std::string uuid = item.uuid();
        const SaveLeftovers leftovers(folder);
        if (item.save(QUrl::fromLocalFile(folder)))
            saved.push_back(uuid);
        else {
            failures.append(
                QString(tr("The material \"%1\" could not be saved.").arg(name) + ' ' + DiskTrouble::advice(folder, {}))
                    .trimmed());
            leftovers.remove();
        }
    }
    end();
    emit foldersChanged({folder});
    remember(saved, tr("Saving of %n material(s)", nullptr, static_cast<int>(saved.size())), &before);
    report(failures);
}

void LibraryActions::overwrite(const std::vector<std::uint32_t> &ids)
{
    if (!waits([this, ids] { overwrite(ids); }))
        report(replace(ids));
}

QStringList LibraryActions::replace(const std::vector<std::uint32_t> &ids)
{
    if (_progress)
        return {tr("Nothing was saved: something else is being done to the libraries.")};
    auto replacing =
        std::make_unique<ReplaceCommand>(*this, tr("Saving over %n asset(s)", nullptr, static_cast<int>(ids.size())));
    QStringList failures;
    std::vector<std::uint32_t> saved;
    for (const std::uint32_t id : ids) {
        const QString reason = replacing->keepAsset(uuidOf(id));
        if (reason.isEmpty())
            saved.push_back(id);
        else
            failures.append(reason);
    }
    const AssetTies before(saved);
    failures += kxAssetManagerModule::saveOver(saved);
    for (const std::uint32_t id : saved)
        if (kxAssetItem *item = kxAssetItemFactory::the().findItem(uuidOf(id)))
            noteReplaced(uuidOf(id), item->directoryUrl().toLocalFile());
    replacing->settle();
    if (!replacing->isEmpty())
        push(std::move(replacing), &before);
    return failures;
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

void LibraryActions::remember(const std::vector<std::string> &uuids, const QString &text)
{
    remember(uuids, text, nullptr);
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
