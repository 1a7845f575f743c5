// SPDX-License-Identifier: Apache-2.0
#include "Kernel/NodeUtils.h"

#include "SceneGraph/EditCP.h"
#include "SceneGraph/NameAttachment.h"

osg::NodePtr NodeUtils::createNodeWithCore(const osg::NodeCorePtr &core, const osg::NodePtr &parent,
                                           const std::string &name)
{
    const osg::NodePtr node = osg::makeNodeFor(core);
    if (!name.empty())
        osg::setName(node, name);
    if (parent) {
        const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
        parent->addChild(node);
    }
    return node;
}
