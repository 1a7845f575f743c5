// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"

/// The environment that lights what has none of its own. Main thread only.
class KX_KERNEL_EXPORT kxDefaultEnvironment
{
public:
    kxDefaultEnvironment() = delete;

    /// The scene's default switch material, else its single default environment, else null.
    static osg::MaterialPtr getDefault();
    /// The default switch material; null where the scene has a single environment, or none.
    static osg::UEnvironmentSwitchMaterialPtr getSwitch();
};
