// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Node.h"

#include <string>

namespace kxAssetSessionInternal {

/// A new node that is part of the scene while this lives.
class TemporaryNode
{
public:
    TemporaryNode(const osg::NodeCorePtr &core, const osg::NodePtr &parent, const std::string &name);
    ~TemporaryNode();
    TemporaryNode(const TemporaryNode &) = delete;
    TemporaryNode &operator=(const TemporaryNode &) = delete;

    const osg::NodePtr &node() const { return _node.get(); }
    void add(const osg::NodePtr &child);

private:
    osg::FCRef<osg::Node> _node;
};

} // namespace kxAssetSessionInternal
