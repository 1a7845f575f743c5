// SPDX-License-Identifier: Apache-2.0
#include "Kernel/Internal/SceneDocument.h"

#include "SceneGraph/CameraCore.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/Switch.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"
#include "SceneGraph/USkyEnvironmentMaterial.h"

namespace kxKernelInternal {

namespace {

osg::NodePtr nodeById(std::uint32_t id)
{
    return osg::NodePtr::dcast(osg::FieldContainerFactory::the().getContainer(id));
}

} // namespace

SceneDocument::SceneDocument()
    : _root(osg::makeNodeFor(osg::Group::create())), _sceneplateRoot(osg::makeNodeFor(osg::Group::create()))
{
    osg::setName(_root.get(), "Root");
    osg::setName(_sceneplateRoot.get(), "Sceneplates");
    _materialPoolNode = addNode(_root, osg::MaterialPool::create(), "Material Pool").getFieldContainerId();

    const osg::EnvironmentPtr environment = osg::Environment::create();
    const osg::MaterialPtr defaultEnvironment = makeDefaultEnvironment();
    {
        const osg::CPEditor edit(environment, osg::Environment::MaterialFieldMask);
        environment->setMaterial(defaultEnvironment);
    }
    const osg::NodePtr environments = addNode(_root, osg::Switch::create(), "Environments");
    _environmentSwitch = environments.getFieldContainerId();
    _defaultEnvironmentNode = addNode(environments, environment, "Default Environment").getFieldContainerId();

    const osg::CameraCorePtr camera = osg::CameraCore::create();
    {
        const osg::CPEditor edit(camera, osg::CameraCore::CameraFieldMask);
        camera->setCamera(osg::UberCamera::create());
    }
    osg::setName(camera->getCamera(), "Camera");
    _cameraNode = addNode(_root, camera, "Camera").getFieldContainerId();
}

osg::NodePtr SceneDocument::addNode(const osg::NodePtr &parent, const osg::NodeCorePtr &core, const char *name)
{
    const osg::NodePtr node = osg::makeNodeFor(core);
    osg::setName(node, name);
    const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
    parent->addChild(node);
    return node;
}

/// In the pool as well, because that is where environments are looked for by name.
osg::MaterialPtr SceneDocument::makeDefaultEnvironment()
{
    const osg::UEnvironmentSwitchMaterialPtr choices = osg::UEnvironmentSwitchMaterial::create();
    const osg::USkyEnvironmentMaterialPtr sky = osg::USkyEnvironmentMaterial::create();
    osg::setName(choices, "Default Environment");
    osg::setName(sky, "Sky");
    {
        const osg::CPEditor edit(choices, osg::UEnvironmentSwitchMaterial::MaterialsFieldMask);
        choices->addMaterial(sky);
    }
    const osg::MaterialPoolPtr pool = materialPool();
    const osg::CPEditor edit(pool, osg::MaterialPool::MaterialsFieldMask);
    pool->editMaterials().push_back(choices);
    pool->editMaterials().push_back(sky);
    return choices;
}

osg::NodePtr SceneDocument::materialPoolNode() const
{
    return nodeById(_materialPoolNode);
}

osg::NodePtr SceneDocument::environmentGeometrySwitch() const
{
    return nodeById(_environmentSwitch);
}

osg::NodePtr SceneDocument::defaultEnvironmentNode() const
{
    return nodeById(_defaultEnvironmentNode);
}

osg::NodePtr SceneDocument::cameraNode() const
{
    return nodeById(_cameraNode);
}

osg::MaterialPoolPtr SceneDocument::materialPool() const
{
    const osg::NodePtr node = materialPoolNode();
    return node ? osg::MaterialPoolPtr::dcast(node->getCore()) : osg::MaterialPoolPtr();
}

} // namespace kxKernelInternal
