// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <set>

class QUrl;
class kxAssetItem;
class kxUrlManager;

namespace kxAssetsInternal {

/// Tells the item that was registered for the metadata in \a file where it lies and since when, and adds it to \a items.
/// False, and nothing is done, where nothing was registered.
bool placeCollected(kxAssetItem *item, kxUrlManager &manager, const QUrl &file, std::set<kxAssetItem *> &items);

} // namespace kxAssetsInternal
