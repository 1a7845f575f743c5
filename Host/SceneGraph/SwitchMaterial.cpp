// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/SwitchMaterial.h"

namespace osg {

OSG_CONTAINER_SOURCE(SwitchMaterial)

} // namespace osg
