// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxModuleBase.h"

#include "Kernel/Internal/ModuleRegistry.h"

#include <utility>

using kxKernelInternal::ModuleRegistry;

kxModuleBase::kxModuleBase()
{
    ModuleRegistry::the().add(this);
}

kxModuleBase::~kxModuleBase()
{
    ModuleRegistry::the().remove(this);
}

void kxModuleBase::sendMessage(const kxMessage &message, bool deferred)
{
    if (deferred)
        ModuleRegistry::the().sendLater(message);
    else
        ModuleRegistry::the().send(message);
}

void kxModuleBase::registerHandler(const std::string &name, Handler handler)
{
    ModuleRegistry::the().addHandler(this, name, std::move(handler));
}

void kxModuleBase::doReceive(const kxMessage &) {}
