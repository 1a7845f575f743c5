// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/CollectedItem.h"

#include "Assets/kxAssetItem.h"
#include "Assets/kxUrlManager.h"

namespace kxAssetsInternal {

bool placeCollected(kxAssetItem *item, kxUrlManager &manager, const QUrl &file, std::set<kxAssetItem *> &items)
{
    if (!item)
        return false;
    item->setDirectoryUrl(manager.getDirectoryUrl(file));
    item->setLastModified(manager.lastModified(file));
    items.insert(item);
    return true;
}

} // namespace kxAssetsInternal
