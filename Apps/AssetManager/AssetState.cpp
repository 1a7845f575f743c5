// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetState.h"

#include "AssetManager/StateMark.h"
#include "AssetManager/StoredChecksums.h"
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "SceneGraph/AssetAttachment.h"

namespace {

bool isStoredAs(kxAssetItem &item, std::uint32_t checksum)
{
    return StoredChecksums::the().of(item, checksum) == checksum;
}

} // namespace

AssetState::AssetState(const osg::AttachmentContainerPtr &container)
{
    const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::getAssetAttachment(container);
    if (!attachment || attachment->getUuid().empty())
        return;
    _uuid = attachment->getUuid();
    _isEdited = attachment->getUserEdited();
    _loadedChecksum = attachment->getChecksum();
    kxAssetItem *item = kxAssetItemFactory::the().findItem(_uuid);
    if (!item) {
        _kind = Kind::NotFound;
        return;
    }
    _assetName = QString::fromStdString(item->name());
    if (_isEdited)
        _kind = Kind::EditedHere;
    else
        _kind = isStoredAs(*item, _loadedChecksum) ? Kind::AsStored : Kind::Outdated;
}

bool AssetState::isStoredNewer() const
{
    if (_kind != Kind::EditedHere)
        return _kind == Kind::Outdated;
    kxAssetItem *item = kxAssetItemFactory::the().findItem(_uuid);
    return item && !isStoredAs(*item, _loadedChecksum);
}

QString AssetState::text() const
{
    switch (_kind) {
    case Kind::NoAsset:
        break;
    case Kind::AsStored:
        return tr("Same as the asset \"%1\" in the library").arg(_assetName);
    case Kind::EditedHere:
        return tr("Changed here; the asset \"%1\" in the library is different").arg(_assetName);
    case Kind::Outdated:
        return tr("The asset \"%1\" in the library was changed since it was loaded").arg(_assetName);
    case Kind::NotFound:
        return tr("The asset is not in an open library");
    }
    return {};
}

QIcon AssetState::icon() const
{
    switch (_kind) {
    case Kind::NoAsset:
        break;
    case Kind::AsStored:
        return StateMark::icon(StateMark::Kind::InScene);
    case Kind::EditedHere:
        return StateMark::icon(StateMark::Kind::Edited);
    case Kind::Outdated:
        return StateMark::icon(StateMark::Kind::Newer);
    case Kind::NotFound:
        return StateMark::icon(StateMark::Kind::NotFound);
    }
    return {};
}
