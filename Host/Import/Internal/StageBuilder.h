// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Node.h"

#include <assimp/camera.h>
#include <assimp/light.h>
#include <assimp/matrix4x4.h>

namespace kximport {

/// The core that places children by \a matrix exactly: none needed is a Group, without turning or shearing a
/// Transform3D, anything else a Transform.
osg::FCRef<osg::NodeCore> buildPlacement(const aiMatrix4x4 &matrix);

/// A node with a camera, to be hung where the file has it.
///
/// \a camera states its field of view as the whole horizontal angle, or, with \a isGltf, as the vertical one times the
/// aspect ratio; without an aspect ratio the picture is a square.
osg::FCRef<osg::Node> buildCamera(const aiCamera &camera, bool isGltf);

/// A node with a light, to be hung where the file has it; null for ambient light, which is not light from somewhere.
///
/// The light of an area comes from its middle. With \a isPhotometric the file counts in candela and lux, and 683 lumens
/// are a watt (the definition of the candela).
osg::FCRef<osg::Node> buildLight(const aiLight &light, bool isPhotometric);

} // namespace kximport
