// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxGeometryAssetItem.h"

#include "Assets/Internal/GeometryPreview.h"
#include "Assets/Internal/StandardOutput.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxUrlManager.h"
#include "Kernel/kxController.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxModalQuestion.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxReferenceService.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxTypeConverter.h"
#include "SceneGraph/Transform3D.h"

using kxAssetsInternal::printLine;

kxGeometryAssetItem::kxGeometryAssetItem()
{
    setCategory(Geometry);
}

bool kxGeometryAssetItem::isValidAssetRoot(const osg::NodePtr &node)
{
    return node && node->getNChildren() > 0 && isOfType(node->getCore(), osg::Transform3D::getClassType());
}

osg::NodePtr kxGeometryAssetItem::loadNodeFromUUID(const std::string &uuid)
{
    kxAssetItem *found = kxAssetItemFactory::the().findItem(uuid);
    if (!found) {
        printLine("[loadNodeFromUUID] did not find item with uuid '" + uuid + "'");
        return nullptr;
    }
    auto *item = dynamic_cast<kxGeometryAssetItem *>(found);
    if (!item)
        return nullptr;
    item->loadNode();
    return item->getNode();
}

bool kxGeometryAssetItem::save(const QUrl &url)
{
    if (!makeNodeValidForSave())
        return false;
    const kxUrlManager *manager = kxUrlManager::getUrlManager(url);
    if (!manager)
        return false;
    const osg::NodePtr node = getNode();
    const std::uint32_t nodeId = node ? node.getFieldContainerId() : 0;
    std::vector<std::uint32_t> cloneIds; // the preview may run an event loop, in which nodes go
    std::vector<osg::NodePtr> clones;
    kxNodeUtils::getAllClonesInScenegraph(node, clones);
    cloneIds.reserve(clones.size());
    for (const osg::NodePtr &clone : clones)
        cloneIds.push_back(clone.getFieldContainerId());
    if (!store(*manager, url))
        return false;

    clones.clear();
    for (const std::uint32_t id : cloneIds)
        clones.push_back(kxNodeUtils::getNodeFromId(id));
    if (const osg::NodePtr saved = kxNodeUtils::getNodeFromId(nodeId))
        kxNodeUtils::syncCloneTrees(saved, clones);
    return true;
}

QString kxGeometryAssetItem::mimeType()
{
    return QStringLiteral("application/sarn-geometry-asset");
}

osg::ImagePtr kxGeometryAssetItem::renderPreview(osg::NodePtr node)
{
    return kxAssetsInternal::renderGeometryPreview(node, tr("Rendering asset preview image ..."));
}

/// False when the answer was to cancel.
bool kxGeometryAssetItem::removeReferences(const osg::NodePtr &node)
{
    auto *service = kxKernelServiceFactory::the().getService<kxReferenceService>();
    if (!service)
        return true;
    const auto references = service->referenceNodes(kxTypeConverter::convertNode(node));
    if (references.empty())
        return true;
    const auto answer = kxModalQuestion::warning(
        kxController::getMainWindow(), tr("Save Geometry Asset"),
        tr("You are attempting to add an asset containing references. References are not supported in assets. "
           "Continuing will add the asset to the Asset Manager, removing all references.  This action is not undoable. "
           "Select Ok to continue."),
        QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
    if (answer != QMessageBox::Ok)
        return false;
    for (const kxdReferenceNodePtr &reference : references)
        service->makeOrdinary(reference);
    return true;
}

bool kxGeometryAssetItem::makeAssetRoot(const osg::NodePtr &node)
{
    const std::weak_ptr<const void> alive = life();
    const auto answer =
        kxModalQuestion::warning(kxController::getMainWindow(), tr("Asset Manager"),
                                 QString::fromUtf8(kxNodeUtils::getName(node).c_str()) + QStringLiteral(":\n") +
                                     tr("The node to be saved does not have a valid Asset Root node.\nCreate one?"),
                                 QMessageBox::Yes | QMessageBox::Cancel, QMessageBox::Yes);
    if (answer != QMessageBox::Yes || alive.expired())
        return false;
    osg::NodePtr root = getNode(); // it may be gone by now
    if (!root)
        return false;
    insertGeometryAssetRoot(root);
    kxNodeUtils::setName(root, name(), true, nullptr);
    setNodeReference(root.getFieldContainerId());
    kxScenegraph::update(false);
    return true;
}

bool kxGeometryAssetItem::makeNodeValidForSave()
{
    const std::weak_ptr<const void> alive = life();
    osg::NodePtr node = getNode();
    if (!node || !removeReferences(node) || alive.expired())
        return false;
    node = getNode();
    return isValidAssetRoot(node) || (node && makeAssetRoot(node));
}

void kxGeometryAssetItem::reset()
{
    kxAssetItem::reset(); // NOLINT(bugprone-parent-virtual-call): the class between has none of its own
    setCategory(Geometry);
    setNodeReference(0);
}
