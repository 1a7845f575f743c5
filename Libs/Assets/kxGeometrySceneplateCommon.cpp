// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxGeometrySceneplateCommon.h"

#include "Assets/Internal/NodeLoading.h"
#include "Assets/Internal/StandardOutput.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Assets/kxUrlManager.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxLog.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxUberMaterialUtils.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Transform3D.h"
#include "SceneGraph/UberMaterial.h"

using kxAssetsInternal::NodeHold;
using kxAssetsInternal::NodeKind;

void kxGeometrySceneplateCommon::initFrom(osg::AttachmentContainerPtr container, const std::string &uuid,
                                          bool useAttachment)
{
    reset();
    const osg::NodePtr node = osg::NodePtr::dcast(container);
    if (!node)
        return;
    setNode(node);
    setName(kxNodeUtils::getName(node));
    initUUID(node, uuid, useAttachment);
}

QVariant kxGeometrySceneplateCommon::data(int column, int role)
{
    if (column == kxAssetCategory::getTypeColumn() && (role == Qt::DisplayRole || role == Qt::ToolTipRole))
        return tr("Node");
    return kxAssetItem::data(column, role);
}

void kxGeometrySceneplateCommon::setNode(const osg::NodePtr &node)
{
    _nodeId = node ? node.getFieldContainerId() : 0;
}

osg::NodePtr kxGeometrySceneplateCommon::getNode() const
{
    return _nodeId == 0 ? osg::NodePtr() : kxNodeUtils::getNodeFromId(_nodeId);
}

bool kxGeometrySceneplateCommon::loadNode()
{
    const kxUrlManager *manager = directoryUrl().isValid() ? kxUrlManager::getUrlManager(directoryUrl()) : nullptr;
    if (!manager)
        return false;
    osg::NodePtr root;
    const NodeKind kind = category() == Sceneplate ? NodeKind::Sceneplate : NodeKind::Node;
    const bool isLoaded = kxAssetsInternal::loadWithoutRendering(*manager, directoryUrl(), kind, root);
    if (category() == Undefined) {
        kxLog::error("Bad category in %s", "loadNode");
        const osg::FCRef<osg::Node> unwanted(root);
        return false;
    }
    if (!isLoaded || !root)
        return false;

    const NodeHold loaded(root);
    if (category() == Geometry && !kxGeometryAssetItem::isValidAssetRoot(root))
        insertGeometryAssetRoot(root);
    const NodeHold wrapped(root);
    if (!uuid().empty()) // which would mean all of them
        kxScenegraph::removeAssetAttachments({root}, uuid(), false);
    kxNodeUtils::removeInvalidSynchronizations(root);
    setDefaultBRDFEnvironmentForOverrideMaterials(root);
    wrapNestedAssets(root);
    setNode(root);
    updateAssetAttachment(root);
    kxNodeUtils::setName(root, name(), true, nullptr);
    kxAssetsInternal::printLine("[loadNode] updated attachment");
    return true;
}

bool kxGeometrySceneplateCommon::store(const kxUrlManager &manager, const QUrl &url)
{
    const std::string id = uuid();
    const bool wasRegistered = kxAssetItemFactory::the().findItem(id) != nullptr;
    if (!manager.saveSceneNodeAsset(url, this))
        return false;

    // Removing the registered item deletes it, and it may be this one: what follows uses nothing of it unless it lives.
    const std::weak_ptr<const void> alive = life();
    const QUrl directory = directoryUrl();
    const kxAssetCategoryType itsCategory = category();
    const std::uint32_t nodeId = _nodeId;
    kxAssetItem *registered = kxAssetItemFactory::the().findItem(id);
    if (wasRegistered && registered && !manager.removeOldItemDirectory(registered, this))
        return false;
    manager.collectItems(directory, itsCategory, nullptr);
    const osg::NodePtr node = kxNodeUtils::getNodeFromId(nodeId);
    if (alive.expired())
        writeAssetAttachment(node, id, itsCategory, directory, checksumOf(directory, itsCategory));
    else
        updateAssetAttachment(node);
    return true;
}

/// Every geometry asset within another one gets a root of its own.
void kxGeometrySceneplateCommon::wrapNestedAssets(const osg::NodePtr &root)
{
    for (const kxNodePtr &nested : kxScenegraph::getAssetNodes(root)) {
        if (nested == root || category() != Geometry || kxGeometryAssetItem::isValidAssetRoot(nested))
            continue;
        osg::NodePtr wrapper = nested;
        if (insertGeometryAssetRoot(wrapper))
            setNodeNameToItemName(wrapper);
    }
}

bool kxGeometrySceneplateCommon::insertGeometryAssetRoot(osg::NodePtr &node)
{
    if (!node)
        return false;
    const osg::NodePtr root = osg::Node::create();
    {
        const osg::CPEditor edit(root, osg::Node::CoreFieldMask);
        root->setCore(osg::Transform3D::create());
    }
    const NodeHold heldRoot(root);
    kxNodeUtils::setName(root, "Asset", true, nullptr);
    {
        const NodeHold held(node);
        if (const osg::NodePtr parent = node->getParent()) {
            const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
            parent->replaceChildBy(node, root);
        }
        const osg::CPEditor edit(root, osg::Node::ChildrenFieldMask);
        root->addChild(node);
    }
    if (const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::getAssetAttachment(node)) {
        {
            const osg::CPEditor edit(root, osg::AttachmentContainer::AttachmentsFieldMask);
            root->addAttachment(attachment);
        }
        const osg::CPEditor edit(node, osg::AttachmentContainer::AttachmentsFieldMask);
        node->removeAttachment(osg::AssetAttachment::getClassType());
    }
    node = root;
    return true;
}

void kxGeometrySceneplateCommon::setNodeNameToItemName(const osg::NodePtr &node)
{
    const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::getAssetAttachment(node);
    kxAssetItem *item = attachment ? kxAssetItemFactory::the().findItem(attachment->getUuid()) : nullptr;
    if (item)
        kxNodeUtils::setName(node, item->name(), true, nullptr);
}

void kxGeometrySceneplateCommon::setDefaultBRDFEnvironmentForOverrideMaterials(const osg::NodePtr &root)
{
    const osg::MaterialPtr environment = kxDefaultEnvironment::getDefault();
    if (!environment)
        return;
    std::set<osg::MaterialPtr> materials;
    kxMaterials::getOverrideMaterialsRecursive(root, materials, false);
    for (const osg::MaterialPtr &material : materials) {
        const auto uber = osg::UberMaterialPtr::dcast(material);
        for (const osg::UBRDFMaterialPtr &layer : kxUberMaterialUtils::getBRDFMaterials(uber)) {
            if (!layer || osg::MaterialPtr(layer) == environment)
                continue;
            const osg::CPEditor edit(layer, osg::UBRDFMaterial::EnvironmentFieldMask);
            layer->setEnvironment(environment);
        }
    }
}
