// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/UberCamera.h"

namespace kxRender {

/// Where a camera stands and looks, moved as somebody does who looks through it.
class CameraView
{
public:
    /// Expects a camera.
    explicit CameraView(const osg::UberCameraPtr &camera);
    /// Edits the camera; nothing happens where it is so already.
    void applyTo(const osg::UberCameraPtr &camera) const;

    /// Around the target: what is looked at follows to the right and downwards. In radians; ends short of the poles.
    void orbit(double right, double down);
    /// What is looked at follows by shares of the picture's height.
    void pan(double right, double down);
    /// Multiplies the distance from the target, which never gets zero or endless.
    void zoom(double factor);

private:
    osg::Vec3d right() const;
    osg::Vec3d forward() const;

    osg::Vec3d _from;
    osg::Vec3d _at;
    osg::Vec3d _up;
    double _fieldOfView;
};

} // namespace kxRender
