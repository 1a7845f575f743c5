// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Internal/Compression.h"

#include <zstd.h>

#include <algorithm>

namespace osg {

namespace {

constexpr int Level = 1; // higher ones cost several times the time and save a few percent of vertices and pixels

} // namespace

std::vector<std::byte> compressed(std::span<const std::byte> bytes)
{
    std::vector<std::byte> block(ZSTD_compressBound(bytes.size()));
    const std::size_t size = ZSTD_compress(block.data(), block.size(), bytes.data(), bytes.size(), Level);
    const std::size_t paddedSize = std::max(size, bytes.size() / MaxCompressionRatio);
    if (ZSTD_isError(size) != 0 || paddedSize >= bytes.size())
        return {};
    block.resize(size);
    block.resize(paddedSize);
    block.shrink_to_fit();
    return block;
}

bool decompress(std::span<const std::byte> block, std::span<std::byte> target)
{
    const std::size_t frame = ZSTD_findFrameCompressedSize(block.data(), block.size());
    if (ZSTD_isError(frame) != 0)
        return false;
    const std::size_t size = ZSTD_decompress(target.data(), target.size(), block.data(), frame);
    return ZSTD_isError(size) == 0 && size == target.size();
}

} // namespace osg
