// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Import/ImportExport.h"

#include <chrono>
#include <cstdint>

/// What one import may use up; a parser that wants more is stopped, and the import fails.
struct KX_IMPORT_EXPORT kxImportLimits
{
    /// Bytes; 0: half of the machine's memory, but at least 2 GiB.
    std::uint64_t memory = 0;
    /// 0: one minute, and one second more for each MiB of the file.
    std::chrono::milliseconds time{0};

    /// The same with numbers in place of zeros.
    kxImportLimits resolved(std::uint64_t fileSize) const;
};
