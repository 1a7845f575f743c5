// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/NodeCore.h"
#include "SceneGraph/Volume.h"

#include <cstddef>
#include <cstdint>

namespace osg {

/// One place in the tree: a core, children in order, and at most one parent.
///
/// All changing operations expect an open edit of the mask they name on this node; those that take a child from another
/// parent open that parent's edit themselves.
class KX_SCENEGRAPH_EXPORT Node final : public AttachmentContainer
{
    OSG_CONTAINER_WITH_LIFECYCLE(Node, AttachmentContainer)

    OSG_FIELD(NodeCorePtr, Core)
    OSG_MFIELD(Ptr, Children)

public:
    using NodePtr = Ptr;

    /// Null for a root.
    NodePtr getParent() const;
    std::size_t getNChildren() const { return getChildren().size(); }
    /// Null for an index out of range.
    NodePtr getChild(std::size_t index) const;
    /// The child's index; -1 when it is no child of this node.
    std::int32_t findChild(const NodePtr &child) const;

    /// Appends the node, taking it from its old parent. Null, the node itself and its ancestors are refused: nothing
    /// changes. The node keeps its place in memory also where nobody else refers to it. ChildrenFieldMask.
    void addChild(const NodePtr &child);
    /// Like addChild(), at \a index among the children as they are once the node was taken out; clamped to their range.
    void insertChild(std::int32_t index, const NodePtr &child);
    /// \a replacement takes the place of \a old; false, and nothing changes, when \a old is no child of this node.
    bool replaceChildBy(const NodePtr &old, const NodePtr &replacement);
    /// False, and nothing changes, when it is no child. The node dies here when nobody else refers to it.
    bool subChild(const NodePtr &child);

    /// The product of the placements from the root down to and including this node.
    Matrix getToWorld() const;
    /// The box around the geometry of this node and everything below, in world coordinates; of a switch the chosen child.
    Volume getWorldVolume() const;

protected:
    Node() = default;
    ~Node() override;

    void changed(FieldMask fields) override;

private:
    void detach();
    bool mayBecomeChild(const NodePtr &child) const;

    Node *_parent = nullptr;
};

using NodePtr = Node::Ptr;

/// A new node with this core.
KX_SCENEGRAPH_EXPORT NodePtr makeNodeFor(const NodeCorePtr &core);

/// The placement that a core gives to its node's children: identity for cores that do not move anything.
KX_SCENEGRAPH_EXPORT Matrix getCoreMatrix(const NodeCorePtr &core);

} // namespace osg
