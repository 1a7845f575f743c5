// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Geometry.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/UBRDFMaterial.h"

#include "Support/TemporaryFolder.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kxtest {

std::string base64(std::string_view bytes);

/// One triangle with texture coordinates in a glTF 2 file that needs no other; \a materials is the content of the array
/// "materials", of which the triangle uses the first, and \a more further members of the whole, with a comma in front.
///
/// The corners are (0,0,0), (1,0,0) and (0,1,0); their texture coordinates, from the upper left, (0,0), (1,0), (0,1).
std::string gltfTriangle(std::string_view materials, std::string_view more = "");

/// The members "images", "samplers" and "textures" for gltfTriangle(): texture i shows \a uris[i].
std::string gltfTextures(const std::vector<std::string> &uris);

/// A square of one face in an OBJ file; \a head stands before it ("mtllib a.mtl\nusemtl A\n").
std::string objSquare(std::string_view head);

/// Writes a PNG with one column of pixels, from the top row to the bottom row, \a channels values each.
std::string writeColumn(const TemporaryFolder &folder, std::string_view name, std::size_t channels,
                        const std::vector<unsigned char> &pixels);

/// The geometries below a node, in the order of a walk that visits parents first.
std::vector<osg::NodePtr> geometryNodes(const osg::NodePtr &root);
osg::GeometryPtr geometryOf(const osg::NodePtr &node);

/// The first node with this name below \a root, itself included; null where there is none.
osg::NodePtr findNode(const osg::NodePtr &root, std::string_view name);

/// How many containers there are.
std::size_t livingContainers();

} // namespace kxtest
