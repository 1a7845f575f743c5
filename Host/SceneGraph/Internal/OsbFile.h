// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Internal/OsbLayout.h"
#include "SceneGraph/Internal/RegularFile.h"
#include "SceneGraph/Result.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace osg {

/// The outer parts of an .osb file, read: header and structure are checked before anybody sees them, arrays when they
/// are read. What the structure says is well-formed then, but need not make sense.
class OsbFile
{
public:
    static Result<OsbFile> open(const std::string &path);

    const osb::Scene &scene() const { return *osb::GetScene(_structure.data()); }

    /// Reads an array of trivially copyable values; the reason of a failure otherwise.
    template <class T> Result<void> readArray(const osb::Array &array, std::vector<T> &values) const;

private:
    OsbFile(RegularFile file, std::vector<std::byte> structure);

    Result<void> checkArrays() const;
    Result<std::span<const std::byte>> readPiece(const osb::Array &array, std::uint64_t from, std::size_t size) const;
    Result<void> readBlock(const osb::Array &array, std::span<std::byte> target) const;
    std::uint64_t placeOf(const osb::Array &array) const;

    RegularFile _file;
    std::vector<std::byte> _structure;
    mutable std::vector<std::byte> _piece;
};

/// Small enough to stay in the processor's cache between being read, checked and copied to its place.
inline constexpr std::size_t PieceSize = std::size_t{192} * 1024;

template <class T> Result<void> OsbFile::readArray(const osb::Array &array, std::vector<T> &values) const
{
    if (array.size() % sizeof(T) != 0)
        return Failure{"An array's length does not fit its kind"};
    if (array.encoding() == osb::Encoding::Zstd) {
        values.resize(static_cast<std::size_t>(array.size() / sizeof(T)));
        return readBlock(array, std::as_writable_bytes(std::span(values)));
    }
    // Appended piece by piece, the memory is written once; a vector that is resized first is written twice.
    values.reserve(static_cast<std::size_t>(array.size() / sizeof(T)));
    std::uint64_t checksum = 0;
    for (std::uint64_t from = 0; from < array.size(); from += PieceSize) {
        const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(PieceSize, array.size() - from));
        const Result<std::span<const std::byte>> piece = readPiece(array, from, size);
        if (!piece)
            return Failure{piece.reason()};
        checksum = checksumOf(piece.value(), checksum);
        const auto *first = reinterpret_cast<const T *>(piece.value().data());
        values.insert(values.end(), first, first + size / sizeof(T));
    }
    if (checksum != array.checksum())
        return Failure{"An array is damaged"};
    return {};
}

} // namespace osg
