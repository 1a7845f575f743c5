// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/LoadedNodes.h"

#include "Kernel/kxGeometryBuffer.h"
#include "Kernel/kxOptimize.h"
#include "SceneGraph/Geometry.h"

#include <algorithm>

namespace kxAssetsInternal {

osg::NodePtr takeFirstNode(std::vector<osg::FCRef<osg::Node>> nodes)
{
    const auto first = std::find_if(nodes.begin(), nodes.end(),
                                    [](const osg::FCRef<osg::Node> &node) { return static_cast<bool>(node); });
    if (first == nodes.end())
        return nullptr;
    osg::NodePtr node = first->take();
    node->subRefWithoutDestroying();
    return node;
}

void triangulateWhereNeeded(const std::vector<osg::NodePtr> &meshNodes)
{
    for (const osg::NodePtr &node : meshNodes) {
        const auto geometry = node ? osg::GeometryPtr::dcast(node->getCore()) : osg::GeometryPtr();
        if (geometry && kxGeometryBuffer::needsTriangulation(node, geometry))
            kxOptimize::triangulate(geometry, false);
    }
}

} // namespace kxAssetsInternal
