// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "MaterialFixture.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/Transform3D.h"

#include <string>

/// A library, a fresh scene, and nodes for both.
class NodeFixture : public MaterialFixture
{
protected:
    static osg::NodePtr addNode(const osg::NodePtr &parent, const osg::NodeCorePtr &core, const std::string &name);
    static osg::NodePtr addGroup(const osg::NodePtr &parent, const std::string &name);
    /// Placed by a translation.
    static osg::NodePtr addPlaced(const osg::NodePtr &parent, const std::string &name, const osg::Vec3d &translation);
    /// A square of one polygon.
    static osg::NodePtr addSquare(const osg::NodePtr &parent, const std::string &name,
                                  const osg::MaterialPtr &material = nullptr);
    /// A constraint of the scene between the two.
    static void addConstraint(const osg::NodePtr &a, const osg::NodePtr &b);
    static void setUuid(const osg::NodePtr &node, const std::string &uuid);
    static std::string uuidOfNode(const osg::NodePtr &node);
    /// Names, children in brackets.
    static std::string describe(const osg::NodePtr &node);
};
