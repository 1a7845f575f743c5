// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxTypeConverter.h"

kxdNodePtr kxTypeConverter::convertNode(const osg::NodePtr &node)
{
    return node ? kxdNodePtr::create(node.getFieldContainerId()) : kxdNodePtr();
}

osg::NodePtr kxTypeConverter::convertNode(const kxdNodePtr &node)
{
    return node ? node->node() : osg::NodePtr();
}
