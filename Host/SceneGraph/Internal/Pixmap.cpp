// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Internal/Pixmap.h"

#include <half.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstring>

namespace osg {

namespace {

/// One stored value of each type, seen as a number.
struct UInt8Channel
{
    using Stored = std::uint8_t;
    static constexpr Stored opaque = 255;
    static float number(Stored value) { return static_cast<float>(value); }
    static Stored stored(float number) { return static_cast<Stored>(std::lround(number)); }
};

struct HalfChannel
{
    using Stored = std::uint16_t;
    static constexpr Stored opaque = 0x3C00;
    static float number(Stored value)
    {
        half number;
        number.setBits(value);
        return number;
    }
    static Stored stored(float number) { return half(number).bits(); }
};

struct FloatChannel
{
    using Stored = float;
    static constexpr Stored opaque = 1.0F;
    static float number(Stored value) { return value; }
    static Stored stored(float number) { return number; }
};

template <class Channel> typename Channel::Stored luminance(const std::array<typename Channel::Stored, 4> &rgb)
{
    // Equal channels stay what they are, bit for bit.
    if (std::memcmp(&rgb[0], &rgb[1], sizeof rgb[0]) == 0 && std::memcmp(&rgb[1], &rgb[2], sizeof rgb[0]) == 0)
        return rgb[0];
    return Channel::stored(0.2126F * Channel::number(rgb[0]) + 0.7152F * Channel::number(rgb[1]) +
                           0.0722F * Channel::number(rgb[2]));
}

template <class Channel> void convert(const PixmapView &picture, Pixmap &target)
{
    using Stored = typename Channel::Stored;
    const bool isGrey = picture.channels <= 2;
    const bool hasAlpha = picture.channels % 2 == 0;
    const bool toGrey = target.channels <= 2;
    const bool toAlpha = target.channels % 2 == 0;
    const std::size_t count = std::size_t{picture.width} * picture.height;
    const std::uint8_t *from = picture.pixels.data();
    std::uint8_t *to = target.pixels.data();

    for (std::size_t i = 0; i < count; ++i) {
        std::array<Stored, 4> in{};
        std::memcpy(in.data(), from, picture.channels * sizeof(Stored));
        const Stored alpha = hasAlpha ? in[picture.channels - 1] : Channel::opaque;
        if (isGrey)
            in[1] = in[2] = in[0];
        if (toGrey)
            in[0] = luminance<Channel>(in);
        if (toAlpha)
            in[target.channels - 1] = alpha;
        std::memcpy(to, in.data(), target.channels * sizeof(Stored));
        from += picture.channels * sizeof(Stored);
        to += target.channels * sizeof(Stored);
    }
}

} // namespace

std::size_t bytesPerChannel(PixelType type)
{
    switch (type) {
    case PixelType::UInt8:
        return 1;
    case PixelType::Half:
        return 2;
    case PixelType::Float:
        return 4;
    }
    return 0;
}

std::optional<std::uint64_t> pictureBytes(std::uint32_t width, std::uint32_t height, std::uint32_t channels,
                                          PixelType type)
{
    if (width > MaxImageSide || height > MaxImageSide || channels > MaxImageChannels || bytesPerChannel(type) == 0)
        return std::nullopt;
    return std::uint64_t{width} * height * channels * bytesPerChannel(type);
}

Pixmap withChannels(const PixmapView &picture, std::uint32_t channels)
{
    Pixmap target{picture.width, picture.height, channels, picture.type, {}};
    target.pixels.resize(std::size_t{picture.width} * picture.height * channels * bytesPerChannel(picture.type));
    switch (picture.type) {
    case PixelType::UInt8:
        convert<UInt8Channel>(picture, target);
        break;
    case PixelType::Half:
        convert<HalfChannel>(picture, target);
        break;
    case PixelType::Float:
        convert<FloatChannel>(picture, target);
        break;
    }
    return target;
}

float halfToFloat(const std::uint8_t *bits)
{
    std::uint16_t value = 0;
    std::memcpy(&value, bits, sizeof value);
    return HalfChannel::number(value);
}

} // namespace osg
