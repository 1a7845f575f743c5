// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Material.h"
#include "SceneGraph/NodeCore.h"
#include "SceneGraph/Volume.h"

#include <cstddef>
#include <cstdint>

namespace osg {

/// A polygon mesh.
class KX_SCENEGRAPH_EXPORT Geometry final : public NodeCore
{
    OSG_CONTAINER(Geometry, NodeCore)

    OSG_MFIELD(Vec3f, Positions)
    OSG_MFIELD(Vec3f, Normals)           ///< one for each position, or none: then faces are flat
    OSG_MFIELD(Vec2f, TexCoords)         ///< one for each position, or none
    OSG_MFIELD(Vec4f, Colors)            ///< one for each position, or none; linear
    OSG_MFIELD(std::uint32_t, Indices)   ///< the faces' corners, one face after the other
    OSG_MFIELD(std::uint32_t, FaceSizes) ///< corners of each face; empty: all are triangles
    OSG_FIELD(MaterialPtr, Material)

public:
    Volume getVolume() const;
    std::size_t getFaceCount() const;
    /// True where all indices and lengths fit together.
    bool isValid() const;
};

using GeometryPtr = Geometry::Ptr;

} // namespace osg
