// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetActions.h"

#include "AssetManager/AssetModel.h"
#include "AssetManager/AssetTies.h"
#include "AssetManager/DiskTrouble.h"
#include "AssetManager/LibraryActions.h"
#include "AssetManager/ReplaceCommand.h"
#include "AssetManager/SaveLeftovers.h"
#include "AssetSession/kxAssetManagerModule.h"
#include "AssetSession/kxAssetOperations.h"
#include "AssetSession/kxNodeSaving.h"
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Kernel/kxNodeUtils.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/NameAttachment.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include <memory>

namespace {

/// Of the asset that an object of the scene came from; "" for none.
std::string uuidOf(std::uint32_t id)
{
    const auto container = osg::AttachmentContainerPtr::dcast(osg::FieldContainerFactory::the().getContainer(id));
    const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::getAssetAttachment(container);
    return attachment ? attachment->getUuid() : std::string();
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
    return reason.isEmpty() ? AssetActions::tr("\"%1\" was not saved: %2").arg(name, causeOf(otherwise))
                            : AssetActions::tr("\"%1\" was not saved.").arg(name) + ' ' + reason;
}

QString notRetagged(const QString &name, const QString &directory)
{
    const QString sentence = AssetActions::tr("The tags of \"%1\" could not be changed.").arg(name);
    return QString(sentence + ' ' + DiskTrouble::advice(directory, {})).trimmed();
}

/// Both name what they saved, which is nothing where the object is gone; the answer is "" or what failed.
QString saveNode(std::uint32_t id, const QString &folder, std::string &uuid)
{
    const osg::NodePtr node = kxNodeUtils::getNodeFromId(id);
    if (!node)
        return {};
    const auto result = kxNodeSaving({}).save(node, {}, QUrl::fromLocalFile(folder));
    if (!result)
        return notSaved(QString::fromStdString(osg::getName(node)), folder, result.reason());
    uuid = result.value().uuid;
    return {};
}

QString saveMaterial(std::uint32_t id, const QString &folder, std::string &uuid)
{
    const auto material = osg::MaterialPtr::dcast(osg::FieldContainerFactory::the().getContainer(id));
    if (!material)
        return {};
    const QString name = QString::fromStdString(osg::getName(material));
    kxMaterialAssetItem item;
    item.initFrom(material, {}, false);
    const std::string known = item.uuid();
    if (!item.save(QUrl::fromLocalFile(folder)))
        return QString(AssetActions::tr("The material \"%1\" could not be saved.").arg(name) + ' ' +
                       DiskTrouble::advice(folder, {}))
            .trimmed();
    uuid = known;
    return {};
}

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

AssetActions::AssetActions(LibraryActions &library, AssetModel &model, QObject *parent)
    : QObject(parent), _library(library), _model(model)
{}

void AssetActions::editTags(const QStringList &uuids, const QStringList &added, const QStringList &removed)
{
    if (_library.batches().waits([this, uuids, added, removed] { editTags(uuids, added, removed); }))
        return;
    auto edit = std::make_unique<ReplaceCommand>(_library, QString());
    int count = 0;
    QStringList failures;
    _library.batches().begin(tr("Tags of %n asset(s)", nullptr, uuids.size()), uuids.size());
    for (auto uuid = uuids.begin(); uuid != uuids.end() && _library.batches().goesOn(); ++uuid) {
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
    _library.batches().end();
    edit->settle();
    edit->setText(tr("Tags of %n asset(s)", nullptr, count));
    if (!edit->isEmpty())
        _library.push(std::move(edit));
    _library.report(failures);
}

/// What is written anew when tags are, which is no texture; "" or why it cannot be kept.
QString AssetActions::keepMetadata(const AssetEntry &entry, ReplaceCommand &edit)
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

QString AssetActions::retag(const QString &uuid, const QStringList &tags)
{
    kxAssetItem *item = kxAssetItemFactory::the().findItem(uuid.toStdString());
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
    emit _library.assetsChanged({uuid.toStdString()});
    if (done)
        return {};
    return notRetagged(name, item->directoryUrl().toLocalFile());
}

void AssetActions::renderPreviews(const QStringList &uuids)
{
    if (_library.batches().waits([this, uuids] { renderPreviews(uuids); }))
        return;
    auto renewal = std::make_unique<ReplaceCommand>(_library, tr("New previews of %n asset(s)", nullptr, uuids.size()));
    QStringList failures;
    _library.batches().begin(tr("Rendering previews"), uuids.size(), {"previewProgress", 0});
    for (auto uuid = uuids.begin(); uuid != uuids.end() && _library.batches().goesOn(); ++uuid)
        if (const QString reason = renderPreview(uuid->toStdString(), *renewal); !reason.isEmpty())
            failures.append(reason);
    _library.batches().end();
    renewal->settle();
    if (!renewal->isEmpty())
        _library.push(std::move(renewal));
    _library.report(failures);
}

/// "" or the reason why not.
QString AssetActions::renderPreview(const std::string &uuid, ReplaceCommand &renewal)
{
    kxAssetItem *item = kxAssetItemFactory::the().findItem(uuid);
    const QString name = QString::fromStdString(item ? item->name() : uuid);
    if (const QString file = kxAssetOperations::previewFile(uuid); !file.isEmpty())
        if (QString reason = renewal.keepFile(uuid, file); !reason.isEmpty())
            return reason;
    const bool isRendered = bool(kxAssetOperations::renderPreview(uuid));
    emit _library.assetsChanged({uuid});
    if (isRendered)
        return {};
    const QString reason = DiskTrouble::advice(item ? item->directoryUrl().toLocalFile() : QString(), {});
    return QString(tr("No new preview could be made of \"%1\".").arg(name) + ' ' + reason).trimmed();
}

void AssetActions::save(const std::vector<std::uint32_t> &ids, const QString &folder,
                        const std::function<QString(int count)> &text, const Saving &saving)
{
    const auto total = static_cast<int>(ids.size());
    std::vector<std::string> saved;
    QStringList failures;
    const AssetTies before(ids);
    _library.batches().begin(text(total), total);
    for (auto id = ids.begin(); id != ids.end() && _library.batches().goesOn(); ++id) {
        std::string uuid;
        const SaveLeftovers leftovers(folder);
        const QString failure = saving(*id, folder, uuid);
        if (!uuid.empty())
            saved.push_back(uuid);
        if (failure.isEmpty())
            continue;
        failures.append(failure);
        leftovers.remove();
    }
    _library.batches().end();
    emit _library.foldersChanged({folder});
    _library.remember(saved, text(static_cast<int>(saved.size())), &before);
    _library.report(failures);
}

void AssetActions::saveNodes(const std::vector<std::uint32_t> &ids, const QString &folder)
{
    if (_library.batches().waits([this, ids, folder] { saveNodes(ids, folder); }))
        return;
    save(
        ids, folder, [](int count) { return tr("Saving of %n object(s)", nullptr, count); }, saveNode);
}

void AssetActions::saveMaterials(const std::vector<std::uint32_t> &ids, const QString &folder)
{
    if (_library.batches().waits([this, ids, folder] { saveMaterials(ids, folder); }))
        return;
    save(
        ids, folder, [](int count) { return tr("Saving of %n material(s)", nullptr, count); }, saveMaterial);
}

void AssetActions::overwrite(const std::vector<std::uint32_t> &ids)
{
    if (!_library.batches().waits([this, ids] { overwrite(ids); }))
        _library.report(replace(ids));
}

QStringList AssetActions::replace(const std::vector<std::uint32_t> &ids)
{
    if (_library.batches().isBusy())
        return {tr("Nothing was saved: something else is being done to the libraries.")};
    auto replacing = std::make_unique<ReplaceCommand>(
        _library, tr("Saving over %n asset(s)", nullptr, static_cast<int>(ids.size())));
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
            _library.noteReplaced(uuidOf(id), item->directoryUrl().toLocalFile());
    replacing->settle();
    if (!replacing->isEmpty())
        _library.push(std::move(replacing), &before);
    return failures;
}
