// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Fields.h"
#include "SceneGraph/Internal/Checksum.h"

#include "SceneFile_generated.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

namespace osg {

static_assert(std::endian::native == std::endian::little, "numbers in the file are little-endian");

/// The first 64 bytes of an .osb file, as they stand there.
struct OsbHeader
{
    static constexpr std::array<char, 8> Magic{'K', 'X', 'O', 'S', 'B', '\r', '\n', '\x1a'};
    static constexpr std::uint32_t Version = 1;

    std::array<char, 8> magic = Magic;
    std::uint32_t version = Version;
    std::uint32_t headerSize = 64;
    std::uint64_t fileSize = 0;
    std::uint64_t structureSize = 0;
    std::uint64_t structureChecksum = 0;
    std::array<std::uint64_t, 2> reserved{};
    std::uint64_t headerChecksum = 0;

    std::uint64_t computedChecksum() const
    {
        return checksumOf(std::as_bytes(std::span(this, 1)).first(offsetof(OsbHeader, headerChecksum)));
    }
};
static_assert(sizeof(OsbHeader) == 64 && std::is_trivially_copyable_v<OsbHeader>);

inline constexpr std::uint64_t ArrayAlignment = 64;

/// Longer values become arrays; below, the entry in the table of arrays would cost more than it saves.
inline constexpr std::size_t MaxInlineArray = 128;
inline constexpr std::size_t MaxInlineString = std::size_t{64} * 1024;

/// Limits of one file that no scene comes near. FlatBuffers' own is 2 GiB for the structure.
inline constexpr std::uint64_t MaxStructureSize = (std::uint64_t{1} << 31) - (std::uint64_t{1} << 20);
inline constexpr std::uint32_t MaxTypesInFile = 4096;
inline constexpr std::uint32_t MaxFieldsOfType = 256;
inline constexpr std::size_t MaxNameLength = 255;

constexpr std::uint64_t alignedToArray(std::uint64_t offset)
{
    return (offset + ArrayAlignment - 1) / ArrayAlignment * ArrayAlignment;
}

/// The kinds in files count as the alternatives of FieldPointer do, from 1.
inline osb::Kind kindOf(const FieldPointer &field)
{
    return static_cast<osb::Kind>(field.index() + 1);
}

template <osb::Kind kind, class T>
inline constexpr bool IsKindOf =
    std::is_same_v<std::variant_alternative_t<static_cast<std::size_t>(kind) - 1, FieldPointer>, T *>;

static_assert(std::variant_size_v<FieldPointer> == static_cast<std::size_t>(osb::Kind::References));
static_assert(IsKindOf<osb::Kind::Bool, bool> && IsKindOf<osb::Kind::Int32, std::int32_t> &&
              IsKindOf<osb::Kind::UInt32, std::uint32_t> && IsKindOf<osb::Kind::UInt64, std::uint64_t> &&
              IsKindOf<osb::Kind::Float, float> && IsKindOf<osb::Kind::Double, double> &&
              IsKindOf<osb::Kind::String, std::string> && IsKindOf<osb::Kind::Vec2f, Vec2f> &&
              IsKindOf<osb::Kind::Vec3f, Vec3f> && IsKindOf<osb::Kind::Vec4f, Vec4f> &&
              IsKindOf<osb::Kind::Vec3d, Vec3d> && IsKindOf<osb::Kind::Quaternion, Quaternion> &&
              IsKindOf<osb::Kind::Matrix, Matrix> && IsKindOf<osb::Kind::StringMap, StringMap> &&
              IsKindOf<osb::Kind::Reference, RefFieldBase> && IsKindOf<osb::Kind::UInt8s, MField<std::uint8_t>> &&
              IsKindOf<osb::Kind::Int32s, MField<std::int32_t>> &&
              IsKindOf<osb::Kind::UInt32s, MField<std::uint32_t>> && IsKindOf<osb::Kind::Floats, MField<float>> &&
              IsKindOf<osb::Kind::Doubles, MField<double>> && IsKindOf<osb::Kind::Vec2fs, MField<Vec2f>> &&
              IsKindOf<osb::Kind::Vec3fs, MField<Vec3f>> && IsKindOf<osb::Kind::Vec4fs, MField<Vec4f>> &&
              IsKindOf<osb::Kind::Strings, MField<std::string>> && IsKindOf<osb::Kind::References, MRefFieldBase>);

} // namespace osg
