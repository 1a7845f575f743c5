// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Group.h"
#include "SceneGraph/Image.h"

namespace osg {

/// A picture over or under the rendered image. Places and sizes are shares of the image, from its lower left corner.
class KX_SCENEGRAPH_EXPORT Sceneplate final : public Group
{
    OSG_CONTAINER(Sceneplate, Group)

    OSG_FIELD(bool, IsFront, true) ///< over the image
    OSG_FIELD(ImagePtr, Image)
    OSG_FIELD(Vec2f, Position, {0.0F, 0.0F})
    OSG_FIELD(Vec2f, Size, {1.0F, 1.0F})
    OSG_FIELD(float, Opacity, 1.0F)
    OSG_FIELD(bool, IsVisible, true)
};

using SceneplatePtr = Sceneplate::Ptr;

} // namespace osg
