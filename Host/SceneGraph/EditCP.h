// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/FieldContainer.h"

#include <cstdint>

namespace osg {

/// Opens an edit of the fields in \a mask; every one is closed by endEditCP() with the same mask. Null: nothing.
KX_SCENEGRAPH_EXPORT void beginEditCP(const FieldContainerPtr &container, FieldMask mask = AllFieldMask);
KX_SCENEGRAPH_EXPORT void endEditCP(const FieldContainerPtr &container, FieldMask mask = AllFieldMask);

/// An edit for the length of a block. The block holds the setters and nothing else.
///
/// May nest; the outermost end tells the listeners. A container that is destroyed within the block ends silently.
class [[nodiscard]] KX_SCENEGRAPH_EXPORT CPEditor
{
public:
    explicit CPEditor(const FieldContainerPtr &container, FieldMask mask = AllFieldMask);
    ~CPEditor();
    CPEditor(const CPEditor &) = delete;
    CPEditor &operator=(const CPEditor &) = delete;

private:
    std::uint32_t _id;
    FieldMask _mask;
};

} // namespace osg
