// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxRaytracingManager.h"

#include "Kernel/kxRaytracingUtils.h"

kxRaytracingUtils &kxRaytracingManager::getRaytracingUtils()
{
    static kxRaytracingUtils settings;
    return settings;
}
