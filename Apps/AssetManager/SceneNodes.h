// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Node.h"

#include <QCoreApplication>

#include <vector>

/// Questions about the nodes of the scene that its views and its actions have in common. Main thread only.
class SceneNodes
{
    Q_DECLARE_TR_FUNCTIONS(SceneNodes)

public:
    SceneNodes() = delete;

    static bool isAtOrBelow(osg::NodePtr node, const osg::NodePtr &root);
    /// Belongs to every document and cannot go: the roots, the pool, the environments, the default one, the camera.
    static bool isFixed(const osg::NodePtr &node);
    static bool isPlate(const osg::NodePtr &node);
    /// Those that are alive, each once, without those that lie below others of them.
    static std::vector<osg::NodePtr> topmost(const std::vector<osg::NodePtr> &nodes);
    /// The living nodes of these ids.
    static std::vector<osg::NodePtr> fromIds(const std::vector<std::uint32_t> &ids);
    static std::vector<std::uint32_t> idsOf(const std::vector<osg::NodePtr> &nodes);
    /// What a dropped material is assigned to: the node, where its core takes one, else the geometry below it.
    static std::vector<osg::NodePtr> materialTargets(const osg::NodePtr &node);
    /// The topmost node at or above that puts a material over all that lies below it; null when there is none.
    static osg::NodePtr overridingNode(osg::NodePtr node);
    /// What is meant by pointing at a node: all that is selected, where it is one of several, else the node alone.
    static std::vector<osg::NodePtr> meantBy(const osg::NodePtr &node);
    /// The same in the picture, where what is seen of a selected node may lie below it.
    static std::vector<osg::NodePtr> meantInPicture(const osg::NodePtr &seen);
    /// What people call it: the name, or what it is where it has none.
    static QString label(const osg::NodePtr &node);
    /// "Geometry", "Group", "Light" ... in words.
    static QString typeLabel(const osg::NodePtr &node);
};
