// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/UEnvironmentMaterial.h"

namespace osg {

OSG_ABSTRACT_CONTAINER_SOURCE(UEnvironmentMaterial)

} // namespace osg
