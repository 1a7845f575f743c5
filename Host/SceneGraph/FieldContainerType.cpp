// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/FieldContainerType.h"

#include <algorithm>

namespace osg {

bool TypeBase::isDerivedFrom(const TypeBase &other) const
{
    for (const TypeBase *type = this; type != nullptr; type = type->_parent)
        if (type == &other)
            return true;
    return false;
}

FieldContainerType::FieldContainerType(const char *name, const FieldContainerType *parent, Creator creator,
                                       std::vector<FieldInfo> ownFields)
    : TypeBase(name, parent), _creator(creator)
{
    if (parent != nullptr)
        _fields = parent->_fields;
    _fields.insert(_fields.end(), ownFields.begin(), ownFields.end());
}

FieldContainerPtr FieldContainerType::createContainer() const
{
    return _creator != nullptr ? _creator() : FieldContainerPtr();
}

const FieldInfo *FieldContainerType::findField(const std::string &name) const
{
    const auto found =
        std::find_if(_fields.begin(), _fields.end(), [&name](const FieldInfo &field) { return name == field.name; });
    return found != _fields.end() ? &*found : nullptr;
}

} // namespace osg
