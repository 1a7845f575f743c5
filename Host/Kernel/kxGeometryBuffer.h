// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/Node.h"

/// What the renderer needs to know of meshes. Main thread only.
class KX_KERNEL_EXPORT kxGeometryBuffer
{
public:
    kxGeometryBuffer() = delete;

    /// Whether the mesh has a face of more, or fewer, than three corners. False for null. The node does not matter here.
    static bool needsTriangulation(const osg::NodePtr &node, const osg::GeometryPtr &geometry);
};
