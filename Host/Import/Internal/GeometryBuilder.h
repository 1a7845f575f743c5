// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Geometry.h"

#include <assimp/mesh.h>

namespace kximport {

/// How the numbers of a parsed mesh are to be taken.
struct MeshReading
{
    unsigned uvSet = 0;         ///< the set of texture coordinates to keep; the first where the mesh lacks it
    bool hasSrgbColors = false; ///< vertex colours are encoded, as most formats have them
};

/// A mesh as a new geometry without material; null where it has no face.
///
/// Points and lines are left out, and so are faces whose corners do not exist or have no finite place; the parser counts
/// texture coordinates from the lower left, as textures do.
osg::FCRef<osg::Geometry> buildGeometry(const aiMesh &mesh, const MeshReading &reading);

} // namespace kximport
