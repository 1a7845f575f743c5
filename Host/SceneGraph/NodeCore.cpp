// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/NodeCore.h"

namespace osg {

OSG_ABSTRACT_CONTAINER_SOURCE(NodeCore)

} // namespace osg
