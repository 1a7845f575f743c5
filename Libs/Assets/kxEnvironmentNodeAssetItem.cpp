// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxEnvironmentNodeAssetItem.h"

#include "Assets/Internal/NodeLoading.h"
#include "Assets/Internal/StandardOutput.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxMultipleEnvironmentsDialog.h"
#include "Assets/kxUrlManager.h"
#include "Kernel/kxController.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxIconManager.h"
#include "Kernel/kxMaterialTags.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxModalQuestion.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/UEnvironmentSwitchMaterial.h"

#include <QPainter>
#include <QPixmap>

#include <cmath>
#include <set>

using kxAssetsInternal::NodeHold;
using kxAssetsInternal::NodeKind;
using kxAssetsInternal::printLine;

namespace {

constexpr const char *MarkerKey = "EnvironmentAssetMaterial";
constexpr const char *MarkerValue = "IsDefaultEnvironmentSwitchChild";

void hangBelowRoot(const osg::NodePtr &node)
{
    const osg::NodePtr root = kxScenegraph::getRoot();
    if (!root || node->getParent())
        return;
    const osg::CPEditor edit(root, osg::Node::ChildrenFieldMask);
    root->addChild(node);
}

/// Nodes that use the chosen material follow the default switch from now on.
void followDefaultSwitch(const osg::MaterialPtr &material, const osg::NodePtr &node)
{
    const osg::MaterialPtr chooser = kxDefaultEnvironment::getSwitch();
    for (const osg::NodePtr &user : kxMaterials::getNodesWithMaterial(material, node))
        kxNodeUtils::setMaterial(user, chooser, false, true);
}

QPixmap fitted(const QPixmap &icon, const QPixmap &picture)
{
    const auto share = [](int length) { return static_cast<int>(std::lround(0.75 * length)); };
    return icon.height() > share(picture.height()) ? icon.scaled(share(picture.width()), share(picture.height()),
                                                                 Qt::KeepAspectRatio, Qt::SmoothTransformation)
                                                   : icon;
}

} // namespace

kxEnvironmentNodeAssetItem::kxEnvironmentNodeAssetItem()
{
    setCategory(Environment);
}

osg::NodePtr kxEnvironmentNodeAssetItem::loadEnvironmentNodeFromUUID(const std::string &uuid)
{
    kxAssetItem *found = kxAssetItemFactory::the().findItem(uuid);
    if (!found) {
        printLine("[Env::loadEnvironmentNodeFromUUID] did not find item with uuid '" + uuid + "'");
        return nullptr;
    }
    auto *item = dynamic_cast<kxEnvironmentNodeAssetItem *>(found);
    if (!item)
        return nullptr;
    item->loadEnvironmentNode(true);
    // The question that loading may have asked ran an event loop.
    item = dynamic_cast<kxEnvironmentNodeAssetItem *>(kxAssetItemFactory::the().findItem(uuid));
    return item ? item->getEnvironmentNode() : osg::NodePtr();
}

bool kxEnvironmentNodeAssetItem::save(const QUrl &url)
{
    const kxUrlManager *manager = kxUrlManager::getUrlManager(url);
    if (!manager)
        return false;
    const std::string id = uuid();
    const bool wasRegistered = kxAssetItemFactory::the().findItem(id) != nullptr;
    if (!manager->saveEnvironmentNodeAsset(url, this))
        return false;

    // Removing the registered item deletes it, and it may be this one: what follows uses nothing of it unless it lives.
    const std::weak_ptr<const void> alive = life();
    const QUrl directory = directoryUrl();
    const kxAssetCategoryType itsCategory = category();
    const std::uint32_t nodeId = _nodeId;
    kxAssetItem *registered = kxAssetItemFactory::the().findItem(id);
    if (wasRegistered && registered && !manager->removeOldItemDirectory(registered, this))
        return false;
    manager->collectItems(directory, itsCategory, nullptr);
    const osg::NodePtr node = kxNodeUtils::getNodeFromId(nodeId);
    if (alive.expired())
        writeAssetAttachment(node, id, itsCategory, directory, checksumOf(directory, itsCategory));
    else
        updateAssetAttachment(node);
    return true;
}

void kxEnvironmentNodeAssetItem::addOverlayIcon(QPixmap &pixmap) const
{
    const QPixmap icon = fitted(kxIconManager::get(QStringLiteral("scenegraph/Skydome.svg")), pixmap);
    if (icon.isNull() || pixmap.isNull())
        return;
    QPainter painter(&pixmap);
    painter.drawPixmap(0, pixmap.height() - icon.height() - 1, icon);
}

void kxEnvironmentNodeAssetItem::initFrom(osg::AttachmentContainerPtr container, const std::string &uuid,
                                          bool useAttachment)
{
    reset();
    const osg::NodePtr node = osg::NodePtr::dcast(container);
    if (!node || !isOfType(node->getCore(), osg::Environment::getClassType()))
        return;
    _nodeId = node.getFieldContainerId();
    setName(kxNodeUtils::getName(node));
    initUUID(node, uuid, useAttachment);
}

QVariant kxEnvironmentNodeAssetItem::data(int column, int role)
{
    if (column == kxAssetCategory::getTypeColumn() && (role == Qt::DisplayRole || role == Qt::ToolTipRole))
        return tr("Environment Node");
    return kxAssetItem::data(column, role);
}

QString kxEnvironmentNodeAssetItem::mimeType()
{
    return QStringLiteral("application/sarn-environment-asset");
}

void kxEnvironmentNodeAssetItem::reset()
{
    kxAssetItem::reset();
    setCategory(Environment);
    _nodeId = 0;
}

osg::NodePtr kxEnvironmentNodeAssetItem::getEnvironmentNode() const
{
    return _nodeId == 0 ? osg::NodePtr() : kxNodeUtils::getNodeFromId(_nodeId);
}

void kxEnvironmentNodeAssetItem::tagMaterials(const osg::NodePtr &node)
{
    std::set<osg::MaterialPtr> materials;
    kxMaterials::getMaterialsRecursive(node, materials, false);
    int environments = 0;
    for (const osg::MaterialPtr &material : materials) {
        printLine("[loadEnvironmentNode] loaded mat: " + kxMaterials::getName(material));
        environments += osg::UEnvironmentMaterialPtr::dcast(material) ? 1 : 0;
        kxMaterialTags::addTag(material, kxAssetCategory::getTagPrefix(Environment) + name());
    }
    printLine("[loadEnvironmentNode] #loaded env mats " + std::to_string(environments));
}

kxEnvironmentNodeAssetItem::Choice kxEnvironmentNodeAssetItem::choose(const osg::NodePtr &node,
                                                                      osg::FCRef<osg::UEnvironmentMaterial> &material)
{
    std::set<osg::UEnvironmentMaterialPtr> candidates;
    for (const osg::MaterialPtr &used : kxMaterials::getMaterials(node)) {
        const auto environment = osg::UEnvironmentMaterialPtr::dcast(used);
        if (!environment)
            continue;
        candidates.insert(environment);
        if (kxMaterials::hasValuePair(environment, MarkerKey, MarkerValue)) {
            kxMaterials::removeKey(environment, MarkerKey, true);
            material = osg::FCRef<osg::UEnvironmentMaterial>(environment);
            return Choice::Found;
        }
    }
    if (candidates.empty())
        return Choice::None;
    if (candidates.size() == 1) {
        material = osg::FCRef<osg::UEnvironmentMaterial>(*candidates.begin());
        return Choice::Found;
    }
    kxMultipleEnvironmentsGUII dialog(kxController::getMainWindow());
    dialog.fill(candidates);
    if (kxModalQuestion::exec(dialog) != QDialog::Accepted)
        return Choice::Cancelled;
    material = osg::FCRef<osg::UEnvironmentMaterial>(dialog.selectedMaterial());
    return Choice::PickedByUser;
}

bool kxEnvironmentNodeAssetItem::loadEnvironmentNode(bool makeCurrent)
{
    const QUrl directory = directoryUrl();
    const kxUrlManager *manager = directory.isValid() ? kxUrlManager::getUrlManager(directory) : nullptr;
    osg::NodePtr node;
    if (!manager || !kxAssetsInternal::loadWithoutRendering(*manager, directory, NodeKind::Node, node) || !node)
        return false;
    const NodeHold loaded(node);
    _nodeId = node.getFieldContainerId();
    tagMaterials(node);

    Choice choice = Choice::None;
    if (kxScenegraph::environmentGeometrySwitch() && kxDefaultEnvironment::getSwitch()) {
        osg::FCRef<osg::UEnvironmentMaterial> material;
        const std::weak_ptr<const void> alive = life();
        choice = choose(node, material);
        if (alive.expired())
            return false; // the question ran an event loop, in which somebody deleted this item
        if (choice == Choice::Cancelled) {
            _nodeId = 0;
            return false;
        }
        if (material && kxController::addToDefaultEnvironment(material.get(), node, makeCurrent))
            followDefaultSwitch(material.get(), node);
    }
    hangBelowRoot(node);
    printLine("[loadEnvironmentNode] pre update scenegraph");
    kxScenegraph::update(true);
    printLine("[loadEnvironmentNode] post update scenegraph");
    const osg::AssetAttachmentPtr attachment = updateAssetAttachment(node);
    if (choice == Choice::PickedByUser && attachment) {
        const osg::CPEditor edit(attachment, osg::AssetAttachment::UserEditedFieldMask);
        attachment->setUserEdited(true);
    }
    printLine("[loadEnvironmentNode] updated attachment");
    kxController::setModified(true);
    return true;
}
