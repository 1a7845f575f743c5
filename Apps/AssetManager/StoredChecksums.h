// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <string>

class kxAssetItem;

/// The checksums of what is stored of assets; of those whose drive does not answer, what they were last. Main thread only.
class StoredChecksums
{
public:
    static StoredChecksums &the();

    /// \a otherwise where nobody knows it yet.
    std::uint32_t of(kxAssetItem &item, std::uint32_t otherwise);
    /// Whether some drive was not asked since this was called last.
    bool takeUnanswered();

private:
    StoredChecksums() = default;

    std::map<std::string, std::uint32_t> _last; ///< by UUID
    bool _isUnanswered = false;
};
