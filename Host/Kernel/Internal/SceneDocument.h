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
    /// Null when the node was removed, and so for the others.
    osg::NodePtr materialPoolNode() const;
    /// The first of the environments; its core's material is the default environment switch.
    osg::NodePtr defaultEnvironmentNode() const;
    /// Its child i belongs to choice i of the default environment switch.
    osg::NodePtr environmentGeometrySwitch() const;
    /// What holds the sceneplates; it is no part of the tree below the root.
    const osg::NodePtr &sceneplateRoot() const { return _sceneplateRoot; }
    osg::NodePtr cameraNode() const;
    osg::MaterialPoolPtr materialPool() const;

private:
    static osg::NodePtr addNode(const osg::NodePtr &parent, const osg::NodeCorePtr &core, const char *name);
    osg::MaterialPtr makeDefaultEnvironment();

    osg::FCRef<osg::Node> _root;
    osg::FCRef<osg::Node> _sceneplateRoot;
    std::uint32_t _materialPoolNode = 0;
    std::uint32_t _environmentSwitch = 0;
    std::uint32_t _defaultEnvironmentNode = 0;
    std::uint32_t _cameraNode = 0;
};

} // namespace kxKernelInternal
