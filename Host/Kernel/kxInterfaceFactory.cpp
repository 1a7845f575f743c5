// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxInterfaceFactory.h"

#include "Kernel/kxLog.h"

#include <algorithm>

kxInterfaceFactory &kxInterfaceFactory::the()
{
    static kxInterfaceFactory instance;
    return instance;
}

kxInterfaceFactory::kxInterfaceFactory() = default;

kxInterfaceFactory::~kxInterfaceFactory() = default;

bool kxInterfaceFactory::registerObject(kxInterfaceObject *object)
{
    kxInterfaceObject *const present = get(object->interfaceType());
    if (present == object)
        return true;
    if (present) {
        kxLog::error("An interface object of the type '%s' is registered already.", object->interfaceTypeName());
        return false;
    }
    _objects.push_back(object);
    return true;
}

void kxInterfaceFactory::unregisterObject(const kxInterfaceObject *object)
{
    _objects.erase(std::remove(_objects.begin(), _objects.end(), object), _objects.end());
}

kxInterfaceObject *kxInterfaceFactory::get(const void *interfaceType) const
{
    const auto found = std::find_if(_objects.begin(), _objects.end(), [interfaceType](const kxInterfaceObject *object) {
        return object->interfaceType() == interfaceType;
    });
    return found == _objects.end() ? nullptr : *found;
}
