// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "SceneGraph/Geometry.h"

/// Changes meshes for the renderer's sake. Main thread only.
class KX_KERNEL_EXPORT kxOptimize
{
public:
    kxOptimize() = delete;

    /// Cuts all faces into triangles of the same winding and corners; faces of fewer than three corners go. False, and
    /// nothing changes, for null and for a mesh whose indices do not fit. With \a announce views are told to refresh.
    static bool triangulate(const osg::GeometryPtr &geometry, bool announce);
};
