// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/NodeWalk.h"

#include <vector>

namespace osg {

void forEachNode(const NodePtr &root, const std::function<void(const NodePtr &node)> &visit)
{
    findNode(root, [&visit](const NodePtr &node) {
        visit(node);
        return false;
    });
}

NodePtr findNode(const NodePtr &root, const std::function<bool(const NodePtr &node)> &fits)
{
    std::vector<NodePtr> waiting;
    if (root)
        waiting.push_back(root);
    while (!waiting.empty()) {
        const NodePtr node = waiting.back();
        waiting.pop_back();
        if (fits(node))
            return node;
        for (std::size_t i = node->getNChildren(); i > 0; --i)
            waiting.push_back(node->getChild(i - 1));
    }
    return nullptr;
}

} // namespace osg
