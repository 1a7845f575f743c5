// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Node.h"

#include <vector>

class NodeTreeModel;
class SceneActions;

/// Gives nodes another place in the tree without the mouse: a row up or down, out of their parent, or cut and pasted.
///
/// Each is one step that can be undone. What cannot be moved stays, with a sentence of the actions. Main thread only.
class NodeMover
{
public:
    using Nodes = std::vector<osg::NodePtr>;

    /// Both have to live longer.
    NodeMover(SceneActions &actions, NodeTreeModel &model) : _actions(actions), _model(model) {}

    /// Whether all are children of one node, above or below which there is another row.
    bool canMove(const Nodes &nodes, int rows) const;
    /// By -1 or 1. Nodes with others between them are brought together.
    void move(const Nodes &nodes, int rows);
    /// Whether all are children of one node that has a parent itself.
    bool canMoveOut(const Nodes &nodes) const;
    /// To the place after their parent.
    void moveOut(const Nodes &nodes);

    /// Marks the nodes for paste(); they stay where they are until then.
    void cut(const Nodes &nodes);
    bool canPaste() const;
    /// As the last children of \a target, or of the root for null; beside it where it is a plate. The answer is what was cut.
    Nodes paste(const osg::NodePtr &target);

private:
    /// In the order of their rows; empty unless they have one parent.
    Nodes siblings(const Nodes &nodes) const;
    osg::NodePtr rowBeside(const Nodes &siblings, int rows) const;

    SceneActions &_actions;
    NodeTreeModel &_model;
};
