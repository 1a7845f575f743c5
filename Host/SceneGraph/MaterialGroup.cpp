// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/MaterialGroup.h"

namespace osg {

OSG_CONTAINER_SOURCE(MaterialGroup)

} // namespace osg
