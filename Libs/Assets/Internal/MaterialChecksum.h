// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxAssetCategory.h"

#include <QUrl>

#include <cstdint>

namespace kxAssetsInternal {

/// The checksum of the material asset stored in \a directory: of its first payload file or, without one, of what its
/// metadata says of the material. 0 when there is neither.
std::uint32_t materialChecksum(const QUrl &directory, kxAssetCategoryType category);

} // namespace kxAssetsInternal
