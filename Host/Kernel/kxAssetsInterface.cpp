// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxAssetsInterface.h"

#include <typeinfo>

kxAssetsInterface::~kxAssetsInterface() = default;

const void *kxAssetsInterface::staticInterfaceType()
{
    static const char type = 0;
    return &type;
}

const void *kxAssetsInterface::interfaceType() const
{
    return staticInterfaceType();
}

const char *kxAssetsInterface::interfaceTypeName() const
{
    return typeid(kxAssetsInterface).name();
}
