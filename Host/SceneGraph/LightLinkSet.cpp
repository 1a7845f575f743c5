// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/LightLinkSet.h"

namespace osg {

OSG_CONTAINER_SOURCE(LightLinkSet)

} // namespace osg
