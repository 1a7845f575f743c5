// SPDX-License-Identifier: Apache-2.0
#include "PlainItem.h"

#include "Assets/kxAssetItemDocument.h"

PlainItem::PlainItem(kxAssetCategoryType category, const std::string &uuid)
{
    kxAssetItemDocument document;
    document.setAssetType(category);
    document.setAssetUUID(uuid);
    document.setAssetName("unnamed");
    kxAssetItem::readMetaData(document);
}

bool PlainItem::save(const QUrl &)
{
    return false;
}

void PlainItem::initFrom(osg::AttachmentContainerPtr container, const std::string &uuid, bool useAttachment)
{
    initUUID(container, uuid, useAttachment);
}

QString PlainItem::mimeType()
{
    return {};
}
