// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"

/// The render settings by which light is measured. Main thread only.
class KX_KERNEL_EXPORT kxRaytracingUtils
{
public:
    /// Whether intensities are photometric (candela per square metre) rather than relative.
    bool isPhotometric() const { return _photometric; }
    void setPhotometric(bool photometric) { _photometric = photometric; }

    /// By how much a relative intensity is multiplied to become a photometric one; 100 at first.
    float getPhotometricConversionFactor() const { return _photometricConversionFactor; }
    void setPhotometricConversionFactor(float factor) { _photometricConversionFactor = factor; }

private:
    bool _photometric = false;
    float _photometricConversionFactor = 100.0F;
};
