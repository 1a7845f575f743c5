// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/UberCamera.h"

namespace osg {

OSG_CONTAINER_SOURCE(UberCamera)

} // namespace osg
