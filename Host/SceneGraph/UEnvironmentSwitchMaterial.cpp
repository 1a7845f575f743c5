// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/UEnvironmentSwitchMaterial.h"

namespace osg {

OSG_CONTAINER_SOURCE(UEnvironmentSwitchMaterial)

} // namespace osg
