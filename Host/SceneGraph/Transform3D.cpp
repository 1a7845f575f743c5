// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Transform3D.h"

namespace osg {

OSG_CONTAINER_SOURCE(Transform3D)

Matrix Transform3D::getMatrix() const
{
    return composeMatrix(getTranslation(), getRotationAsQuaternion(), getScale());
}

} // namespace osg
