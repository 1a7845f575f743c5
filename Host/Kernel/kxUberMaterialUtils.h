// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <vector>

/// Questions about the host's own materials. Null-safe. Main thread only.
class KX_KERNEL_EXPORT kxUberMaterialUtils
{
public:
    kxUberMaterialUtils() = delete;

    /// The layers of an uber material from the bottom up, nulls included; empty for every other material.
    static std::vector<osg::UBRDFMaterialPtr> getBRDFMaterials(const osg::MaterialPtr &material);

    /// True for environment materials and for switches of them.
    static bool isEnvironmentMaterial(const osg::MaterialPtr &material);
};
