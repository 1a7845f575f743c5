// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/SceneNodes.h"

#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSelectionManager.h"
#include "SceneGraph/CameraCore.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/Light.h"
#include "SceneGraph/MaterialGroup.h"
#include "SceneGraph/MaterialPool.h"
#include "SceneGraph/OverrideMaterialAttachment.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/Switch.h"
#include "SceneGraph/Transform.h"
#include "SceneGraph/Transform3D.h"

#include <algorithm>
#include <set>

bool SceneNodes::isAtOrBelow(osg::NodePtr node, const osg::NodePtr &root)
{
    while (node && node != root)
        node = node->getParent();
    return static_cast<bool>(node);
}

bool SceneNodes::isFixed(const osg::NodePtr &node)
{
    return node && (node == kxScenegraph::getRoot() || node == kxScenegraph::getMaterialPoolNode() ||
                    node == kxScenegraph::environmentGeometrySwitch() || node == kxScenegraph::getCameraNode() ||
                    node == kxScenegraph::getDefaultEnvironmentNode() || node == kxScenegraph::getSceneplateRoot());
}

bool SceneNodes::isPlate(const osg::NodePtr &node)
{
    const osg::NodePtr plates = kxScenegraph::getSceneplateRoot();
    return node && plates && isAtOrBelow(node, plates);
}

std::vector<osg::NodePtr> SceneNodes::topmost(const std::vector<osg::NodePtr> &nodes)
{
    std::vector<osg::NodePtr> alive;
    for (const osg::NodePtr &node : nodes)
        if (osg::FieldContainerFactory::the().isAlive(node.getFieldContainerId()) &&
            std::find(alive.begin(), alive.end(), node) == alive.end())
            alive.push_back(node);
    const std::set<osg::NodePtr> all(alive.begin(), alive.end());
    std::erase_if(alive, [&all](const osg::NodePtr &node) {
        for (osg::NodePtr above = node->getParent(); above; above = above->getParent())
            if (all.count(above) != 0)
                return true;
        return false;
    });
    return alive;
}

std::vector<osg::NodePtr> SceneNodes::fromIds(const std::vector<std::uint32_t> &ids)
{
    std::vector<osg::NodePtr> nodes;
    for (const std::uint32_t id : ids)
        if (const osg::NodePtr node = kxNodeUtils::getNodeFromId(id))
            nodes.push_back(node);
    return nodes;
}

std::vector<std::uint32_t> SceneNodes::idsOf(const std::vector<osg::NodePtr> &nodes)
{
    std::vector<std::uint32_t> ids;
    ids.reserve(nodes.size());
    for (const osg::NodePtr &node : nodes)
        ids.push_back(node.getFieldContainerId());
    return ids;
}

std::vector<osg::NodePtr> SceneNodes::materialTargets(const osg::NodePtr &node)
{
    if (!node)
        return {};
    const osg::NodeCorePtr &core = node->getCore();
    if (isOfType(core, osg::Geometry::getClassType()) || isOfType(core, osg::MaterialGroup::getClassType()) ||
        isOfType(core, osg::Environment::getClassType()))
        return {node};
    std::vector<osg::NodePtr> geometry;
    kxNodeUtils::getGeometryNodes(node, geometry);
    return geometry;
}

osg::NodePtr SceneNodes::overridingNode(osg::NodePtr node)
{
    osg::NodePtr found;
    for (; node; node = node->getParent()) {
        const auto record = osg::findAttachment<osg::OverrideMaterialAttachment>(node);
        if (record && record->getMaterial())
            found = node;
    }
    return found;
}

std::vector<osg::NodePtr> SceneNodes::meantBy(const osg::NodePtr &node)
{
    return kxSelectionManager::isSelected(node) ? kxSelectionManager::getSelectedNodes() : std::vector{node};
}

std::vector<osg::NodePtr> SceneNodes::meantInPicture(const osg::NodePtr &seen)
{
    const std::vector<osg::NodePtr> selected = kxSelectionManager::getSelectedNodes();
    const bool isOneOfSeveral =
        selected.size() > 1 && std::any_of(selected.begin(), selected.end(),
                                           [&seen](const osg::NodePtr &node) { return isAtOrBelow(seen, node); });
    return isOneOfSeveral ? selected : std::vector{seen};
}

QString SceneNodes::label(const osg::NodePtr &node)
{
    const std::string name = kxNodeUtils::getName(node);
    return name.empty() ? typeLabel(node) : QString::fromStdString(name);
}

QString SceneNodes::typeLabel(const osg::NodePtr &node)
{
    const osg::NodeCorePtr core = node ? node->getCore() : osg::NodeCorePtr();
    if (!core)
        return tr("Empty node");
    const osg::FieldContainerType &type = core->getType();
    if (&type == &osg::Geometry::getClassType())
        return tr("Geometry");
    if (&type == &osg::MaterialGroup::getClassType())
        return tr("Material group");
    if (&type == &osg::Transform3D::getClassType() || &type == &osg::Transform::getClassType())
        return tr("Transform");
    if (&type == &osg::Environment::getClassType())
        return tr("Environment");
    if (&type == &osg::Light::getClassType())
        return tr("Light");
    if (&type == &osg::CameraCore::getClassType())
        return tr("Camera");
    if (&type == &osg::Switch::getClassType())
        return tr("Switch");
    if (&type == &osg::Sceneplate::getClassType())
        return osg::SceneplatePtr::dcast(core)->getIsFront() ? tr("Front plate") : tr("Back plate");
    if (&type == &osg::MaterialPool::getClassType())
        return tr("Material pool");
    return &type == &osg::Group::getClassType() ? tr("Group") : QString::fromLatin1(type.getCName());
}
