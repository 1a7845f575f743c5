// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/ReferenceAttachment.h"

namespace osg {

OSG_CONTAINER_SOURCE(ReferenceAttachment)

} // namespace osg
