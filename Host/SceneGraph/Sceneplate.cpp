// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Sceneplate.h"

namespace osg {

OSG_CONTAINER_SOURCE(Sceneplate)

} // namespace osg
