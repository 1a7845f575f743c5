// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/SynchronizationAttachment.h"

namespace osg {

OSG_CONTAINER_SOURCE(SynchronizationAttachment)

} // namespace osg
