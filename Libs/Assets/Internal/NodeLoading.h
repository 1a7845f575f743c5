// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Node.h"

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

enum class NodeKind { Node, Sceneplate };

/// Loads the payload of a directory while the host renders nothing and refines nothing. Nobody owns the node yet.
bool loadWithoutRendering(const kxUrlManager &manager, const QUrl &directory, NodeKind kind, osg::NodePtr &node);

} // namespace kxAssetsInternal
