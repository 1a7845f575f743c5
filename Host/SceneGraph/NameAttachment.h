// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/AttachmentContainer.h"

#include <string>

namespace osg {

/// The name of a node, material or image.
class KX_SCENEGRAPH_EXPORT NameAttachment final : public Attachment
{
    OSG_CONTAINER(NameAttachment, Attachment)

    OSG_FIELD(std::string, Name) ///< UTF-8
};

using NameAttachmentPtr = NameAttachment::Ptr;

/// The exact name; "" for null and for a container without a name.
KX_SCENEGRAPH_EXPORT std::string getName(const AttachmentContainerPtr &container);
/// Creates the attachment where it is missing; null is ignored.
KX_SCENEGRAPH_EXPORT void setName(const AttachmentContainerPtr &container, const std::string &name);

} // namespace osg
