// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/USphereEnvironmentMaterial.h"

namespace osg {

OSG_CONTAINER_SOURCE(USphereEnvironmentMaterial)

} // namespace osg
