// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "SceneGraph/Material.h"

#include <string>

/// The tags of materials. Main thread only.
class KX_KERNEL_EXPORT kxMaterialTags
{
public:
    kxMaterialTags() = delete;

    /// Adds the tag (UTF-8), making the attachment when it is missing. Nothing happens when it is there already, and for
    /// a null material.
    static void addTag(const osg::MaterialPtr &material, const std::string &tag);
};
