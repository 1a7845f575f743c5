// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Attachment.h"

namespace osg {

/// A container that carries attachments: at most one of each type.
class KX_SCENEGRAPH_EXPORT AttachmentContainer : public FieldContainer
{
    OSG_ABSTRACT_CONTAINER(AttachmentContainer, FieldContainer)

    OSG_MFIELD(AttachmentPtr, Attachments)

public:
    /// The attachment of exactly this type, or null. Never creates one.
    AttachmentPtr findAttachment(const FieldContainerType &type) const;

    /// Replaces an attachment of the same type. Expects an open edit of AttachmentsFieldMask; null is ignored.
    void addAttachment(const AttachmentPtr &attachment);
    /// Without an attachment of this type nothing changes. Expects an open edit of AttachmentsFieldMask.
    void removeAttachment(const FieldContainerType &type);
};

using AttachmentContainerPtr = AttachmentContainer::Ptr;

/// The attachment of class \a T on \a container; null when there is none, and for a null container.
template <class T> typename T::Ptr findAttachment(const AttachmentContainerPtr &container)
{
    return container ? T::Ptr::dcast(container->findAttachment(T::getClassType())) : typename T::Ptr();
}

} // namespace osg
