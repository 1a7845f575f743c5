// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"
#include "Kernel/kxInterfaceObject.h"

#include <vector>

/// Hands out interface objects by interface type. Owns none of them. Main thread only.
class KX_KERNEL_EXPORT kxInterfaceFactory
{
public:
    static kxInterfaceFactory &the();

    kxInterfaceFactory(const kxInterfaceFactory &) = delete;
    kxInterfaceFactory &operator=(const kxInterfaceFactory &) = delete;

    /// False when another object of the same interface type is registered, which stays; the reason is logged.
    /// The last statement of the implementing class's constructor is the place to call it from.
    bool registerObject(kxInterfaceObject *object);

    /// An object leaves by itself when it is destroyed.
    void unregisterObject(const kxInterfaceObject *object);

    /// Null when no object of that type is registered.
    kxInterfaceObject *get(const void *interfaceType) const;

    template <class Interface> Interface *get() const
    {
        return static_cast<Interface *>(get(Interface::staticInterfaceType()));
    }

private:
    kxInterfaceFactory();
    ~kxInterfaceFactory();

    std::vector<kxInterfaceObject *> _objects;
};
