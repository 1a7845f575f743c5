// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxSceneplateAssetItem.h"

#include "Assets/Internal/StandardOutput.h"
#include "Assets/kxAssetItemDocument.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxUrlManager.h"
#include "Kernel/kxKernelServiceFactory.h"
#include "Kernel/kxLog.h"
#include "Kernel/kxNodeService.h"
#include "Kernel/kxSceneplateService.h"
#include "Kernel/kxSceneplateUtils.h"
#include "Rendering/QImageConverter.h"
#include "SceneGraph/EditCP.h"

namespace {

constexpr unsigned RgbaFormat = 0x1908; // as OpenGL numbers it

} // namespace

kxSceneplateAssetItem::kxSceneplateAssetItem()
{
    setCategory(Sceneplate);
}

osg::NodePtr kxSceneplateAssetItem::loadNodeFromUUID(const std::string &uuid)
{
    kxAssetItem *found = kxAssetItemFactory::the().findItem(uuid);
    if (!found) {
        kxAssetsInternal::printLine("[loadNodeFromUUID] did not find sceneplate item with uuid '" + uuid + "'");
        return nullptr;
    }
    auto *item = dynamic_cast<kxSceneplateAssetItem *>(found);
    if (!item) {
        kxLog::error("CAST FAILS! %s", "loadNodeFromUUID");
        return nullptr;
    }
    item->loadNode();
    return item->getNode();
}

bool kxSceneplateAssetItem::save(const QUrl &url)
{
    if (!makeNodeValidForSave())
        return false;
    const kxUrlManager *manager = kxUrlManager::getUrlManager(url);
    if (!manager)
        return false;
    kxSceneplateUtils::getSceneplateRoot(); // so that a host that makes it on demand has it before a plate is written
    return store(*manager, url);
}

bool kxSceneplateAssetItem::readMetaData(const kxAssetItemDocument &document)
{
    if (!kxGeometrySceneplateCommon::readMetaData(document))
        return false;
    _sceneplateType = document.getSceneplateType();
    return true;
}

bool kxSceneplateAssetItem::writeMetaData(kxAssetItemDocument &document) const
{
    if (!kxGeometrySceneplateCommon::writeMetaData(document))
        return false;
    document.setSceneplateType(kxSceneplateUtils::getNodeType(getNode()));
    return true;
}

QVariant kxSceneplateAssetItem::data(int column, int role)
{
    if (column == kxAssetCategory::getTypeColumn() && (role == Qt::DisplayRole || role == Qt::ToolTipRole))
        return sceneplateTypeName();
    return kxGeometrySceneplateCommon::data(column, role);
}

QString kxSceneplateAssetItem::mimeType()
{
    return QStringLiteral("application/sarn-sceneplate-asset");
}

osg::ImagePtr kxSceneplateAssetItem::renderPreview(osg::NodePtr node)
{
    auto *plates = kxKernelServiceFactory::the().getService<kxSceneplateService>();
    auto *nodes = kxKernelServiceFactory::the().getService<kxNodeService>();
    if (!plates || !nodes)
        return nullptr;
    const QImage picture = plates->previewImage(nodes->nodeById(node ? node.getFieldContainerId() : 0));
    if (picture.isNull())
        return nullptr;
    osg::FCRef<osg::Image> image(osg::Image::create());
    QImageConverter::convertToOSGImage(picture, image.get());
    const osg::CPEditor edit(image.get(), osg::AllFieldMask);
    image->reformat(RgbaFormat, nullptr);
    return image.take();
}

void kxSceneplateAssetItem::setNode(const osg::NodePtr &node)
{
    kxGeometrySceneplateCommon::setNode(node);
    _sceneplateType = kxSceneplateUtils::getNodeType(node);
}

bool kxSceneplateAssetItem::makeNodeValidForSave()
{
    return static_cast<bool>(getNode());
}

QString kxSceneplateAssetItem::sceneplateTypeName() const
{
    switch (_sceneplateType) {
    case kxSceneplateTypes::Frontplate:
        return tr("Frontplate");
    case kxSceneplateTypes::Backplate:
        return tr("Backplate");
    case kxSceneplateTypes::Group:
        return tr("Group");
    case kxSceneplateTypes::Switch:
        return tr("Switch");
    }
    return tr("Unknown");
}

void kxSceneplateAssetItem::reset()
{
    kxAssetItem::reset(); // NOLINT(bugprone-parent-virtual-call): the class between has none of its own
    setCategory(Sceneplate);
    setNode(nullptr);
}
