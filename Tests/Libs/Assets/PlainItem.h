// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxAssetItem.h"

/// The least that an item is: what the base does, with what it keeps for its subclasses made public.
class PlainItem : public kxAssetItem
{
public:
    PlainItem() = default;
    explicit PlainItem(kxAssetCategoryType category, const std::string &uuid = {});

    bool save(const QUrl &url) override;
    void initFrom(osg::AttachmentContainerPtr container, const std::string &uuid, bool useAttachment) override;
    QString mimeType() override;

    using kxAssetItem::generateUUID;
    using kxAssetItem::getUUIDFromString;
    using kxAssetItem::initUUID;
    using kxAssetItem::reset;
    using kxAssetItem::setName;
    using kxAssetItem::updateAssetAttachment;
};
