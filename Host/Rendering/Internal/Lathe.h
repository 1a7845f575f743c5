// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/Internal/RenderScene.h"

#include <vector>

namespace kxRender {

struct ProfilePoint
{
    float radius;
    float height;
};

/// The body that a profile makes when it is turned about the Y axis; outside lies to the left of the profile's direction.
/// Texture coordinates run \a repeatU times around and \a repeatV times along, evenly by length.
Mesh lathe(const std::vector<ProfilePoint> &profile, int segments, float repeatU, float repeatV);

/// Tilts the mesh about X and then Z (radians), and moves it.
void place(Mesh &mesh, float aboutX, float aboutZ, V3 offset);

} // namespace kxRender
