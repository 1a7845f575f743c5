// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Material.h"

namespace osg {

OSG_ABSTRACT_CONTAINER_SOURCE(Material)

} // namespace osg
