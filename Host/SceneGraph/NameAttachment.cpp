// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/NameAttachment.h"

#include "SceneGraph/EditCP.h"

namespace osg {

OSG_CONTAINER_SOURCE(NameAttachment)

std::string getName(const AttachmentContainerPtr &container)
{
    const NameAttachmentPtr attachment = findAttachment<NameAttachment>(container);
    return attachment ? attachment->getName() : std::string();
}

void setName(const AttachmentContainerPtr &container, const std::string &name)
{
    if (!container)
        return;
    NameAttachmentPtr attachment = findAttachment<NameAttachment>(container);
    const bool isNew = !attachment;
    if (isNew)
        attachment = NameAttachment::create();
    {
        const CPEditor edit(attachment, NameAttachment::NameFieldMask);
        attachment->setName(name);
    }
    if (isNew) {
        const CPEditor edit(container, AttachmentContainer::AttachmentsFieldMask);
        container->addAttachment(attachment);
    }
}

} // namespace osg
