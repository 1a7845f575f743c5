// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace osg {

/// A compressed block is never shorter than this part of its content: one that could be is filled up with zeros behind
/// the compressed frame. So a file's length bounds the memory that reading it takes.
inline constexpr std::uint64_t MaxCompressionRatio = 64;

/// True where a block of \a storedSize bytes may hold \a size.
constexpr bool isPlausibleCompression(std::uint64_t storedSize, std::uint64_t size)
{
    return size / MaxCompressionRatio <= storedSize;
}

/// The bytes as one zstd frame; empty when that would not be shorter.
std::vector<std::byte> compressed(std::span<const std::byte> bytes);

/// Fills \a target exactly; false when the block is damaged or holds less or more.
bool decompress(std::span<const std::byte> block, std::span<std::byte> target);

} // namespace osg
