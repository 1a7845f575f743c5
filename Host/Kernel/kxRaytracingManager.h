// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"

class kxRaytracingUtils;

/// Hands out the render settings in force. Main thread only.
class KX_KERNEL_EXPORT kxRaytracingManager
{
public:
    kxRaytracingManager() = delete;

    static kxRaytracingUtils &getRaytracingUtils();
};
