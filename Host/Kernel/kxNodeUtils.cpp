// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxNodeUtils.h"

#include "Kernel/Internal/MaterialFields.h"
#include "Kernel/Internal/NodeWalk.h"
#include "Kernel/kxFile.h"
#include "Kernel/kxLog.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/SceneFile.h"

#include <variant>

namespace {

bool isAtOrBelow(osg::NodePtr node, const osg::NodePtr &root)
{
    while (node && node != root)
        node = node->getParent();
    return static_cast<bool>(node);
}

/// The one field by which a core assigns a material; pools, which hold several, assign none.
const osg::FieldInfo *assignmentField(const osg::NodeCorePtr &core)
{
    if (!core)
        return nullptr;
    for (const osg::FieldInfo &field : kxKernelInternal::materialFields(core->getType())) {
        if (std::holds_alternative<osg::RefFieldBase *>(field.address(*core)))
            return &field;
    }
    return nullptr;
}

} // namespace

std::string kxNodeUtils::getName(const osg::NodePtr &node)
{
    return osg::getName(node);
}

void kxNodeUtils::setName(const osg::NodePtr &node, const std::string &name, bool announce, const osg::NodePtr &root)
{
    if (!node || (root && !isAtOrBelow(node, root)))
        return;
    osg::setName(node, name);
    if (announce)
        emit kxScenegraph::notifier().nameChanged(node.getFieldContainerId());
}

void kxNodeUtils::getGeometryNodes(const osg::NodePtr &node, std::vector<osg::NodePtr> &nodes)
{
    kxKernelInternal::forEachNode(node, [&nodes](const osg::NodePtr &current) {
        if (isOfType(current->getCore(), osg::Geometry::getClassType()))
            nodes.push_back(current);
    });
}

bool kxNodeUtils::setMaterial(const osg::NodePtr &node, const osg::MaterialPtr &material, bool announce, bool replace)
{
    const osg::NodeCorePtr core = node ? node->getCore() : osg::NodeCorePtr();
    const osg::FieldInfo *field = assignmentField(core);
    if (!field)
        return false;
    auto *assignment = std::get<osg::RefFieldBase *>(field->address(*core));
    if (!replace && assignment->getContainer())
        return false;
    {
        const osg::CPEditor edit(core, field->mask);
        core->markChanged(field->mask);
        assignment->setContainer(material);
    }
    if (announce)
        kxScenegraph::update(false);
    return true;
}

osg::NodePtr kxNodeUtils::getNodeFromId(std::uint32_t id)
{
    return osg::NodePtr::dcast(osg::FieldContainerFactory::the().getContainer(id));
}

bool kxNodeUtils::writeNode(const osg::NodePtr &node, const char *path, bool replace)
{
    if (!node || !path || (!replace && kxFile::exists(path, false, true)))
        return false;
    const osg::Result<void> result = osg::writeSceneFile(path, {node});
    if (!result)
        kxLog::debug("%s", result.reason().c_str());
    return static_cast<bool>(result);
}
