// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/USkyEnvironmentMaterial.h"

namespace osg {

OSG_CONTAINER_SOURCE(USkyEnvironmentMaterial)

} // namespace osg
