// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/CameraCore.h"

namespace osg {

OSG_CONTAINER_SOURCE(CameraCore)

} // namespace osg
