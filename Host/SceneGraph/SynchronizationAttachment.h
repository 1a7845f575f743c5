// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/AttachmentContainer.h"

#include <string>

namespace osg {

/// The nodes whose structure follows that of the attachment's node, and which it follows.
class KX_SCENEGRAPH_EXPORT SynchronizationAttachment final : public Attachment
{
    OSG_CONTAINER(SynchronizationAttachment, Attachment)

    OSG_MFIELD(std::string, Partners) ///< their keys
};

using SynchronizationAttachmentPtr = SynchronizationAttachment::Ptr;

} // namespace osg
