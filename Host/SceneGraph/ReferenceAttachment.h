// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/AttachmentContainer.h"

#include <string>

namespace osg {

/// Marks a node whose content comes from another file and is loaded from there.
class KX_SCENEGRAPH_EXPORT ReferenceAttachment final : public Attachment
{
    OSG_CONTAINER(ReferenceAttachment, Attachment)

    OSG_FIELD(std::string, Source) ///< path of the file, UTF-8
};

using ReferenceAttachmentPtr = ReferenceAttachment::Ptr;

} // namespace osg
