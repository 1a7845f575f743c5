// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/AttachmentContainer.h"

namespace osg {

OSG_ABSTRACT_CONTAINER_SOURCE(AttachmentContainer)

AttachmentPtr AttachmentContainer::findAttachment(const FieldContainerType &type) const
{
    for (const AttachmentPtr &attachment : getAttachments())
        if (attachment && &attachment->getType() == &type)
            return attachment;
    return nullptr;
}

void AttachmentContainer::addAttachment(const AttachmentPtr &attachment)
{
    if (!attachment)
        return;
    MField<AttachmentPtr> &attachments = editAttachments();
    for (std::size_t i = 0; i < attachments.size(); ++i)
        if (attachments[i] && &attachments[i]->getType() == &attachment->getType()) {
            attachments.replace(i, attachment);
            return;
        }
    attachments.push_back(attachment);
}

void AttachmentContainer::removeAttachment(const FieldContainerType &type)
{
    for (std::size_t i = 0; i < getAttachments().size(); ++i)
        if (getAttachments()[i] && &getAttachments()[i]->getType() == &type) {
            editAttachments().erase(i);
            return;
        }
}

} // namespace osg
