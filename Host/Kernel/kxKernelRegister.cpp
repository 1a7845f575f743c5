// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxKernelRegister.h"

#include "Kernel/kxKernelServiceFactory.h"

#include <utility>

kxKernelRegister::kxKernelRegister(std::function<void()> function)
{
    kxKernelServiceFactory::the().addRegistration(this, std::move(function));
}

kxKernelRegister::~kxKernelRegister()
{
    kxKernelServiceFactory::the().removeRegistration(this);
}
