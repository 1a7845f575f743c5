// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/ImageAttachment.h"

namespace osg {

OSG_CONTAINER_SOURCE(ImageAttachment)

} // namespace osg
