// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/Internal/Vector.h"
#include "SceneGraph/Light.h"
#include "SceneGraph/Matrix.h"

#include <limits>
#include <optional>

namespace kxRender {

/// A light without size: from one point, all around or within a cone, or from one direction. Paths never meet it by chance.
///
/// After Pharr, Jakob and Humphreys, "Physically Based Rendering", 4th edition, 12.1 to 12.2.
class DeltaLight
{
public:
    /// What a light stands for whose node is placed so; scale changes where it stands, and nothing of how it shines.
    /// Nothing for one that is off or black, of no known kind, at no finite place, or aimed nowhere.
    static std::optional<DeltaLight> from(const osg::Light &light, const osg::Matrix &toWorld);

    struct Arrival
    {
        V3 direction;   ///< unit, towards the light
        float distance; ///< infinite for a directional light
        V3 irradiance;  ///< W/m2, of a surface that faces the light
    };
    /// What arrives at a point where nothing is in between.
    Arrival at(V3 position) const;

private:
    /// The share of the intensity in a direction: 1 up to the inner angle, 0 from the outer one. In between it follows
    /// smoothstep of the angle, as in "The OpenGL Shading Language", 4.60, 8.3.
    float spotShare(V3 toPoint) const;

    osg::LightKind _kind = osg::LightKind::Point;
    V3 _position;
    V3 _axis; ///< unit, along which it shines; a point light has none
    V3 _intensity;
    float _innerAngle = 0.0F;
    float _outerAngle = 0.0F;
};

} // namespace kxRender
