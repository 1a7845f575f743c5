// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/OverrideMaterialAttachment.h"

namespace osg {

OSG_CONTAINER_SOURCE(OverrideMaterialAttachment)

} // namespace osg
