// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetsServiceImpl.h"

#include "Kernel/kxAssetsInterface.h"
#include "Kernel/kxController.h"
#include "Kernel/kxInterfaceFactory.h"
#include "Kernel/kxKernelRegister.h"
#include "Kernel/kxKernelService.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxMessage.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxTypeConverter.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"

#include <cstdint>
#include <set>
#include <string>

namespace {

const kxKernelRegister registration([] {
    auto *service = new kxAssetsServiceImpl; // registerType takes it over
    kxKernelServiceFactory::the().setService<kxAssetsService>(service);
    kxKernelServiceFactory::the().registerType(service);
});

/// Null for a node that is no asset, for null, and for a destroyed one.
osg::AssetAttachmentPtr assetOf(const kxdNodePtr &node)
{
    return osg::AssetAttachment::getAssetAttachment(kxTypeConverter::convertNode(node));
}

} // namespace

kxAssetsServiceImpl::kxAssetsServiceImpl(QObject *parent) : kxAssetsService(parent)
{
    const auto *kernel = qobject_cast<kxKernelService *>(kxKernelServiceFactory::the().getService("kxKernelService"));
    if (kernel)
        connect(kernel, &kxKernelService::ready, this, &kxBaseService::init);
}

kxAssetsServiceImpl::~kxAssetsServiceImpl() = default;

void kxAssetsServiceImpl::removeAssetReference(const std::vector<kxdNodePtr> &nodes)
{
    if (nodes.empty())
        return;
    kxScenegraph::removeAssetReference(kxTypeConverter::convertToKxNodes(nodes));
    emit assetsChanged();
}

QStringList kxAssetsServiceImpl::selectAssets(const std::vector<kxdNodePtr> &nodes)
{
    QStringList errors;
    bool clearsSelection = true;
    for (const kxdNodePtr &node : nodes) {
        const osg::AssetAttachmentPtr asset = assetOf(node);
        if (!asset)
            continue;
        const QString url = QString::fromStdString(asset->getUrl()); // the asset manager may delete the node
        kxMessage message;
        message.set("uuid", asset->getUuid());
        message.set("clearSelection", clearsSelection);
        kxController::call("selectAssetByUUID", message);
        if (message.get<bool>("found").value_or(false))
            clearsSelection = false;
        else
            errors.append(tr("Could not find asset.\nLast known storage location: %1.").arg(url));
    }
    return errors;
}

void kxAssetsServiceImpl::overwriteAssets(const std::vector<kxdNodePtr> &nodes)
{
    if (nodes.empty())
        return;
    std::vector<std::uint32_t> ids;
    for (const kxdNodePtr &node : nodes)
        if (node)
            ids.push_back(node->getObjectId());
    kxMessage message;
    message.set("containerIds", ids);
    kxController::call("overwriteAssets", message);
}

std::vector<kxdNodePtr> kxAssetsServiceImpl::findAssetNodes(const std::vector<kxdNodePtr> &nodes,
                                                            const kxdNodePtr &root)
{
    std::vector<kxdNodePtr> found;
    const osg::NodePtr top = kxTypeConverter::convertNode(root);
    for (const kxdNodePtr &node : nodes) {
        const osg::AssetAttachmentPtr asset = assetOf(node);
        if (!asset || !top)
            continue;
        for (const kxNodePtr &same : kxScenegraph::getAssetNodes(top, asset->getUuid(), -1))
            found.push_back(kxTypeConverter::convertNode(same));
    }
    return found;
}

void kxAssetsServiceImpl::markAssetsEdited(const std::vector<kxdNodePtr> &nodes)
{
    for (const kxdNodePtr &node : nodes)
        if (const osg::AssetAttachmentPtr asset = assetOf(node)) {
            const osg::CPEditor edit(asset, osg::AssetAttachment::UserEditedFieldMask);
            asset->setUserEdited(true);
        }
    emit assetsChanged();
}

void kxAssetsServiceImpl::queryAssetChanges(const std::vector<kxdNodePtr> &nodes)
{
    std::set<osg::AssetAttachmentPtr> assets;
    for (const kxdNodePtr &node : nodes)
        if (const osg::AssetAttachmentPtr asset = assetOf(node))
            assets.insert(asset);
    if (assets.empty())
        return;
    kxMessage message;
    message.set("assets", assets);
    kxController::call("queryAssetChanges", message);
    emit assetsChanged();
}

void kxAssetsServiceImpl::loadSceneplateAssets(const QStringList &uuids, const kxdNodePtr &parent)
{
    static auto *const assets = kxInterfaceFactory::the().get<kxAssetsInterface>();
    if (assets)
        assets->loadSceneplateAssets(kxTypeConverter::convertStringList(uuids), kxTypeConverter::convertNode(parent));
}
