// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetTies.h"

#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "Kernel/kxController.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"

#include <QFileInfo>
#include <QUndoCommand>
#include <QUrl>

#include <set>
#include <utility>

namespace {

osg::AttachmentContainerPtr containerOf(std::uint32_t id)
{
    return osg::AttachmentContainerPtr::dcast(osg::FieldContainerFactory::the().getContainer(id));
}

AssetTies::Tie tieOf(const osg::AttachmentContainerPtr &container)
{
    const osg::AssetAttachmentPtr asset = osg::AssetAttachment::getAssetAttachment(container);
    if (!asset)
        return {};
    return {
        true, asset->getUuid(), asset->getCategory(), asset->getUrl(), asset->getChecksum(), asset->getUserEdited()};
}

void setTie(const osg::AttachmentContainerPtr &container, const AssetTies::Tie &tie)
{
    if (!tie.exists) {
        const osg::CPEditor edit(container, osg::AttachmentContainer::AttachmentsFieldMask);
        container->removeAttachment(osg::AssetAttachment::getClassType());
        return;
    }
    const osg::AssetAttachmentPtr asset = osg::AssetAttachment::createAssetAttachment(container);
    const osg::CPEditor edit(asset, osg::AllFieldMask);
    asset->setUuid(tie.uuid);
    asset->setCategory(tie.category);
    asset->setUrl(tie.url);
    asset->setChecksum(tie.checksum);
    asset->setUserEdited(tie.isEdited);
}

struct Change
{
    std::uint32_t containerId = 0;
    AssetTies::Tie before;
    AssetTies::Tie after;
};

/// Whether the asset itself became another one, and not only what an object knows of it.
bool isOfTheAsset(const Change &change)
{
    return change.before.uuid != change.after.uuid || change.before.checksum != change.after.checksum;
}

/// Whether the stored asset is as \a tie says, which is one side of \a change. What could not be taken back stays as it is.
bool isStoredAs(const Change &change, const AssetTies::Tie &tie)
{
    if (change.before.uuid != change.after.uuid) {
        const bool isThere = QFileInfo::exists(QUrl(QString::fromStdString(change.after.url)).toLocalFile());
        return isThere == (tie == change.after);
    }
    const kxAssetItem *item = kxAssetItemFactory::the().findItem(tie.uuid);
    return item && item->checksum() == tie.checksum;
}

/// Objects that were tied otherwise.
class TieCommand final : public QUndoCommand
{
public:
    explicit TieCommand(std::vector<Change> changes) : _changes(std::move(changes)) {}

    void undo() override { tie(&Change::before); }
    void redo() override
    {
        if (!std::exchange(_isDone, false))
            tie(&Change::after);
    }

private:
    void tie(AssetTies::Tie Change::*side) const
    {
        std::set<std::string> left; ///< assets that are not as that side says
        for (const Change &change : _changes)
            if (isOfTheAsset(change) && !isStoredAs(change, change.*side))
                left.insert(change.after.uuid);
        bool isChanged = false;
        for (const Change &change : _changes) {
            const osg::AttachmentContainerPtr container = containerOf(change.containerId);
            if (!container || left.count(change.after.uuid) > 0)
                continue;
            setTie(container, change.*side);
            isChanged = true;
        }
        if (!isChanged)
            return;
        kxController::setModified(true);
        kxScenegraph::update(false);
    }

    std::vector<Change> _changes;
    bool _isDone = true;
};

} // namespace

AssetTies::AssetTies(const std::vector<std::uint32_t> &containerIds)
{
    std::set<std::uint32_t> ids(containerIds.begin(), containerIds.end());
    for (const osg::MaterialPtr &material : kxMaterials::getAllAssetMaterials())
        ids.insert(material.getFieldContainerId());
    for (const std::uint32_t id : ids)
        _tied.push_back({id, tieOf(containerOf(id))});
}

std::unique_ptr<QUndoCommand> AssetTies::changes() const
{
    std::vector<Change> changes;
    for (const Tied &before : _tied) {
        const osg::AttachmentContainerPtr container = containerOf(before.containerId);
        const Tie after = tieOf(container);
        if (container && after != before.tie)
            changes.push_back({before.containerId, before.tie, after});
    }
    return changes.empty() ? nullptr : std::make_unique<TieCommand>(std::move(changes));
}
