// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/AssetSessionExport.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/Result.h"

#include <string>
#include <vector>

/// Names nodes for people: the names from the topmost node down, with slashes between them.
///
/// "Car/Wheel#2" is the second of the children of "Car" that are named "Wheel"; "Car/#3" is its third child, whatever it is
/// called. A slash, a number sign or a backslash in a name stands behind a backslash.
class KX_ASSETSESSION_EXPORT kxNodePath
{
public:
    kxNodePath() = delete;

    /// The path of a node among these topmost ones; find() finds it again. "" for a node that is not at or below them.
    static std::string of(const osg::NodePtr &node, const std::vector<osg::NodePtr> &roots);
    /// The failure's reason says up to where the path leads, and which names go on from there.
    static osg::Result<osg::NodePtr> find(const std::string &path, const std::vector<osg::NodePtr> &roots);
};
