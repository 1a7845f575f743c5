// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Group.h"

#include <cstdint>

namespace osg {

enum class LightKind : std::uint32_t { Point = 0, Directional = 1, Spot = 2 };

/// A light; it stands at its node's origin and shines along -Z.
class KX_SCENEGRAPH_EXPORT Light final : public Group
{
    OSG_CONTAINER(Light, Group)

    OSG_FIELD(std::uint32_t, Kind, 0)                   ///< a LightKind
    OSG_FIELD(Color4f, Color, {1.0F, 1.0F, 1.0F, 1.0F}) ///< linear
    OSG_FIELD(float, Intensity, 1.0F)                   ///< W/sr; for a directional light W/m2
    OSG_FIELD(float, InnerConeAngle, 0.0F)              ///< half angle, radians; spot only
    OSG_FIELD(float, OuterConeAngle, 0.785398163F)      ///< half angle, radians; spot only
    OSG_FIELD(bool, IsOn, true)
};

using LightPtr = Light::Ptr;

} // namespace osg
