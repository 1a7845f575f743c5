// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/NodeMover.h"

#include "AssetManager/NodeTreeModel.h"
#include "AssetManager/SceneActions.h"
#include "AssetManager/SceneNodes.h"
#include "SceneGraph/Sceneplate.h"

#include <algorithm>

namespace {

constexpr int AtTheEnd = -1;

bool isPlateItself(const osg::NodePtr &node)
{
    return static_cast<bool>(osg::SceneplatePtr::dcast(node->getCore()));
}

} // namespace

NodeMover::Nodes NodeMover::siblings(const Nodes &nodes) const
{
    Nodes ordered = SceneNodes::topmost(nodes);
    const bool areSiblings = std::all_of(ordered.begin(), ordered.end(), [&ordered](const osg::NodePtr &node) {
        return node->getParent() && node->getParent() == ordered.front()->getParent();
    });
    if (!areSiblings)
        return {};
    std::sort(ordered.begin(), ordered.end(), [](const osg::NodePtr &left, const osg::NodePtr &right) {
        return left->getParent()->findChild(left) < right->getParent()->findChild(right);
    });
    return ordered;
}

/// Null at the edge.
osg::NodePtr NodeMover::rowBeside(const Nodes &siblings, int rows) const
{
    const osg::NodePtr &edge = rows < 0 ? siblings.front() : siblings.back();
    const QModelIndex index = _model.indexOf(edge.getFieldContainerId());
    return index.isValid() ? _model.nodeAt(index.sibling(index.row() + rows, 0)) : osg::NodePtr();
}

bool NodeMover::canMove(const Nodes &nodes, int rows) const
{
    const Nodes moved = siblings(nodes);
    return !moved.empty() && rowBeside(moved, rows);
}

void NodeMover::move(const Nodes &nodes, int rows)
{
    const Nodes moved = siblings(nodes);
    const osg::NodePtr beside = moved.empty() ? osg::NodePtr() : rowBeside(moved, rows);
    if (!beside)
        return;
    const osg::NodePtr parent = beside->getParent();
    const int place = parent->findChild(beside);
    _actions.moveNodes(moved, parent, rows < 0 ? place : place + 1);
}

bool NodeMover::canMoveOut(const Nodes &nodes) const
{
    const Nodes moved = siblings(nodes);
    return !moved.empty() && moved.front()->getParent() != _model.rootNode();
}

void NodeMover::moveOut(const Nodes &nodes)
{
    if (!canMoveOut(nodes))
        return;
    const Nodes moved = siblings(nodes);
    const osg::NodePtr parent = moved.front()->getParent();
    _actions.moveNodes(moved, parent->getParent(), parent->getParent()->findChild(parent) + 1);
}

void NodeMover::cut(const Nodes &nodes)
{
    _model.setCut(SceneNodes::idsOf(SceneNodes::topmost(nodes)));
}

bool NodeMover::canPaste() const
{
    return !_model.cut().empty();
}

NodeMover::Nodes NodeMover::paste(const osg::NodePtr &target)
{
    Nodes moved = SceneNodes::fromIds(_model.cut());
    // What was deleted meanwhile may live on for undo.
    std::erase_if(moved,
                  [this](const osg::NodePtr &node) { return !SceneNodes::isAtOrBelow(node, _model.rootNode()); });
    _model.setCut({});
    if (target && isPlateItself(target))
        _actions.moveNodes(moved, target->getParent(), target->getParent()->findChild(target) + 1);
    else
        _actions.moveNodes(moved, target ? target : _model.rootNode(), AtTheEnd);
    return moved;
}
