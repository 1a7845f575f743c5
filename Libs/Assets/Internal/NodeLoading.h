// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Node.h"

#include <optional>

class QUrl;
class kxUrlManager;

namespace kxAssetsInternal {

/// Keeps a node that nobody owns yet alive for a while, and lets it go without destroying it.
class NodeHold
{
public:
    explicit NodeHold(const osg::NodePtr &node) : _node(node) {}
    ~NodeHold();
    NodeHold(const NodeHold &) = delete;
    NodeHold &operator=(const NodeHold &) = delete;

private:
    osg::FCRef<osg::Node> _node;
};

/// Keeps a node alive while it is worked with. One that nobody owns yet is still there afterwards.
class NodeInUse
{
public:
    explicit NodeInUse(const osg::NodePtr &node);

    osg::NodePtr get() const { return _node.get(); }

private:
    std::optional<NodeHold> _unowned; // goes last, and destroys nothing
    osg::FCRef<osg::Node> _node;
};

enum class NodeKind { Node, Sceneplate };

/// Loads the payload of a directory while the host renders nothing and refines nothing. Nobody owns the node yet.
bool loadWithoutRendering(const kxUrlManager &manager, const QUrl &directory, NodeKind kind, osg::NodePtr &node);

} // namespace kxAssetsInternal
