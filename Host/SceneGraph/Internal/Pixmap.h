// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Image.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace osg {

inline constexpr std::uint32_t MaxImageSide = 65535;
inline constexpr std::uint32_t MaxImageChannels = 4;
/// What a picture from a file may take; sixteen thousand pixels square in float RGBA.
inline constexpr std::uint64_t MaxPictureBytes = std::uint64_t{4} << 30;

/// A picture outside the scene graph; rows from the bottom up.
struct Pixmap
{
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t channels = 0;
    PixelType type = PixelType::UInt8;
    std::vector<std::uint8_t> pixels;
};

/// A picture that somebody else holds.
struct PixmapView
{
    std::uint32_t width;
    std::uint32_t height;
    std::uint32_t channels;
    PixelType type;
    std::span<const std::uint8_t> pixels;
};

/// 0 for an unknown type.
std::size_t bytesPerChannel(PixelType type);

/// None where a size, the channels or the type is out of range.
std::optional<std::uint64_t> pictureBytes(std::uint32_t width, std::uint32_t height, std::uint32_t channels,
                                          PixelType type);

/// The picture with these channels (1 to 4): grey spreads or is the luminance, missing alpha is opaque.
/// Expects a picture whose pixels are all there.
Pixmap withChannels(const PixmapView &picture, std::uint32_t channels);

float halfToFloat(const std::uint8_t *bits);

} // namespace osg
