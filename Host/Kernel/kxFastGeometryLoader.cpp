// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxFastGeometryLoader.h"

#include "Kernel/Internal/LoadProgress.h"
#include "Kernel/kxActions.h"
#include "Kernel/kxLog.h"
#include "Kernel/kxNodeKeys.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/MaterialPool.h"
#include "SceneGraph/NodeWalk.h"
#include "SceneGraph/ReferenceAttachment.h"
#include "SceneGraph/SceneFile.h"

#include <algorithm>
#include <vector>

namespace {

template <class Field> void append(Field &to, const Field &from)
{
    for (const auto &entry : from)
        if (entry && std::find(to.begin(), to.end(), entry) == to.end())
            to.push_back(entry);
}

void moveInto(const osg::MaterialPoolPtr &scene, const osg::MaterialPool &pool)
{
    const osg::CPEditor edit(scene, osg::AllFieldMask);
    append(scene->editMaterials(), pool.getMaterials());
    append(scene->editCameras(), pool.getCameras());
    append(scene->editConstraints(), pool.getConstraints());
    append(scene->editLightLinkSets(), pool.getLightLinkSets());
}

/// A pool that is the root itself stays: something has to be loaded.
void mergePools(const osg::NodePtr &root)
{
    const osg::MaterialPoolPtr scene = kxScenegraph::getMaterialPool();
    if (!scene)
        return;
    std::vector<osg::NodePtr> pools;
    osg::forEachNode(root, [&](const osg::NodePtr &node) {
        if (node != root && isOfType(node->getCore(), osg::MaterialPool::getClassType()))
            pools.push_back(node);
    });
    for (const osg::NodePtr &node : pools)
        moveInto(scene, *osg::MaterialPoolPtr::dcast(node->getCore()));
    // The lowest first: a pool takes those below it along.
    for (auto node = pools.rbegin(); node != pools.rend(); ++node) {
        const osg::NodePtr parent = (*node)->getParent();
        const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
        parent->subChild(*node);
    }
}

void addFileInfo(const osg::NodePtr &node, const char *path)
{
    const osg::ReferenceAttachmentPtr info = osg::ReferenceAttachment::create();
    {
        const osg::CPEditor edit(info, osg::ReferenceAttachment::SourceFieldMask);
        info->setSource(path);
    }
    const osg::CPEditor edit(node, osg::AttachmentContainer::AttachmentsFieldMask);
    node->addAttachment(info);
}

osg::NodePtr firstNode(const osg::SceneRoots &roots)
{
    for (const osg::FCRef<osg::FieldContainer> &root : roots)
        if (const auto node = osg::NodePtr::dcast(root.get()))
            return node;
    return nullptr;
}

} // namespace

void kxFastGeometryLoader::setParent(const osg::NodePtr &parent, int index)
{
    _parentId = parent ? parent.getFieldContainerId() : 0;
    _index = index;
}

void kxFastGeometryLoader::enterScene(const osg::NodePtr &node, MaterialPoolHandling pools)
{
    kxActions::readFrom(node); // before the pools go: places count all children
    kxNodeKeys::renew(node);
    if (pools == MergeIntoScene)
        mergePools(node);
}

osg::NodePtr kxFastGeometryLoader::load(const char *path) const
{
    const std::string file = path ? path : "";
    const kxKernelInternal::LoadProgress progress(file.c_str(), _showsProgress ? 0 : -1);
    osg::FCRef<osg::Node> node;
    {
        const osg::Result<osg::SceneRoots> roots = osg::readSceneFile(file);
        if (!roots) {
            kxLog::error("%s", roots.reason().c_str());
            return nullptr;
        }
        node = osg::FCRef<osg::Node>(firstNode(roots.value()));
    }
    if (!node) {
        kxLog::error("Failed to load a node from '%s': the file holds none.", file.c_str());
        return nullptr;
    }
    enterScene(node, _poolHandling);
    if (_addsFileInfo)
        addFileInfo(node, file.c_str());
    if (const osg::NodePtr parent = kxNodeUtils::getNodeFromId(_parentId)) {
        const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
        parent->insertChild(_index < 0 ? static_cast<std::int32_t>(parent->getNChildren()) : _index, node);
    }
    const osg::NodePtr loaded = node.take();
    loaded->subRefWithoutDestroying();
    return loaded;
}
