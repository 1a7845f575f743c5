// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Switch.h"

namespace osg {

OSG_CONTAINER_SOURCE(Switch)

} // namespace osg
