// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FCPtr.h"
#include "SceneGraph/Node.h"

#include <iostream>

int main()
{
    const osg::FCRef<osg::Node> root(osg::Node::create());
    {
        osg::CPEditor edit(root, osg::Node::ChildrenFieldMask);
        root->addChild(osg::Node::create());
    }
    std::cout << root->getNChildren() << "\n";
}
