// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Transform.h"

namespace osg {

OSG_CONTAINER_SOURCE(Transform)

} // namespace osg
