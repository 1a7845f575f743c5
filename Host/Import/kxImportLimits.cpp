// SPDX-License-Identifier: Apache-2.0
#include "Import/kxImportLimits.h"

#include <unistd.h>

#include <algorithm>

namespace {

constexpr std::uint64_t LeastMemory = std::uint64_t{2} << 30;
constexpr std::chrono::milliseconds LeastTime{60'000};
// A day is longer than anybody waits; it also keeps the sum in range whatever the size of the file.
constexpr std::uint64_t MaxExtraSeconds = 86'400;

std::uint64_t machineMemory()
{
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    return pages > 0 && pageSize > 0 ? static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize) : 0;
}

} // namespace

kxImportLimits kxImportLimits::resolved(std::uint64_t fileSize) const
{
    kxImportLimits limits = *this;
    if (limits.memory == 0)
        limits.memory = std::max(machineMemory() / 2, LeastMemory);
    if (limits.time.count() <= 0)
        limits.time = LeastTime + std::chrono::seconds(std::min(fileSize >> 20, MaxExtraSeconds));
    return limits;
}
