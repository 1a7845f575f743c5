// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxScenegraph.h"

#include "Kernel/Internal/SceneDocument.h"
#include "Kernel/Internal/SceneIndexes.h"
#include "Kernel/Internal/UpdateGate.h"
#include "Kernel/kxController.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxIconManager.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "Kernel/kxSelectionManager.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/NodeWalk.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>

namespace {

struct ScenegraphState
{
    std::unique_ptr<kxKernelInternal::SceneDocument> document;
    kxScenegraphNotifier notifier;
    kxKernelInternal::UpdateGate updates{[this] { emit notifier.updateRequested(); }};
};

ScenegraphState &state()
{
    static ScenegraphState instance;
    return instance;
}

constexpr std::array TypesWithIcon{"MultiMaterial",
                                   "MultiPassMaterial",
                                   "SwitchMaterial",
                                   "UBRDFMaterial",
                                   "UEnvironmentSwitchMaterial",
                                   "USkyEnvironmentMaterial",
                                   "USphereEnvironmentMaterial",
                                   "UberMaterial"};

bool hasIcon(const std::string &typeName)
{
    return std::find(TypesWithIcon.begin(), TypesWithIcon.end(), typeName) != TypesWithIcon.end();
}

void replaceDocument(std::unique_ptr<kxKernelInternal::SceneDocument> document)
{
    kxSelectionManager::clear();
    state().document = std::move(document);
    kxController::setModified(false);
    emit state().notifier.documentChanged();
}

int levelsBelow(osg::NodePtr node, const osg::NodePtr &root)
{
    int levels = 0;
    for (; node && node != root; node = node->getParent())
        ++levels;
    return levels;
}

/// From the root down; the node itself is not among them.
std::vector<osg::NodePtr> ancestorsOf(const osg::NodePtr &node)
{
    std::vector<osg::NodePtr> ancestors;
    for (osg::NodePtr parent = node->getParent(); parent; parent = parent->getParent())
        ancestors.push_back(parent);
    std::reverse(ancestors.begin(), ancestors.end());
    return ancestors;
}

bool isInPool(const osg::MaterialPtr &material, const osg::MaterialPoolPtr &pool)
{
    return pool && material && kxKernelInternal::SceneIndexes::the().materialUsage.isUsedBy(material, pool);
}

} // namespace

void kxScenegraph::newDocument()
{
    osg::UBRDFMaterial::setDefaultEnvironmentSource([] { return kxDefaultEnvironment::getDefault(); });
    replaceDocument(std::make_unique<kxKernelInternal::SceneDocument>());
}

void kxScenegraph::closeDocument()
{
    if (state().document)
        replaceDocument(nullptr);
}

osg::NodePtr kxScenegraph::getRoot()
{
    return state().document ? state().document->root() : osg::NodePtr();
}

osg::NodePtr kxScenegraph::getMaterialPoolNode()
{
    return state().document ? state().document->materialPoolNode() : osg::NodePtr();
}

osg::NodePtr kxScenegraph::getDefaultEnvironmentNode()
{
    return state().document ? state().document->defaultEnvironmentNode() : osg::NodePtr();
}

osg::NodePtr kxScenegraph::getCameraNode()
{
    return state().document ? state().document->cameraNode() : osg::NodePtr();
}

osg::NodePtr kxScenegraph::environmentGeometrySwitch()
{
    return state().document ? state().document->environmentGeometrySwitch() : osg::NodePtr();
}

osg::NodePtr kxScenegraph::getSceneplateRoot()
{
    return state().document ? state().document->sceneplateRoot() : osg::NodePtr();
}

std::vector<kxNodePtr> kxScenegraph::getAssetNodes(const osg::NodePtr &root)
{
    std::vector<kxNodePtr> nodes;
    osg::forEachNode(root, [&nodes](const osg::NodePtr &node) {
        if (osg::AssetAttachment::getAssetAttachment(node))
            nodes.push_back(node);
    });
    return nodes;
}

std::vector<kxNodePtr> kxScenegraph::getAssetNodes(const osg::NodePtr &root, const std::string &uuid, int depth)
{
    std::vector<kxNodePtr> nodes = getAssetNodes(root);
    std::erase_if(nodes, [&](const kxNodePtr &node) {
        return osg::AssetAttachment::getAssetAttachment(node)->getUuid() != uuid ||
               (depth >= 0 && levelsBelow(node, root) > depth);
    });
    return nodes;
}

std::vector<osg::NodePtr> kxScenegraph::getSelectedNodes()
{
    return kxSelectionManager::getSelectedNodes();
}

void kxScenegraph::removeAssetAttachments(const std::vector<osg::NodePtr> &roots, const std::string &uuid,
                                          bool announce)
{
    for (const osg::NodePtr &root : roots) {
        std::vector<kxNodePtr> nodes = getAssetNodes(root);
        if (!uuid.empty())
            nodes = getAssetNodes(root, uuid, -1);
        removeAssetReference(nodes);
    }
    if (announce)
        update(false);
}

void kxScenegraph::removeAssetReference(const std::vector<osg::NodePtr> &nodes)
{
    for (const osg::NodePtr &node : nodes)
        kxNodeUtils::removeAttachment(node, osg::AssetAttachment::getClassType());
}

osg::NodePtr kxScenegraph::findFirstEqualParent(const std::vector<kxNodePtr> &nodes)
{
    // From the root down to the parent; what all of them begin with is common.
    std::vector<osg::NodePtr> common;
    bool isFirst = true;
    for (const kxNodePtr &node : nodes) {
        if (!node)
            continue;
        const std::vector<osg::NodePtr> path = ancestorsOf(node);
        if (isFirst)
            common = path;
        const auto end = std::mismatch(common.begin(), common.end(), path.begin(), path.end()).first;
        common.erase(end, common.end());
        isFirst = false;
    }
    return common.empty() ? osg::NodePtr() : common.back();
}

osg::Matrix kxScenegraph::getToWorld(const osg::NodePtr &node)
{
    return node ? node->getToWorld() : osg::Matrix();
}

osg::MaterialPoolPtr kxScenegraph::getMaterialPool()
{
    return state().document ? state().document->materialPool() : osg::MaterialPoolPtr();
}

bool kxScenegraph::addToMaterialPool(const osg::MaterialPtr &material)
{
    const osg::MaterialPoolPtr pool = getMaterialPool();
    if (!pool || !material || isInPool(material, pool))
        return false;
    const osg::CPEditor edit(pool, osg::MaterialPool::MaterialsFieldMask);
    pool->editMaterials().push_back(material);
    return true;
}

bool kxScenegraph::removeFromMaterialPool(const osg::MaterialPtr &material)
{
    const osg::MaterialPoolPtr pool = getMaterialPool();
    if (!isInPool(material, pool))
        return false;
    const auto &materials = pool->getMaterials();
    const auto index = std::find(materials.begin(), materials.end(), material) - materials.begin();
    const osg::CPEditor edit(pool, osg::MaterialPool::MaterialsFieldMask);
    pool->editMaterials().erase(static_cast<std::size_t>(index));
    return true;
}

bool kxScenegraph::isUpdateEnabled()
{
    return state().updates.isEnabled();
}

void kxScenegraph::enableUpdate(bool enabled)
{
    state().updates.enable(enabled);
}

void kxScenegraph::update(bool immediately)
{
    if (immediately)
        state().updates.requestNow();
    else
        state().updates.requestLater();
}

QPixmap kxScenegraph::getMaterialTypeIcon(const osg::FieldContainerType *type, int size)
{
    for (const osg::TypeBase *candidate = type; candidate; candidate = candidate->getParent()) {
        const std::string name = candidate->getCName();
        if (hasIcon(name))
            return kxIconManager::get(QString::fromStdString("scenegraph/" + name + ".svg"), size);
    }
    return {};
}

kxScenegraphNotifier &kxScenegraph::notifier()
{
    return state().notifier;
}
