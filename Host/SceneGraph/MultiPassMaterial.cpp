// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/MultiPassMaterial.h"

namespace osg {

OSG_CONTAINER_SOURCE(MultiPassMaterial)

} // namespace osg
