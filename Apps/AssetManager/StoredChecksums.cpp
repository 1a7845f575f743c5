// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/StoredChecksums.h"

#include "AssetManager/SilentDrives.h"
#include "Assets/kxAssetItem.h"

#include <QUrl>

#include <utility>

StoredChecksums &StoredChecksums::the()
{
    static StoredChecksums one;
    return one;
}

std::uint32_t StoredChecksums::of(kxAssetItem &item, std::uint32_t otherwise)
{
    const std::string uuid = item.uuid();
    if (!SilentDrives::the().hold(item.directoryUrl().toLocalFile()))
        return _last[uuid] = item.checksum();
    _isUnanswered = true;
    const auto known = _last.find(uuid);
    return known == _last.end() ? otherwise : known->second;
}

bool StoredChecksums::takeUnanswered()
{
    return std::exchange(_isUnanswered, false);
}
