// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/FCPtr.h"
#include "SceneGraph/FieldContainerType.h"
#include "SceneGraph/FieldMacros.h"
#include "SceneGraph/SceneGraphExport.h"

#include <cstdint>

namespace osg {

/// The base of everything in the scene graph: an id, a reference count, a type, and fields declared once.
///
/// Ids are 32 bits, start at 1 and are never reused within a process. A new container has count 0; being a child, core,
/// attachment or field value adds one, and the release that brings the count to 0 destroys it. Main thread only, but
/// for images, which any thread known to the scene graph may create and fill for itself.
class KX_SCENEGRAPH_EXPORT FieldContainer
{
public:
    using Ptr = FieldContainerPtr;

    static FieldContainerType &getClassType();
    static auto fieldCounter(Rank<0>) -> FieldIndex<0>;

    FieldContainer(const FieldContainer &) = delete;
    FieldContainer &operator=(const FieldContainer &) = delete;

    virtual FieldContainerType &getType() const = 0;

    std::uint32_t getFieldContainerId() const { return _id; }
    std::int32_t getRefCount() const { return _refCount; }

    void addRef() { ++_refCount; }
    /// Destroys the container when no reference is left; a chain of any length goes without recursion.
    void subRef();
    /// Gives a reference back without destroying the container: for functions whose result has count 0.
    void subRefWithoutDestroying() { --_refCount; }

    /// Opens a bracket in which the fields of \a mask may change; brackets nest.
    void beginEdit(FieldMask mask);
    /// Closes the newest bracket with this mask. The outermost end tells the container and the listeners what changed.
    void endEdit(FieldMask mask);
    /// Says that \a fields were set through their addresses. Expects an open edit of them, like a setter.
    void markChanged(FieldMask fields) { recordChange(fields); }

    /// Called on a clone whose fields are complete: takes over what the original keeps outside its fields.
    virtual void copyUndeclared(const FieldContainer &original);

protected:
    FieldContainer();
    virtual ~FieldContainer();

    /// Called at the outermost end of an edit with the fields that were set. Derived state is brought up to date here.
    virtual void changed(FieldMask fields);

    /// Every setter passes here first: a change outside its bracket is recorded by the audit.
    void recordChange(FieldMask field)
    {
        _changedFields |= field;
        if ((_openFields & field) != field)
            reportUnbracketedChange(field);
    }

private:
    void reportUnbracketedChange(FieldMask field) const;

    std::uint32_t _id;
    std::int32_t _refCount = 0;
    bool _isDying = false;
    FieldMask _openFields = 0;
    FieldMask _changedFields = 0;
};

/// Hands a complete container to the factory, from where it is found by id.
KX_SCENEGRAPH_EXPORT void publishContainer(FieldContainer &container);

} // namespace osg
