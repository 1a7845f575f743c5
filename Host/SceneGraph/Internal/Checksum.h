// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace osg {

/// The CRC-64 (ECMA-182, reflected) of \a bytes; \a before is that of the bytes in front of them.
std::uint64_t checksumOf(std::span<const std::byte> bytes, std::uint64_t before = 0);

} // namespace osg
