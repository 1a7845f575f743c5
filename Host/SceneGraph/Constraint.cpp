// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Constraint.h"

namespace osg {

OSG_CONTAINER_SOURCE(Constraint)

} // namespace osg
