// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/FieldContainer.h"

namespace osg {

/// Something that is tied to a node, core, material or image without being a field of it.
class KX_SCENEGRAPH_EXPORT Attachment : public FieldContainer
{
    OSG_ABSTRACT_CONTAINER(Attachment, FieldContainer)
};

using AttachmentPtr = Attachment::Ptr;

} // namespace osg
