// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/MaterialPool.h"
#include "SceneGraph/Node.h"

namespace kxKernelInternal {

/// A scene that is valid from the start: a root, and below it a material pool, a default environment and a camera.
///
/// Keeps the root alive; the parts are known by id, because anybody may remove them.
class SceneDocument
{
public:
    SceneDocument();

    const osg::NodePtr &root() const { return _root; }
    /// Null when the node was removed, and so for the other two.
    osg::NodePtr materialPoolNode() const;
    osg::NodePtr defaultEnvironmentNode() const;
    osg::NodePtr cameraNode() const;
    osg::MaterialPoolPtr materialPool() const;

private:
    osg::NodePtr addNode(const osg::NodeCorePtr &core, const char *name);
    osg::MaterialPtr makeDefaultEnvironment();

    osg::FCRef<osg::Node> _root;
    std::uint32_t _materialPoolNode = 0;
    std::uint32_t _defaultEnvironmentNode = 0;
    std::uint32_t _cameraNode = 0;
};

} // namespace kxKernelInternal
