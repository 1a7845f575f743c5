// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/KeyAttachment.h"

namespace osg {

OSG_CONTAINER_SOURCE(KeyAttachment)

} // namespace osg
