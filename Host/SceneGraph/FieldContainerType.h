// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Fields.h"
#include "SceneGraph/SceneGraphExport.h"

#include <string>
#include <vector>

namespace osg {

/// A type's name and place in the hierarchy.
class KX_SCENEGRAPH_EXPORT TypeBase
{
public:
    TypeBase(const char *name, const TypeBase *parent) : _name(name), _parent(parent) {}
    TypeBase(const TypeBase &) = delete;
    TypeBase &operator=(const TypeBase &) = delete;

    /// As written in the class declaration and in files.
    const char *getCName() const { return _name; }
    const TypeBase *getParent() const { return _parent; }

    /// True for the type itself and for everything below it.
    bool isDerivedFrom(const TypeBase &other) const;

private:
    const char *_name;
    const TypeBase *_parent;
};

/// Describes one class of field containers: how to make one, and its fields, the parents' first.
///
/// One object for each class; lives until the process ends.
class KX_SCENEGRAPH_EXPORT FieldContainerType final : public TypeBase
{
public:
    using Creator = FieldContainerPtr (*)();

    FieldContainerType(const char *name, const FieldContainerType *parent, Creator creator,
                       std::vector<FieldInfo> ownFields);

    bool isAbstract() const { return _creator == nullptr; }

    /// A new container with reference count 0; null for an abstract type.
    FieldContainerPtr createContainer() const;

    const std::vector<FieldInfo> &fields() const { return _fields; }
    /// Null for an unknown name.
    const FieldInfo *findField(const std::string &name) const;

private:
    Creator _creator;
    std::vector<FieldInfo> _fields;
};

} // namespace osg
