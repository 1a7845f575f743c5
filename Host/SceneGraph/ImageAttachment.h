// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/AttachmentContainer.h"
#include "SceneGraph/Image.h"

namespace osg {

/// The rendered preview kept on a material.
class KX_SCENEGRAPH_EXPORT ImageAttachment final : public Attachment
{
    OSG_CONTAINER(ImageAttachment, Attachment)

    OSG_FIELD(ImagePtr, Image)
};

using ImageAttachmentPtr = ImageAttachment::Ptr;

} // namespace osg
