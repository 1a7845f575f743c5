// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxSaveNode.h"

#include "Kernel/NodeUtils.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxMessage.h"
#include "Kernel/kxMessageCodes.h"
#include "Kernel/kxModuleBase.h"
#include "Kernel/kxNodeUtils.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/JsonAttachment.h"
#include "SceneGraph/UberMaterial.h"

#include <boost/any.hpp>

namespace {

/// While it lives, a BRDF material without environment stays without one.
class IgnoredDefaultEnvironment
{
public:
    IgnoredDefaultEnvironment() : _before(osg::UBRDFMaterial::getIgnoreDefaultEnvironment())
    {
        osg::UBRDFMaterial::setIgnoreDefaultEnvironment(true);
    }
    ~IgnoredDefaultEnvironment() { osg::UBRDFMaterial::setIgnoreDefaultEnvironment(_before); }
    IgnoredDefaultEnvironment(const IgnoredDefaultEnvironment &) = delete;
    IgnoredDefaultEnvironment &operator=(const IgnoredDefaultEnvironment &) = delete;

private:
    bool _before;
};

} // namespace

kxSaveNode::kxSaveNode(const osg::NodePtr &node)
    : _pool(osg::MaterialPool::create()), _cameras(_pool.get()), _constraints(_pool.get())
{
    prepare(node);
}

kxSaveNode::~kxSaveNode()
{
    cleanup();
}

void kxSaveNode::detachFromEnvironments(const osg::NodePtr &node)
{
    const IgnoredDefaultEnvironment ignored;
    std::set<osg::MaterialPtr> materials;
    kxMaterials::getMaterialsAndOverrideMaterials(node, materials, false);
    for (const osg::MaterialPtr &material : materials)
        _environments.setEnvironment(osg::UberMaterialPtr::dcast(material), nullptr);
}

void kxSaveNode::prepare(const osg::NodePtr &node)
{
    if (!node)
        return;
    detachFromEnvironments(node);
    const bool hasCameras = _cameras.add(node);
    const bool hasConstraints = _constraints.createFrom(node);
    if (hasCameras || hasConstraints)
        _poolNode = NodeUtils::createNodeWithCore(_pool.get(), node, "").getFieldContainerId();

    kxMessage message(kxMessageCodes::NodeIsWritten);
    message.set("node", boost::any(node), true);
    message.set("addActionAttachment", true, true);
    kxModuleBase::sendMessage(message, false);
}

void kxSaveNode::cleanup()
{
    _environments.reset();
    _cameras.reset();
    _constraints.reset();
    const osg::NodePtr poolNode = kxNodeUtils::getNodeFromId(_poolNode);
    const osg::NodePtr parent = poolNode ? poolNode->getParent() : osg::NodePtr();
    if (!parent)
        return;
    {
        const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
        parent->subChild(poolNode);
    }
    kxNodeUtils::removeAttachment(parent, osg::JsonAttachment::getClassType());
}
