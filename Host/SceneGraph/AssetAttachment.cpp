// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/AssetAttachment.h"

#include "SceneGraph/EditCP.h"

namespace osg {

OSG_CONTAINER_SOURCE(AssetAttachment)

AssetAttachment::Ptr AssetAttachment::getAssetAttachment(const AttachmentContainerPtr &container)
{
    return findAttachment<AssetAttachment>(container);
}

AssetAttachment::Ptr AssetAttachment::createAssetAttachment(const AttachmentContainerPtr &container)
{
    if (!container)
        return nullptr;
    if (const Ptr existing = getAssetAttachment(container))
        return existing;
    const Ptr attachment = create();
    const CPEditor edit(container, AttachmentContainer::AttachmentsFieldMask);
    container->addAttachment(attachment);
    return attachment;
}

} // namespace osg
