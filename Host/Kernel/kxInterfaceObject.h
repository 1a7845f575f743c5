// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"

/// Base of the objects that libraries offer to one another through kxInterfaceFactory, one per interface type.
///
/// An interface derives from it and has a static `staticInterfaceType()` that returns the address of a static object of its
/// own: interface types are compared by identity. Main thread only.
class KX_KERNEL_EXPORT kxInterfaceObject
{
public:
    kxInterfaceObject(const kxInterfaceObject &) = delete;
    kxInterfaceObject &operator=(const kxInterfaceObject &) = delete;

    virtual const void *interfaceType() const = 0;
    virtual const char *interfaceTypeName() const = 0;

    /// Takes the object out of the factory.
    virtual ~kxInterfaceObject();

protected:
    kxInterfaceObject() = default;
};
