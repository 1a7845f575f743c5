// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxCreateGroupedNodes.h"

#include "Assets/Internal/NodePosition.h"
#include "Assets/Internal/PlacementCore.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSceneplateService.h"
#include "Kernel/kxSceneplateUtils.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Group.h"
#include "SceneGraph/Transform3D.h"

using kxAssetsInternal::restorePositions;
using kxAssetsInternal::storeOriginalPosition;

namespace {

void addLast(const osg::NodePtr &parent, const osg::NodePtr &child)
{
    const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
    parent->addChild(child);
}

} // namespace

kxCreateGroupedNodes::kxCreateGroupedNodes(kxAssetCategoryType category) : _category(category) {}

kxCreateGroupedNodes::kxCreateGroupedNodes(const kxCreateGroupedNodes &) = default;

kxCreateGroupedNodes &kxCreateGroupedNodes::operator=(const kxCreateGroupedNodes &) = default;

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

bool kxCreateGroupedNodes::prepareSceneplate(const std::vector<kxNodePtr> &nodes)
{
    if (nodes.empty() || !createRoot(kxSceneplateUtils::getSceneplateRoot(), osg::Group::create()))
        return false;
    for (const kxNodePtr &node : nodes)
        if (node && node->getParent()) {
            storeOriginalPosition(_positions, node);
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
        storeOriginalPosition(_positions, node);
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
    restorePositions(_positions);
    removeRoot();
    kxScenegraph::enableUpdate(true);
    kxScenegraph::update(true);
}

void kxCreateGroupedNodes::unprepareSceneplate()
{
    if (isRestored())
        _positions.clear();
    restorePositions(_positions);
    removeRoot();
    if (auto *service = kxKernelServiceFactory::the().getService<kxSceneplateService>())
        service->nodesChanged();
}
