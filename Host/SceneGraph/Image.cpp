// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Image.h"

#include "SceneGraph/AtomicFile.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Internal/Checksum.h"
#include "SceneGraph/Internal/ImageCodecs.h"
#include "SceneGraph/Internal/Pixmap.h"
#include "SceneGraph/Internal/PlainPicture.h"
#include "SceneGraph/Internal/VifFormat.h"
#include "SceneGraph/SceneLog.h"

#include <array>
#include <cstring>
#include <limits>
#include <utility>

namespace osg {

OSG_CONTAINER_SOURCE(Image)

namespace {

constexpr FieldMask PictureFields = Image::WidthFieldMask | Image::HeightFieldMask | Image::ChannelsFieldMask |
                                    Image::DataTypeFieldMask | Image::PixelsFieldMask;

/// In lower case, without the dot; "" where there is none.
std::string extensionOf(const std::string &path)
{
    const std::size_t slash = path.rfind('/');
    const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    const std::size_t dot = name.rfind('.');
    std::string extension = dot == std::string::npos ? "" : name.substr(dot + 1);
    for (char &c : extension)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return extension;
}

PixmapView viewOf(const Image &image)
{
    return {image.getWidth(), image.getHeight(), image.getChannels(), image.pixelType(), image.getPixels().values()};
}

void fill(Image &image, Pixmap &&picture)
{
    const CPEditor edit(Image::Ptr(&image), PictureFields);
    image.setWidth(picture.width);
    image.setHeight(picture.height);
    image.setChannels(picture.channels);
    image.setDataType(static_cast<std::uint32_t>(picture.type));
    image.editPixels().values() = std::move(picture.pixels);
}

Result<Pixmap> readForeign(const std::string &path, const std::string &extension)
{
    if (std::optional<Pixmap> plain = readPlainPicture(path))
        return std::move(*plain);
    const Result<const ImageCodecs *> codecs = ImageCodecs::load();
    if (!codecs)
        return Failure{codecs.reason()};
    return codecs.value()->read(path, extension);
}

Result<void> writeForeign(const std::string &path, const std::string &extension, const PixmapView &picture)
{
    const Result<const ImageCodecs *> codecs = ImageCodecs::load();
    if (!codecs)
        return Failure{codecs.reason()};
    const Result<ImageCodecs::Bytes> bytes = codecs.value()->encode(extension, picture);
    if (!bytes)
        return Failure{bytes.reason()};
    std::string error;
    if (!writeFileAtomically(path, bytes.value().data(), bytes.value().size(), error))
        return Failure{error};
    return {};
}

std::uint32_t channelsOf(std::uint32_t format)
{
    switch (format) {
    case Image::Luminance:
        return 1;
    case Image::LuminanceAlpha:
        return 2;
    case Image::Rgb:
        return 3;
    case Image::Rgba:
        return 4;
    default:
        return 0;
    }
}

float channelValue(const std::uint8_t *stored, PixelType type)
{
    if (type == PixelType::UInt8)
        return static_cast<float>(*stored) / 255.0F;
    if (type == PixelType::Half)
        return halfToFloat(stored);
    float value = 0.0F;
    std::memcpy(&value, stored, sizeof value);
    return value;
}

} // namespace

bool Image::set(std::uint32_t width, std::uint32_t height, std::uint32_t channels, PixelType type)
{
    const auto size = pictureBytes(width, height, channels, type);
    if (!size)
        return false;
    fill(*this, {width, height, channels, type, std::vector<std::uint8_t>(static_cast<std::size_t>(*size))});
    return true;
}

std::size_t Image::bytesPerPixel() const
{
    return std::size_t{getChannels()} * bytesPerChannel(pixelType());
}

std::size_t Image::byteCount() const
{
    std::size_t bytes = std::size_t{getWidth()} * getHeight();
    if (__builtin_mul_overflow(bytes, bytesPerPixel(), &bytes))
        return std::numeric_limits<std::size_t>::max();
    return bytes;
}

bool Image::isValid() const
{
    const auto size = pictureBytes(getWidth(), getHeight(), getChannels(), pixelType());
    return size && *size == getPixels().size();
}

Vec4f Image::pixel(std::uint32_t x, std::uint32_t y) const
{
    const std::size_t channelBytes = bytesPerChannel(pixelType());
    const std::size_t channels = getChannels();
    const std::size_t start = (std::size_t{y} * getWidth() + x) * channels * channelBytes;
    if (x >= getWidth() || y >= getHeight() || channels - 1 >= MaxImageChannels ||
        start + channels * channelBytes > getPixels().size())
        return {{0.0F, 0.0F, 0.0F, 1.0F}};

    std::array<float, MaxImageChannels> values{};
    for (std::size_t i = 0; i < channels; ++i)
        values[i] = channelValue(getPixels().data() + start + i * channelBytes, pixelType());
    const float alpha = channels % 2 == 0 ? values[channels - 1] : 1.0F;
    if (channels <= 2)
        return {{values[0], values[0], values[0], alpha}};
    return {{values[0], values[1], values[2], alpha}};
}

bool Image::reformat(std::uint32_t format, const FCPtr<AttachmentContainerPtr, Image> &target)
{
    const std::uint32_t channels = channelsOf(format);
    if (channels == 0 || getChannels() == 0 || !isValid())
        return false;
    Image &receiver = target ? *target : *this;
    if (&receiver == this && channels == getChannels())
        return true;
    fill(receiver, withChannels(viewOf(*this), channels));
    return true;
}

bool Image::read(const std::string &path)
{
    const std::string extension = extensionOf(path);
    Result<Pixmap> picture = extension == "vif" ? readVif(path) : readForeign(path, extension);
    if (!picture) {
        logLine(LogLevel::Error, "Cannot read image \"" + path + "\": " + picture.reason());
        return false;
    }
    fill(*this, std::move(picture.value()));
    setSource(path);
    return true;
}

bool Image::write(const std::string &path) const
{
    const auto writeValid = [this, &path]() -> Result<void> {
        if (!isValid())
            return Failure{"The picture is damaged"};
        const std::string extension = extensionOf(path);
        return extension == "vif" ? writeVif(path, viewOf(*this)) : writeForeign(path, extension, viewOf(*this));
    };
    const Result<void> result = writeValid();
    if (!result)
        logLine(LogLevel::Error, "Cannot write image \"" + path + "\": " + result.reason());
    return static_cast<bool>(result);
}

std::uint64_t Image::contentHash() const
{
    const std::array<std::uint32_t, 4> header{getWidth(), getHeight(), getChannels(), getDataType()};
    return checksumOf(std::as_bytes(std::span(getPixels().values())), checksumOf(std::as_bytes(std::span(header))));
}

void Image::copyUndeclared(const FieldContainer &original)
{
    _source = static_cast<const Image &>(original)._source;
}

} // namespace osg
