// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Internal/OsbFile.h"

#include "SceneGraph/Internal/Compression.h"

#include <utility>

namespace osg {

namespace {

static_assert(PieceSize % sizeof(Vec3f) == 0 && PieceSize % sizeof(Vec4f) == 0 && PieceSize % sizeof(double) == 0,
              "pieces hold whole values");

Result<void> checkHeader(const OsbHeader &header, std::uint64_t fileSize)
{
    if (header.magic != OsbHeader::Magic)
        return Failure{"Not a scene file"};
    if (header.headerChecksum != header.computedChecksum())
        return Failure{"The header is damaged"};
    if (header.version != OsbHeader::Version || header.headerSize != sizeof(OsbHeader))
        return Failure{"Version " + std::to_string(header.version) + " of the format is not known"};
    if (header.fileSize != fileSize)
        return Failure{"The file has " + std::to_string(fileSize) + " bytes instead of " +
                       std::to_string(header.fileSize)};
    if (header.structureSize > fileSize - sizeof(OsbHeader) || header.structureSize > MaxStructureSize)
        return Failure{"The header gives an impossible size"};
    return {};
}

Result<void> checkStructure(const std::vector<std::byte> &structure, std::uint64_t checksum)
{
    if (checksumOf(structure) != checksum)
        return Failure{"The structure is damaged"};
    constexpr flatbuffers::uoffset_t MaxDepth = 8;
    constexpr flatbuffers::uoffset_t MaxTables = 2 + MaxTypesInFile * 64;
    flatbuffers::Verifier verifier(reinterpret_cast<const std::uint8_t *>(structure.data()), structure.size(), MaxDepth,
                                   MaxTables);
    // The identifier is looked at where it would stand, without regard to where the buffer ends.
    constexpr std::size_t MinSize = sizeof(flatbuffers::uoffset_t) + flatbuffers::kFileIdentifierLength;
    if (structure.size() < MinSize || !osb::SceneBufferHasIdentifier(structure.data()) ||
        !osb::VerifySceneBuffer(verifier))
        return Failure{"The structure is malformed"};
    return {};
}

} // namespace

OsbFile::OsbFile(RegularFile file, std::vector<std::byte> structure)
    : _file(std::move(file)), _structure(std::move(structure)), _piece(PieceSize)
{}

Result<OsbFile> OsbFile::open(const std::string &path)
{
    Result<RegularFile> file = RegularFile::open(path);
    if (!file)
        return Failure{file.reason()};
    OsbHeader header;
    if (file.value().readAt(0, std::as_writable_bytes(std::span(&header, 1))) != sizeof header)
        return Failure{"The file is too short for a scene file"};
    if (const Result<void> checked = checkHeader(header, file.value().size()); !checked)
        return Failure{checked.reason()};

    std::vector<std::byte> structure(static_cast<std::size_t>(header.structureSize));
    if (file.value().readAt(sizeof header, structure) != structure.size())
        return Failure{"The structure cannot be read"};
    if (const Result<void> checked = checkStructure(structure, header.structureChecksum); !checked)
        return Failure{checked.reason()};

    OsbFile result(std::move(file.value()), std::move(structure));
    if (const Result<void> checked = result.checkArrays(); !checked)
        return Failure{checked.reason()};
    return result;
}

/// Arrays fill the rest of the file, one behind the other: so no byte of the file is asked for twice.
Result<void> OsbFile::checkArrays() const
{
    // The verifier looks at the alignment of tables and of scalars, and not at that of structs in a vector.
    const auto &arrays = *scene().arrays();
    if (arrays.size() > 0 && reinterpret_cast<std::uintptr_t>(arrays.Data()) % alignof(osb::Array) != 0)
        return Failure{"The table of arrays is not aligned"};
    const std::uint64_t begin = sizeof(OsbHeader) + _structure.size();
    std::uint64_t end = begin;
    for (const osb::Array *array : arrays) {
        const std::uint64_t expected = alignedToArray(end) - alignedToArray(begin);
        const std::uint64_t place = alignedToArray(end);
        if (array->offset() != expected || place > _file.size() || array->stored_size() > _file.size() - place)
            return Failure{"An array lies outside its place in the file"};
        const bool isPlain = array->encoding() == osb::Encoding::Plain;
        if (!isPlain && array->encoding() != osb::Encoding::Zstd)
            return Failure{"An array is encoded in an unknown way"};
        if (isPlain ? array->size() != array->stored_size()
                    : !isPlausibleCompression(array->stored_size(), array->size()))
            return Failure{"An array claims more than the file holds"};
        end = place + array->stored_size();
    }
    if (end != _file.size())
        return Failure{"There is more in the file than its structure names"};
    return {};
}

std::uint64_t OsbFile::placeOf(const osb::Array &array) const
{
    return alignedToArray(sizeof(OsbHeader) + _structure.size()) + array.offset();
}

Result<std::span<const std::byte>> OsbFile::readPiece(const osb::Array &array, std::uint64_t from,
                                                      std::size_t size) const
{
    const std::span<std::byte> piece = std::span(_piece).first(size);
    if (_file.readAt(placeOf(array) + from, piece) != size)
        return Failure{"An array cannot be read"};
    return std::span<const std::byte>(piece);
}

Result<void> OsbFile::readBlock(const osb::Array &array, std::span<std::byte> target) const
{
    std::vector<std::byte> block(static_cast<std::size_t>(array.stored_size()));
    if (_file.readAt(placeOf(array), block) != block.size())
        return Failure{"An array cannot be read"};
    if (checksumOf(block) != array.checksum())
        return Failure{"An array is damaged"};
    if (!decompress(block, target))
        return Failure{"An array cannot be decompressed"};
    return {};
}

} // namespace osg
