// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "SceneGraph/Material.h"

/// Keeps pictures from being in memory several times. Main thread only.
class KX_KERNEL_EXPORT kxTextureManager
{
public:
    kxTextureManager() = delete;

    /// Replaces each image in the textures of the material and of all it is made of by one that another living material
    /// shows already and that has the same source, or the same size, format and content. Images that differ within the
    /// material stay apart. Returns how many images were replaced.
    static int shareImagesRecursive(const osg::MaterialPtr &material);
};
