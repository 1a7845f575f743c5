// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/AttachmentContainer.h"

namespace osg {

/// How something looks.
class KX_SCENEGRAPH_EXPORT Material : public AttachmentContainer
{
    OSG_ABSTRACT_CONTAINER(Material, AttachmentContainer)

    OSG_FIELD(StringMap, ValuePairs) ///< free text by key, written with the material
};

using MaterialPtr = Material::Ptr;

} // namespace osg
