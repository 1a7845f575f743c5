// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxSceneOpener.h"

#include "Kernel/kxController.h"
#include "Kernel/kxFastGeometryLoader.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSceneplateUtils.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/MaterialPool.h"
#include "SceneGraph/NodeWalk.h"
#include "SceneGraph/SceneFile.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/UEnvironmentMaterial.h"

namespace {

bool isPlate(const osg::NodePtr &node)
{
    return isOfType(node->getCore(), osg::Sceneplate::getClassType());
}

void hangBelow(const osg::NodePtr &parent, const osg::NodePtr &node)
{
    if (!parent || node->getParent())
        return;
    const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
    parent->addChild(node);
}

/// What the node of an environment lights with; null where that is nothing.
osg::MaterialPtr materialOf(const osg::NodePtr &environment)
{
    const osg::MaterialPtr own = osg::EnvironmentPtr::dcast(environment->getCore())->getMaterial();
    if (const auto chooser = osg::SwitchMaterialPtr::dcast(own))
        return chooser->getCurrentMaterial();
    if (own)
        return own;
    for (const osg::MaterialPtr &material : kxMaterials::getMaterials(environment))
        if (osg::UEnvironmentMaterialPtr::dcast(material))
            return material;
    return nullptr;
}

void place(const osg::NodePtr &node, kxSceneOpener::Contents &contents)
{
    if (isOfType(node->getCore(), osg::Environment::getClassType())) {
        kxController::addToDefaultEnvironment(materialOf(node), node, true);
        hangBelow(kxScenegraph::getRoot(), node);
        contents.environments.push_back(node);
    } else if (osg::findNode(node, isPlate)) {
        hangBelow(kxSceneplateUtils::getSceneplateRoot(), node);
        contents.plates.push_back(node);
    } else {
        hangBelow(kxScenegraph::getRoot(), node);
        contents.nodes.push_back(node);
    }
}

bool isPool(const osg::NodePtr &node)
{
    return isOfType(node->getCore(), osg::MaterialPool::getClassType());
}

/// All at once below one node, because keys are renewed by tree, and a pool knows nodes of other roots.
void enterScene(const osg::SceneRoots &roots)
{
    std::vector<osg::NodePtr> nodes;
    for (const osg::FCRef<osg::FieldContainer> &root : roots)
        if (const auto node = osg::NodePtr::dcast(root.get()); node && !node->getParent())
            nodes.push_back(node);
    const osg::FCRef<osg::Node> all(osg::makeNodeFor(osg::Group::create()));
    {
        const osg::CPEditor edit(all.get(), osg::Node::ChildrenFieldMask);
        for (const osg::NodePtr &node : nodes)
            all->addChild(node);
    }
    kxFastGeometryLoader::enterScene(all, kxFastGeometryLoader::MergeIntoScene);
    const osg::CPEditor edit(all.get(), osg::Node::ChildrenFieldMask);
    for (const osg::NodePtr &node : nodes)
        all->subChild(node);
}

} // namespace

std::vector<osg::NodePtr> kxSceneOpener::Contents::allNodes() const
{
    std::vector<osg::NodePtr> all = nodes;
    all.insert(all.end(), environments.begin(), environments.end());
    all.insert(all.end(), plates.begin(), plates.end());
    return all;
}

osg::Result<kxSceneOpener::Contents> kxSceneOpener::open(const QString &path)
{
    const osg::Result<osg::SceneRoots> roots = osg::readSceneFile(path.toStdString());
    if (!roots)
        return osg::Failure{roots.reason()};
    return add(roots.value());
}

kxSceneOpener::Contents kxSceneOpener::add(const osg::SceneRoots &roots)
{
    enterScene(roots);
    Contents contents;
    for (const osg::FCRef<osg::FieldContainer> &root : roots) {
        if (const auto node = osg::NodePtr::dcast(root.get()); node && !isPool(node))
            place(node, contents);
        const auto material = osg::MaterialPtr::dcast(root.get());
        if (!material)
            continue;
        kxScenegraph::addToMaterialPool(material);
        contents.materials.push_back(material);
    }
    return contents;
}
