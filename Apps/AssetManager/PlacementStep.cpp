// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/PlacementStep.h"

#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxSelectionManager.h"
#include "SceneGraph/EditCP.h"

namespace {

bool isAtOrBelow(osg::NodePtr node, const osg::NodePtr &root)
{
    while (node && node != root)
        node = node->getParent();
    return static_cast<bool>(node);
}

/// What an undo keeps alive is not to stay selected.
void deselectBelow(const osg::NodePtr &root)
{
    std::vector<osg::NodePtr> gone;
    for (const osg::NodePtr &node : kxSelectionManager::getSelectedNodes())
        if (isAtOrBelow(node, root))
            gone.push_back(node);
    kxSelectionManager::selectNodes(gone, false);
}

void takeOut(const osg::NodePtr &node)
{
    const osg::NodePtr parent = node->getParent();
    if (!parent)
        return;
    const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
    parent->subChild(node);
}

} // namespace

PlacementStep::Place PlacementStep::placeOf(const osg::NodePtr &node)
{
    const osg::NodePtr parent = node->getParent();
    return parent ? Place{parent.getFieldContainerId(), parent->findChild(node)} : Place();
}

PlacementStep::PlacementStep(const osg::NodePtr &node, const Place &target) : _node(node), _after(target) {}

PlacementStep::PlacementStep(const osg::NodePtr &node, const Place &before, const Place &after)
    : _node(node), _before(before), _after(after)
{}

QString PlacementStep::apply()
{
    _before = placeOf(_node);
    return moveTo(_after);
}

QString PlacementStep::revert()
{
    return moveTo(_before);
}

QString PlacementStep::moveTo(const Place &place) const
{
    if (place.parentId == 0) {
        deselectBelow(_node);
        takeOut(_node);
        return {};
    }
    const QString name = QString::fromStdString(kxNodeUtils::getName(_node));
    const osg::NodePtr parent = kxNodeUtils::getNodeFromId(place.parentId);
    if (!parent)
        return tr("\"%1\" cannot go back to its place, because what it belonged to is gone.").arg(name);
    if (isAtOrBelow(parent, _node))
        return tr("\"%1\" cannot become a part of itself.").arg(name);
    const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
    parent->insertChild(place.index, _node);
    return {};
}
