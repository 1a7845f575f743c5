// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/Internal/Film.h"
#include "Rendering/Internal/RenderScene.h"

#include <functional>

namespace kxRender {

/// A pinhole camera; the vertical angle of view is in radians.
struct Camera
{
    V3 from;
    V3 at;
    V3 up{0.0F, 1.0F, 0.0F};
    float fieldOfView = 0.5F;
};

/// The rays from a camera through the pixels of a picture.
class CameraRays
{
public:
    CameraRays(const Camera &camera, float width, float height);

    V3 origin() const { return _origin; }
    /// Unit; \a x and \a y in pixels, from the lower left corner.
    V3 direction(float x, float y) const;

private:
    V3 _origin;
    V3 _forward;
    V3 _right;
    V3 _up;
    float _scale;
    float _width;
    float _height;
};

/// Takes a picture of a scene.
///
/// Pixels do not depend on each other, and each is the sum of its samples in their order: the picture is the same for any
/// number of threads.
class PathTracer
{
public:
    explicit PathTracer(const RenderScene &scene) : _scene(scene) {}

    /// What surrounds the scene is seen where nothing else is; otherwise the background is empty.
    void setBackgroundVisible(bool visible) { _isBackgroundVisible = visible; }

    /// Adds samples to each pixel of the film, until all are there or \a isCancelled says so. False when cancelled.
    bool render(const Camera &camera, Film &film, int samples, const std::function<bool()> &isCancelled) const;

private:
    const RenderScene &_scene;
    bool _isBackgroundVisible = false;
};

} // namespace kxRender
