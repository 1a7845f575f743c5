// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Internal/VifFormat.h"

#include "SceneGraph/AtomicFile.h"
#include "SceneGraph/Internal/Checksum.h"
#include "SceneGraph/Internal/Compression.h"
#include "SceneGraph/Internal/RegularFile.h"

#include <array>
#include <bit>
#include <cstring>
#include <type_traits>

namespace osg {

namespace {

static_assert(std::endian::native == std::endian::little, "numbers in the file are little-endian");

constexpr std::array<char, 8> Magic{'K', 'X', 'V', 'I', 'F', '\r', '\n', '\x1a'};
constexpr std::uint32_t Version = 1;

enum class Encoding : std::uint32_t { Plain = 0, Zstd = 1 };

/// The first 64 bytes, as they stand in the file.
struct VifHeader
{
    std::array<char, 8> magic = Magic;
    std::uint32_t version = Version;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t channels = 0;
    std::uint32_t type = 0;
    std::uint32_t encoding = 0;
    std::uint64_t storedSize = 0;
    std::uint64_t storedChecksum = 0;
    std::uint64_t reserved = 0;
    std::uint64_t headerChecksum = 0;
};
static_assert(sizeof(VifHeader) == 64 && std::is_trivially_copyable_v<VifHeader>);

std::uint64_t headerChecksumOf(const VifHeader &header)
{
    return checksumOf(std::as_bytes(std::span(&header, 1)).first(offsetof(VifHeader, headerChecksum)));
}

Result<std::uint64_t> pixelBytesOf(const VifHeader &header, std::uint64_t fileSize)
{
    if (header.magic != Magic)
        return Failure{"Not a VIF picture"};
    if (header.headerChecksum != headerChecksumOf(header))
        return Failure{"The header is damaged"};
    if (header.version != Version)
        return Failure{"Version " + std::to_string(header.version) + " of the format is not known"};
    const auto size = pictureBytes(header.width, header.height, header.channels, static_cast<PixelType>(header.type));
    if (!size || *size > MaxPictureBytes)
        return Failure{"The header gives an impossible size"};
    if (header.storedSize != fileSize - sizeof(VifHeader))
        return Failure{"The file's length is not the one in its header"};
    const bool isPlain = header.encoding == static_cast<std::uint32_t>(Encoding::Plain);
    if (!isPlain && header.encoding != static_cast<std::uint32_t>(Encoding::Zstd))
        return Failure{"The pixels are encoded in an unknown way"};
    if (isPlain ? *size != header.storedSize : !isPlausibleCompression(header.storedSize, *size))
        return Failure{"The header gives more pixels than the file holds"};
    return *size;
}

} // namespace

Result<Pixmap> readVif(const std::string &path)
{
    const Result<RegularFile> file = RegularFile::open(path);
    if (!file)
        return Failure{file.reason()};
    VifHeader header;
    if (file.value().readAt(0, std::as_writable_bytes(std::span(&header, 1))) != sizeof header)
        return Failure{"The file is too short for a VIF picture"};
    const Result<std::uint64_t> size = pixelBytesOf(header, file.value().size());
    if (!size)
        return Failure{size.reason()};

    Pixmap picture{header.width, header.height, header.channels, static_cast<PixelType>(header.type), {}};
    const bool isPlain = header.encoding == static_cast<std::uint32_t>(Encoding::Plain);
    std::vector<std::uint8_t> block(static_cast<std::size_t>(header.storedSize));
    const std::span<std::byte> stored = std::as_writable_bytes(std::span(block));
    if (file.value().readAt(sizeof header, stored) != stored.size())
        return Failure{"The pixels cannot be read"};
    if (checksumOf(stored) != header.storedChecksum)
        return Failure{"The pixels are damaged"};
    if (isPlain) {
        picture.pixels.swap(block);
        return picture;
    }
    picture.pixels.resize(static_cast<std::size_t>(size.value()));
    if (!decompress(stored, std::as_writable_bytes(std::span(picture.pixels))))
        return Failure{"The pixels cannot be decompressed"};
    return picture;
}

Result<void> writeVif(const std::string &path, const PixmapView &picture)
{
    if (picture.pixels.size() > MaxPictureBytes)
        return Failure{"The picture is too large"};
    const std::span<const std::byte> plain = std::as_bytes(picture.pixels);
    const std::vector<std::byte> block = compressed(plain);
    const std::span<const std::byte> stored = block.empty() ? plain : std::span<const std::byte>(block);

    VifHeader header;
    header.width = picture.width;
    header.height = picture.height;
    header.channels = picture.channels;
    header.type = static_cast<std::uint32_t>(picture.type);
    header.encoding = static_cast<std::uint32_t>(block.empty() ? Encoding::Plain : Encoding::Zstd);
    header.storedSize = stored.size();
    header.storedChecksum = checksumOf(stored);
    header.headerChecksum = headerChecksumOf(header);

    AtomicFile file(path);
    std::string error;
    if (!file.open(error))
        return Failure{error};
    file.write(&header, sizeof header);
    file.write(stored.data(), stored.size());
    if (!file.commit(error))
        return Failure{error};
    return {};
}

} // namespace osg
