// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"

#include <string>

/// Where the running program is installed.
class KX_KERNEL_EXPORT kxPlatform
{
public:
    kxPlatform() = delete;

    /// The absolute path of the folder of the program's executable, without a separator at its end, as UTF-8.
    static std::string getBinDir();
};
