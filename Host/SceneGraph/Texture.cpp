// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Texture.h"

namespace osg {

OSG_CONTAINER_SOURCE(Texture)

} // namespace osg
