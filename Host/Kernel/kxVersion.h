// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"

/// The host's version as it is written into files, for example "0.1.0". Lives as long as the program.
KX_KERNEL_EXPORT const char *kxGetVersionString();
