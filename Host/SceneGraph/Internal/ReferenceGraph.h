// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/FieldContainerType.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace osg {

/// Who refers to whom among the containers of one file, by number, and whether that makes sense.
///
/// The same rules hold for writing and reading, so that no file is written that could not be read.
class ReferenceGraph
{
public:
    void addReference(std::uint32_t from, std::uint32_t to) { _references.emplace_back(from, to); }
    void addChild(std::uint32_t parent, std::uint32_t child);
    /// \a type is that of the attachment.
    void addAttachment(std::uint32_t owner, std::uint32_t attachment, const FieldContainerType &type);

    /// Why the graph is refused: a container that contains itself, a node with several parents, an attachment type
    /// that occurs twice on one container. \a count is the number of containers.
    std::optional<std::string> findFault(std::size_t count) const;

private:
    bool isAcyclic(std::size_t count) const;

    std::vector<std::pair<std::uint32_t, std::uint32_t>> _references;
    std::vector<std::uint32_t> _children;
    std::vector<std::pair<std::uint32_t, const FieldContainerType *>> _attachments;
};

/// True for the field that holds a node's children, and for the one that holds attachments.
bool holdsChildren(const FieldContainerType &owner, const FieldInfo &field);
bool holdsAttachments(const FieldContainerType &owner, const FieldInfo &field);

/// Why this container's own values are refused: an image without all its pixels, a mesh whose indices lead nowhere.
std::optional<std::string> findValueFault(const FieldContainerPtr &container);

} // namespace osg
