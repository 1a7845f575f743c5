// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxdObject.h"

#include "Kernel/kxNodeUtils.h"

kxdObject::~kxdObject() = default;

kxdNode::~kxdNode() = default;

osg::NodePtr kxdNode::node() const
{
    return kxNodeUtils::getNodeFromId(getObjectId());
}

kxdReferenceNode::~kxdReferenceNode() = default;
