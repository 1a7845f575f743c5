// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/JsonAttachment.h"

namespace osg {

OSG_CONTAINER_SOURCE(JsonAttachment)

} // namespace osg
