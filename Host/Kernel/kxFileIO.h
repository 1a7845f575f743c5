// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "SceneGraph/Material.h"

#include <vector>

/// Materials in scene files. Paths are null-terminated UTF-8. Main thread only.
class KX_KERNEL_EXPORT kxFileIO
{
public:
    kxFileIO() = delete;

    /// The materials that the file holds as its roots, in their order; each entry holds the reference that keeps its
    /// material alive. Empty, with one line in the log that names the file and the reason, when the file cannot be read
    /// or holds none. With \a progress 0 or more, views that show progress are told of the beginning and the end (see
    /// kxControllerNotifier); -1 for silence. With \a intoPool the scene's material pool holds the materials as well.
    static std::vector<osg::FCRef<osg::Material>> loadMaterial(const char *path, int progress, bool intoPool);

    /// Writes the material and all it is made of, whole or not at all. With \a withoutEnvironments the environments that
    /// BRDF materials refer to are left out, because they belong to the scene. The reason of a failure is logged for
    /// debugging only: the caller reports it.
    static bool saveMaterial(const osg::MaterialPtr &material, const char *path, bool withoutEnvironments);
};
