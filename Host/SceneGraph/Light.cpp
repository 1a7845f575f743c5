// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Light.h"

namespace osg {

OSG_CONTAINER_SOURCE(Light)

} // namespace osg
