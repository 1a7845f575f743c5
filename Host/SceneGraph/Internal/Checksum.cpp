// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Internal/Checksum.h"

#include <isa-l.h>

namespace osg {

std::uint64_t checksumOf(std::span<const std::byte> bytes, std::uint64_t before)
{
    if (bytes.empty())
        return before;
    return crc64_ecma_refl(before, reinterpret_cast<const unsigned char *>(bytes.data()), bytes.size());
}

} // namespace osg
