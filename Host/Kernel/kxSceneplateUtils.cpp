// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxSceneplateUtils.h"

#include "Kernel/kxLog.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/SceneFile.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/Switch.h"

osg::NodePtr kxSceneplateUtils::getSceneplateRoot()
{
    return kxScenegraph::getSceneplateRoot();
}

kxSceneplateTypes::NodeType kxSceneplateUtils::getNodeType(const osg::NodePtr &node)
{
    if (!node)
        return static_cast<kxSceneplateTypes::NodeType>(0);
    if (const auto plate = osg::SceneplatePtr::dcast(node->getCore()))
        return plate->getIsFront() ? kxSceneplateTypes::Frontplate : kxSceneplateTypes::Backplate;
    return isOfType(node->getCore(), osg::Switch::getClassType()) ? kxSceneplateTypes::Switch
                                                                  : kxSceneplateTypes::Group;
}

bool kxSceneplateUtils::saveNodes(const std::string &path, const std::vector<osg::NodePtr> &nodes)
{
    std::vector<osg::FieldContainerPtr> roots;
    for (const osg::NodePtr &node : nodes)
        if (node)
            roots.emplace_back(node);
    if (roots.empty())
        return false;
    const osg::Result<void> result = osg::writeSceneFile(path, roots);
    if (!result)
        kxLog::debug("%s", result.reason().c_str());
    return static_cast<bool>(result);
}

std::vector<osg::FCRef<osg::Node>> kxSceneplateUtils::loadNodes(const std::string &path)
{
    const osg::Result<osg::SceneRoots> roots = osg::readSceneFile(path);
    if (!roots) {
        kxLog::error("%s", roots.reason().c_str());
        return {};
    }
    std::vector<osg::FCRef<osg::Node>> nodes;
    for (const osg::FCRef<osg::FieldContainer> &root : roots.value())
        if (const auto node = osg::NodePtr::dcast(root.get()))
            nodes.emplace_back(node);
    return nodes;
}
