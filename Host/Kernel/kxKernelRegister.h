// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"

#include <functional>

/// Has a function run once the kernel is up; made as a static object of the library that registers something.
///
/// In a library that is loaded later the function runs on the next pass of the event loop, or with the next look-up of a
/// service. The destructor, at the latest when the library is unloaded, deletes the services that the function registered;
/// a function that has not run by then never runs.
class KX_KERNEL_EXPORT kxKernelRegister
{
public:
    explicit kxKernelRegister(std::function<void()> function);
    ~kxKernelRegister();
    kxKernelRegister(const kxKernelRegister &) = delete;
    kxKernelRegister &operator=(const kxKernelRegister &) = delete;
};
