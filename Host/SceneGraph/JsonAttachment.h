// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/AttachmentContainer.h"

#include <string>

namespace osg {

/// Free text kept on a node.
class KX_SCENEGRAPH_EXPORT JsonAttachment final : public Attachment
{
    OSG_CONTAINER(JsonAttachment, Attachment)

    OSG_FIELD(std::string, Text) ///< UTF-8
};

using JsonAttachmentPtr = JsonAttachment::Ptr;

} // namespace osg
