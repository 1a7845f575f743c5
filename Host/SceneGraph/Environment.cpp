// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Environment.h"

namespace osg {

OSG_CONTAINER_SOURCE(Environment)

} // namespace osg
