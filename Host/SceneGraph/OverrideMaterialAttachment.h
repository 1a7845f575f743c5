// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/AttachmentContainer.h"
#include "SceneGraph/Material.h"

namespace osg {

/// A material that takes the place of all that are assigned at its node and below.
class KX_SCENEGRAPH_EXPORT OverrideMaterialAttachment final : public Attachment
{
    OSG_CONTAINER(OverrideMaterialAttachment, Attachment)

    OSG_FIELD(MaterialPtr, Material)
};

using OverrideMaterialAttachmentPtr = OverrideMaterialAttachment::Ptr;

} // namespace osg
