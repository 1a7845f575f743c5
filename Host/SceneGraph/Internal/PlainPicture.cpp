// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Internal/PlainPicture.h"

#include "SceneGraph/Internal/RegularFile.h"

#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <utility>

// After <cstdio>, which the first of them expects.
#include <jpeglib.h>
#include <png.h>

namespace osg {

namespace {

constexpr std::uint64_t MaxFileBytes = std::uint64_t{256} << 20;
constexpr std::uint64_t MaxPlainBytes = std::uint64_t{256} << 20; // larger ones take their time anyway

/// The file's bytes and how far they were read.
struct Reader
{
    const std::vector<std::byte> &bytes;
    std::size_t position = 0;
};

/// Rows from the bottom up, as pictures are kept; what a decoder writes into while it may jump out.
struct Target
{
    Pixmap &picture;
    std::size_t rowBytes = 0;
    std::uint8_t *row(std::uint32_t y) const
    {
        return picture.pixels.data() + std::size_t{picture.height - 1 - y} * rowBytes;
    }
    bool prepare(std::uint32_t width, std::uint32_t height, std::uint32_t channels)
    {
        const auto size = pictureBytes(width, height, channels, PixelType::UInt8);
        if (!size || *size > MaxPlainBytes)
            return false;
        picture.width = width;
        picture.height = height;
        picture.channels = channels;
        picture.pixels.resize(static_cast<std::size_t>(*size));
        rowBytes = std::size_t{width} * channels;
        return true;
    }
};

[[noreturn]] void onPngError(png_structp png, png_const_charp)
{
    png_longjmp(png, 1);
}

void readPng(png_structp png, png_bytep target, std::size_t size)
{
    auto *reader = static_cast<Reader *>(png_get_io_ptr(png));
    if (size > reader->bytes.size() - reader->position)
        png_error(png, "cut off");
    std::memcpy(target, reader->bytes.data() + reader->position, size);
    reader->position += size;
}

/// Palettes become colours, and transparent colours alpha. The number of channels; 0 for what is not simple enough.
std::uint32_t expandPng(png_structp png, png_infop info)
{
    if (png_get_bit_depth(png, info) > 8 || png_get_interlace_type(png, info) != PNG_INTERLACE_NONE)
        return 0;
    const int type = png_get_color_type(png, info);
    if (type == PNG_COLOR_TYPE_PALETTE)
        png_set_palette_to_rgb(png);
    if (type == PNG_COLOR_TYPE_GRAY)
        png_set_expand_gray_1_2_4_to_8(png);
    if (png_get_valid(png, info, PNG_INFO_tRNS) != 0)
        png_set_tRNS_to_alpha(png);
    png_read_update_info(png, info);
    return png_get_channels(png, info);
}

/// Holds nothing that would have to be destroyed: errors jump back here.
bool decodePng(png_structp png, png_infop info, Reader &reader, Target &target)
{
    if (setjmp(png_jmpbuf(png)) != 0)
        return false;
    png_set_read_fn(png, &reader, &readPng);
    png_read_info(png, info);
    const std::uint32_t channels = expandPng(png, info);
    if (channels == 0 || !target.prepare(png_get_image_width(png, info), png_get_image_height(png, info), channels))
        return false;
    for (std::uint32_t y = 0; y < target.picture.height; ++y)
        png_read_row(png, target.row(y), nullptr);
    png_read_end(png, nullptr);
    return true;
}

std::optional<Pixmap> readPlainPng(const std::vector<std::byte> &bytes)
{
    // Warnings count as errors: the other library says them.
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, &onPngError, &onPngError);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    Pixmap picture;
    Reader reader{bytes};
    Target target{picture};
    const bool isRead = info && decodePng(png, info, reader, target);
    png_destroy_read_struct(&png, &info, nullptr);
    return isRead ? std::optional<Pixmap>(std::move(picture)) : std::nullopt;
}

/// What the JPEG library finds behind its own part of the error manager.
struct JpegErrors
{
    jpeg_error_mgr base;
    std::jmp_buf back;
};

[[noreturn]] void onJpegError(j_common_ptr jpeg)
{
    std::longjmp(reinterpret_cast<JpegErrors *>(jpeg->err)->back, 1);
}

/// Warnings count as errors, traces do not.
void onJpegMessage(j_common_ptr jpeg, int level)
{
    if (level < 0)
        onJpegError(jpeg);
}

/// Holds nothing that would have to be destroyed: errors jump back here.
bool decodeJpeg(jpeg_decompress_struct &jpeg, JpegErrors &errors, const std::vector<std::byte> &bytes, Target &target)
{
    if (setjmp(errors.back) != 0)
        return false;
    jpeg_create_decompress(&jpeg);
    jpeg_mem_src(&jpeg, reinterpret_cast<const unsigned char *>(bytes.data()),
                 static_cast<unsigned long>(bytes.size()));
    if (jpeg_read_header(&jpeg, TRUE) != JPEG_HEADER_OK ||
        (jpeg.jpeg_color_space != JCS_GRAYSCALE && jpeg.jpeg_color_space != JCS_YCbCr) ||
        !target.prepare(jpeg.image_width, jpeg.image_height, jpeg.jpeg_color_space == JCS_GRAYSCALE ? 1 : 3))
        return false;
    jpeg_start_decompress(&jpeg);
    while (jpeg.output_scanline < jpeg.output_height) {
        JSAMPROW row = target.row(jpeg.output_scanline);
        jpeg_read_scanlines(&jpeg, &row, 1);
    }
    jpeg_finish_decompress(&jpeg);
    return true;
}

std::optional<Pixmap> readPlainJpeg(const std::vector<std::byte> &bytes)
{
    jpeg_decompress_struct jpeg{};
    JpegErrors errors{};
    jpeg.err = jpeg_std_error(&errors.base);
    errors.base.error_exit = &onJpegError;
    errors.base.emit_message = &onJpegMessage;
    Pixmap picture;
    Target target{picture};
    const bool isRead = decodeJpeg(jpeg, errors, bytes, target);
    jpeg_destroy_decompress(&jpeg);
    return isRead ? std::optional<Pixmap>(std::move(picture)) : std::nullopt;
}

bool beginsWith(const std::vector<std::byte> &bytes, std::string_view signature)
{
    return bytes.size() > signature.size() && std::memcmp(bytes.data(), signature.data(), signature.size()) == 0;
}

} // namespace

std::optional<Pixmap> readPlainPicture(const std::string &path)
{
    const Result<RegularFile> file = RegularFile::open(path);
    if (!file)
        return std::nullopt;
    const Result<std::vector<std::byte>> bytes = file.value().readAll(MaxFileBytes);
    if (!bytes)
        return std::nullopt;
    if (beginsWith(bytes.value(), std::string_view("\x89PNG\r\n\x1a\n", 8)))
        return readPlainPng(bytes.value());
    if (beginsWith(bytes.value(), std::string_view("\xff\xd8\xff", 3)))
        return readPlainJpeg(bytes.value());
    return std::nullopt;
}

} // namespace osg
