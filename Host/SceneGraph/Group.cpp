// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Group.h"

namespace osg {

OSG_CONTAINER_SOURCE(Group)

} // namespace osg
