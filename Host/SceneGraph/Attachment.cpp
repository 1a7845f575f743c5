// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Attachment.h"

namespace osg {

OSG_ABSTRACT_CONTAINER_SOURCE(Attachment)

} // namespace osg
