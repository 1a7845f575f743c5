// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxCreateGroupedNodes.h"

#include "Assets/Internal/PlacementCore.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSceneplateService.h"
#include "Kernel/kxSceneplateUtils.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Group.h"
#include "SceneGraph/Transform3D.h"

namespace {

void addLast(const osg::NodePtr &parent, const osg::NodePtr &child)
{
    const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
    parent->addChild(child);
}

} // namespace

kxCreateGroupedNodes::~kxCreateGroupedNodes()
{
    unprepare();
}

bool kxCreateGroupedNodes::prepare(const std::vector<kxNodePtr> &nodes)
{
    return _category == Sceneplate ? prepareSceneplate(nodes) : prepareGeometry(nodes);
}

void kxCreateGroupedNodes::unprepare()
{
    if (_category == Sceneplate)
        unprepareSceneplate();
    else
        unprepareGeometry();
}

bool kxCreateGroupedNodes::createRoot(const osg::NodePtr &parent, const osg::NodeCorePtr &core)
{
    const osg::FCRef<osg::Node> root(osg::makeNodeFor(core));
    if (_root || !parent)
        return false;
    _root = root;
    addLast(parent, _root);
    return true;
}

/// With the root go the nodes that were made between it and what was moved.
void kxCreateGroupedNodes::removeRoot()
{
    if (!_root)
        return;
    {
        const osg::CPEditor edit(_root.get(), osg::AllFieldMask);
        while (_root->getNChildren() > 0)
            _root->subChild(_root->getChild(0));
    }
    if (const osg::NodePtr parent = _root->getParent()) {
        const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
        parent->subChild(_root);
    }
    _root.reset();
}

void kxCreateGroupedNodes::storeOriginalPosition(const osg::NodePtr &node)
{
    if (!node)
        return;
    const osg::NodePtr parent = node->getParent();
    _positions.push_back(
        {node.getFieldContainerId(), parent ? parent.getFieldContainerId() : 0, parent ? parent->findChild(node) : -1});
}

/// From the last to the first, so that each finds the places before it as they were.
void kxCreateGroupedNodes::restorePositions()
{
    for (auto position = _positions.rbegin(); position != _positions.rend(); ++position) {
        const osg::NodePtr node = kxNodeUtils::getNodeFromId(position->node);
        const osg::NodePtr parent = kxNodeUtils::getNodeFromId(position->parent);
        if (!node || !parent)
            continue;
        const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
        parent->insertChild(position->index, node);
    }
    _positions.clear();
}

bool kxCreateGroupedNodes::prepareSceneplate(const std::vector<kxNodePtr> &nodes)
{
    if (nodes.empty() || !createRoot(kxSceneplateUtils::getSceneplateRoot(), osg::Group::create()))
        return false;
    for (const kxNodePtr &node : nodes)
        if (node && node->getParent()) {
            storeOriginalPosition(node);
            addLast(_root, node);
        }
    return true;
}

void kxCreateGroupedNodes::moveGeometry(const osg::NodePtr &node, const osg::NodePtr &ancestor,
                                        const osg::Matrix &fromWorld)
{
    const osg::NodePtr parent = node->getParent();
    if (parent == ancestor) {
        addLast(_root, node);
        return;
    }
    const osg::Matrix placement = fromWorld * kxScenegraph::getToWorld(parent);
    if (kxAssetsInternal::isNearlyEqual(placement, osg::Matrix())) {
        addLast(_root, node);
        return;
    }
    const osg::NodePtr wrapper = osg::makeNodeFor(kxAssetsInternal::placementCore(placement));
    addLast(_root, wrapper);
    addLast(wrapper, node);
}

bool kxCreateGroupedNodes::prepareGeometry(const std::vector<kxNodePtr> &nodes)
{
    if (nodes.empty())
        return false;
    kxScenegraph::enableUpdate(false);
    // After a failure updates stay off until unprepare(): callers rely on being the ones to switch them on.
    if (!createRoot(kxScenegraph::getRoot(), osg::Transform3D::create()))
        return false;
    const osg::NodePtr ancestor = kxScenegraph::findFirstEqualParent(nodes);
    const osg::Matrix fromWorld = inverted(kxScenegraph::getToWorld(ancestor)).value_or(osg::Matrix());
    for (const kxNodePtr &node : nodes) {
        if (!node)
            continue;
        storeOriginalPosition(node);
        moveGeometry(node, ancestor, fromWorld);
    }
    kxScenegraph::enableUpdate(true);
    return true;
}

/// Where a copy has put everything back already.
bool kxCreateGroupedNodes::isRestored() const
{
    return _root && !_root->getParent() && _root->getNChildren() == 0;
}

void kxCreateGroupedNodes::unprepareGeometry()
{
    if (!_root)
        return;
    if (isRestored())
        _positions.clear();
    kxScenegraph::enableUpdate(false);
    restorePositions();
    removeRoot();
    kxScenegraph::enableUpdate(true);
    kxScenegraph::update(true);
}

void kxCreateGroupedNodes::unprepareSceneplate()
{
    if (isRestored())
        _positions.clear();
    restorePositions();
    removeRoot();
    if (auto *service = kxKernelServiceFactory::the().getService<kxSceneplateService>())
        service->nodesChanged();
}
