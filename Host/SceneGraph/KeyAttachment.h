// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/AttachmentContainer.h"

#include <string>

namespace osg {

/// Names a node for others that refer to it without holding it: those note the key. Unlike a container's id it survives a
/// file; whoever copies or loads nodes gives the copies keys of their own.
class KX_SCENEGRAPH_EXPORT KeyAttachment final : public Attachment
{
    OSG_CONTAINER(KeyAttachment, Attachment)

    OSG_FIELD(std::string, Key) ///< a UUID
};

using KeyAttachmentPtr = KeyAttachment::Ptr;

} // namespace osg
