// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/MaterialPool.h"

namespace osg {

OSG_CONTAINER_SOURCE(MaterialPool)

} // namespace osg
