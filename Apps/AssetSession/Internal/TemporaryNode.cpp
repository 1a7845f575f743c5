// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/Internal/TemporaryNode.h"

#include "Kernel/NodeUtils.h"
#include "SceneGraph/EditCP.h"

namespace kxAssetSessionInternal {

TemporaryNode::TemporaryNode(const osg::NodeCorePtr &core, const osg::NodePtr &parent, const std::string &name)
    : _node(NodeUtils::createNodeWithCore(core, parent, name))
{}

TemporaryNode::~TemporaryNode()
{
    const osg::NodePtr parent = _node->getParent();
    if (!parent)
        return;
    const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
    parent->subChild(_node);
}

void TemporaryNode::add(const osg::NodePtr &child)
{
    const osg::CPEditor edit(_node.get(), osg::Node::ChildrenFieldMask);
    _node->addChild(child);
}

} // namespace kxAssetSessionInternal
