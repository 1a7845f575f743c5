// SPDX-License-Identifier: Apache-2.0
#include "Kernel/Internal/NodeWalk.h"

#include <vector>

namespace kxKernelInternal {

void forEachNode(const osg::NodePtr &root, const std::function<void(const osg::NodePtr &node)> &visit)
{
    std::vector<osg::NodePtr> waiting;
    if (root)
        waiting.push_back(root);
    while (!waiting.empty()) {
        const osg::NodePtr node = waiting.back();
        waiting.pop_back();
        visit(node);
        for (std::size_t i = node->getNChildren(); i > 0; --i)
            waiting.push_back(node->getChild(i - 1));
    }
}

} // namespace kxKernelInternal
