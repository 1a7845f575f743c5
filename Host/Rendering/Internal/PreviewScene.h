// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/Internal/PathTracer.h"
#include "SceneGraph/Material.h"

namespace kxRender {

/// The stage on which materials are shown: a tilted orb with a dimple and a groove in a round-edged ring, on a ground
/// with fine lines, lit like in a studio. The orb shows curvature and refraction, the ring edges, the lines what is
/// seen through it.
void buildPreviewScene(RenderScene &scene, const osg::MaterialPtr &material);

Camera previewCamera();

/// Soft boxes in a dark room: a warm key light from the left, a cool rim from the right, a wide one above.
EnvironmentLight studioLight();

} // namespace kxRender
