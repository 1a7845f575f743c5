// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/SceneStep.h"
#include "SceneGraph/Node.h"

#include <memory>
#include <vector>

/// Keeps a node where it stands in the world while it is hung elsewhere.
class WorldPlace
{
public:
    /// Remembers where the node stands.
    explicit WorldPlace(const osg::NodePtr &node);

    /// What brings the node back there from where it hangs now: nothing where it stands there, where it has no placement of
    /// its own, and where others share that.
    std::vector<std::unique_ptr<SceneStep>> restoring() const;

private:
    osg::NodePtr _node;
    osg::Matrix _toWorld;
};
