// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/FieldContainer.h"

#include "SceneGraph/EditAudit.h"
#include "SceneGraph/FieldContainerFactory.h"

#include <algorithm>
#include <cassert>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace osg {

namespace {

struct OpenEdit
{
    FieldContainer *container;
    FieldMask mask;
};

thread_local std::vector<OpenEdit> openEdits;

/// Destroying a container releases what it refers to, which may be a chain of any length: those wait here for their
/// turn instead of being destroyed from within. Null while none is being destroyed.
///
/// A pointer, since containers may still be released by static objects, after what a thread owns by itself is gone.
thread_local std::vector<FieldContainer *> *waitingForDestruction = nullptr;

} // namespace

FieldContainerType &FieldContainer::getClassType()
{
    static FieldContainerType type("FieldContainer", nullptr, nullptr, {});
    return type;
}

FieldContainer::FieldContainer() : _id(FieldContainerFactory::the().takeId()) {}

FieldContainer::~FieldContainer()
{
    FieldContainerFactory::the().forget(*this);
    if (_openFields != 0)
        std::erase_if(openEdits, [this](const OpenEdit &edit) { return edit.container == this; });
}

void FieldContainer::changed(FieldMask) {}

void FieldContainer::copyUndeclared(const FieldContainer &) {}

void FieldContainer::subRef()
{
    // Whoever is told of the destruction may take a reference for the moment; it decides nothing any more.
    if (--_refCount > 0 || _isDying)
        return;
    _isDying = true;
    if (waitingForDestruction) {
        waitingForDestruction->push_back(this);
        return;
    }

    std::vector<FieldContainer *> waiting;
    waitingForDestruction = &waiting;
    for (FieldContainer *next = this; next;) {
        FieldContainerFactory::the().announceDestruction(*next);
        delete next;
        next = waiting.empty() ? nullptr : waiting.back();
        if (next)
            waiting.pop_back();
    }
    waitingForDestruction = nullptr;
}

void FieldContainer::beginEdit(FieldMask mask)
{
    EditAudit::noteBegin(*this, mask);
    openEdits.push_back({this, mask});
    _openFields |= mask;
}

void FieldContainer::endEdit(FieldMask mask)
{
    const auto found = std::find_if(openEdits.rbegin(), openEdits.rend(), [this, mask](const OpenEdit &edit) {
        return edit.container == this && edit.mask == mask;
    });
    if (found == openEdits.rend()) {
        EditAudit::record(*this, mask, "an edit is ended that was not begun with this mask");
        return;
    }
    openEdits.erase(std::next(found).base());

    bool isOutermost = true;
    _openFields = 0;
    for (const OpenEdit &edit : openEdits)
        if (edit.container == this) {
            _openFields |= edit.mask;
            isOutermost = false;
        }
    if (!isOutermost || _changedFields == 0)
        return;

    const FieldMask fields = std::exchange(_changedFields, 0);
    changed(fields);
    FieldContainerFactory::the().announceChange(*this, fields);
}

void FieldContainer::reportUnbracketedChange(FieldMask field) const
{
    EditAudit::record(*this, field, "a field changes outside an edit that names it");
}

void publishContainer(FieldContainer &container)
{
    FieldContainerFactory::the().publish(container);
}

FieldContainerPtr::FieldContainerPtr(FieldContainer *object)
    : _object(object), _id(object != nullptr ? object->getFieldContainerId() : 0)
{}

#ifndef NDEBUG
FieldContainer *FieldContainerPtr::checked() const
{
    if (_id == 0 || !FieldContainerFactory::the().isAlive(_id)) {
        std::fprintf(stderr, "access through a handle to %s (container id %u)\n",
                     _id == 0 ? "nothing" : "a destroyed container", _id);
        std::abort();
    }
    return _object;
}
#endif

void addRef(const FieldContainerPtr &handle)
{
    if (handle)
        handle->addRef();
}

void subRef(const FieldContainerPtr &handle)
{
    if (handle)
        handle->subRef();
}

bool isOfType(const FieldContainerPtr &handle, const FieldContainerType &type)
{
    return handle && handle->getType().isDerivedFrom(type);
}

} // namespace osg
