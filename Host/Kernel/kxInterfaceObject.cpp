// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxInterfaceObject.h"

#include "Kernel/kxInterfaceFactory.h"

kxInterfaceObject::~kxInterfaceObject()
{
    kxInterfaceFactory::the().unregisterObject(this);
}
