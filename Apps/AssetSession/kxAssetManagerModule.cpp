// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxAssetManagerModule.h"

#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxEnvironmentMaterialAssetItem.h"
#include "Assets/kxEnvironmentNodeAssetItem.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Assets/kxSceneplateAssetItem.h"
#include "Kernel/kxController.h"
#include "Kernel/kxLog.h"
#include "Kernel/kxMessage.h"
#include "Kernel/kxMessageCodes.h"
#include "Kernel/kxModalQuestion.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSceneplateUtils.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/NameAttachment.h"

#include <QStringList>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <set>

namespace {

using Assets = std::set<osg::AssetAttachmentPtr>;

/// An item of the class that the asset is registered with.
std::unique_ptr<kxAssetItem> makeItemLike(kxAssetItem &registered)
{
    if (dynamic_cast<kxEnvironmentMaterialAssetItem *>(&registered))
        return std::make_unique<kxEnvironmentMaterialAssetItem>();
    if (dynamic_cast<kxMaterialAssetItem *>(&registered))
        return std::make_unique<kxMaterialAssetItem>();
    if (dynamic_cast<kxEnvironmentNodeAssetItem *>(&registered))
        return std::make_unique<kxEnvironmentNodeAssetItem>();
    if (dynamic_cast<kxSceneplateAssetItem *>(&registered))
        return std::make_unique<kxSceneplateAssetItem>();
    return std::make_unique<kxGeometryAssetItem>();
}

/// "" where it was saved.
QString overwriteOne(std::uint32_t id)
{
    const auto container = osg::AttachmentContainerPtr::dcast(osg::FieldContainerFactory::the().getContainer(id));
    const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::getAssetAttachment(container);
    if (!attachment)
        return kxAssetManagerModule::tr("An object that is no asset was not saved.");
    const QString name = QString::fromStdString(osg::getName(container));
    kxAssetItem *registered = kxAssetItemFactory::the().findItem(attachment->getUuid());
    if (!registered)
        return kxAssetManagerModule::tr("\"%1\" was not saved: its asset is not in an open library.").arg(name);
    const QUrl folder = registered->parentDirectoryUrl();
    const std::unique_ptr<kxAssetItem> item = makeItemLike(*registered);
    item->initFrom(container, attachment->getUuid(), true);
    if (item->save(folder))
        return {};
    return kxAssetManagerModule::tr("\"%1\" could not be saved in \"%2\".").arg(name, folder.toLocalFile());
}

/// How the scene's object differs from what is stored; "" where it does not.
QString differenceOf(const osg::AssetAttachmentPtr &attachment)
{
    kxAssetItem *item = kxAssetItemFactory::the().findItem(attachment->getUuid());
    if (!item)
        return kxAssetManagerModule::tr("%1: not in an open library; last seen in %2")
            .arg(QString::fromStdString(attachment->getUuid()),
                 QUrl(QString::fromStdString(attachment->getUrl())).toLocalFile());
    const QString name = QString::fromStdString(item->name());
    if (item->checksum() != attachment->getChecksum())
        return kxAssetManagerModule::tr("%1: the stored asset was changed").arg(name);
    if (attachment->getUserEdited())
        return kxAssetManagerModule::tr("%1: edited in the scene").arg(name);
    return {};
}

} // namespace

kxAssetManagerModule::kxAssetManagerModule()
{
    registerHandler("selectAssetByUUID", [this](kxMessage &message) { select(message); });
    registerHandler("overwriteAssets", [this](kxMessage &message) { overwrite(message); });
    registerHandler("queryAssetChanges", [this](kxMessage &message) { queryChanges(message); });
    registerHandler("loadSceneplateAsset", &kxAssetManagerModule::loadSceneplate);
}

kxAssetManagerModule::~kxAssetManagerModule() = default;

void kxAssetManagerModule::setSelection(const std::vector<std::string> &uuids)
{
    if (_selection == uuids)
        return;
    _selection = uuids;
    emit selectionChanged();
}

void kxAssetManagerModule::select(kxMessage &message)
{
    const std::string uuid = message.get<std::string>("uuid").value_or(std::string());
    const bool isFound = kxAssetItemFactory::the().findItem(uuid) != nullptr;
    message.set("found", isFound);
    if (!isFound)
        return;
    std::vector<std::string> selection;
    if (!message.get<bool>("clearSelection").value_or(true))
        selection = _selection;
    if (std::find(selection.begin(), selection.end(), uuid) == selection.end())
        selection.push_back(uuid);
    setSelection(selection);
}

QStringList kxAssetManagerModule::saveOver(const std::vector<std::uint32_t> &containerIds)
{
    QStringList failures;
    for (const std::uint32_t id : containerIds)
        if (const QString failure = overwriteOne(id); !failure.isEmpty()) {
            kxLog::error("%s", failure.toUtf8().constData());
            failures.append(failure);
        }
    return failures;
}

void kxAssetManagerModule::overwrite(kxMessage &message)
{
    const auto ids = message.get<std::vector<std::uint32_t>>("containerIds").value_or(std::vector<std::uint32_t>());
    const Overwriting overwriting = _overwriting ? _overwriting : saveOver; // a copy: it may be set anew meanwhile
    message.set("failures", overwriting(ids));
    emit assetsSaved();
}

void kxAssetManagerModule::queryChanges(kxMessage &message)
{
    std::vector<std::string> changed;
    QStringList lines;
    const Assets assets = message.get<Assets>("assets").value_or(Assets());
    for (const osg::AssetAttachmentPtr &attachment : assets)
        if (const QString difference = differenceOf(attachment); !difference.isEmpty()) {
            changed.push_back(attachment->getUuid());
            lines.append(difference);
        }
    message.set("changed", changed);
    lines.sort();
    kxModalQuestion::information(kxController::getMainWindow(), tr("Asset Manager"),
                                 lines.isEmpty() ? tr("All assets are as they are stored.") : lines.join('\n'));
}

void kxAssetManagerModule::loadSceneplate(kxMessage &message)
{
    const QString uuid = message.get<QString>("uuid").value_or(QString());
    const std::uint32_t parentId = message.get<std::uint32_t>("parentid").value_or(0);
    const osg::FCRef<osg::Node> plate(kxSceneplateAssetItem::loadNodeFromUUID(uuid.toStdString()));
    osg::NodePtr parent = kxNodeUtils::getNodeFromId(parentId);
    if (!parent)
        parent = kxSceneplateUtils::getSceneplateRoot();
    message.set("nodeid", plate && parent ? plate.get().getFieldContainerId() : 0U);
    if (!plate || !parent)
        return;
    {
        const osg::CPEditor edit(parent, osg::Node::ChildrenFieldMask);
        parent->addChild(plate);
    }
    kxController::setModified(true);
}

void kxAssetManagerModule::doReceive(const kxMessage &message)
{
    if (message.code() != kxMessageCodes::SceneViews)
        return;
    kxScenegraph::update(false);
    kxController::updateRender(false);
}
