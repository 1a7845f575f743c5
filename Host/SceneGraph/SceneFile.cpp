// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/SceneFile.h"

#include "SceneGraph/AtomicFile.h"
#include "SceneGraph/Internal/OsbDecoder.h"
#include "SceneGraph/Internal/OsbEncoder.h"

#include <array>

namespace osg {

namespace {

OsbHeader headerFor(const std::vector<std::byte> &structure, const std::vector<std::span<const std::byte>> &arrays)
{
    OsbHeader header;
    header.structureSize = structure.size();
    header.structureChecksum = checksumOf(structure);
    header.fileSize = sizeof header + structure.size();
    for (const std::span<const std::byte> &array : arrays)
        header.fileSize = alignedToArray(header.fileSize) + array.size();
    header.headerChecksum = header.computedChecksum();
    return header;
}

/// Failed writes are remembered by the file and reported by its commit.
void writeParts(AtomicFile &file, const std::vector<std::byte> &structure,
                const std::vector<std::span<const std::byte>> &arrays)
{
    static constexpr std::array<std::byte, ArrayAlignment> Zeros{};
    const OsbHeader header = headerFor(structure, arrays);
    file.write(&header, sizeof header);
    file.write(structure.data(), structure.size());
    std::uint64_t end = sizeof header + structure.size();
    for (const std::span<const std::byte> &array : arrays) {
        file.write(Zeros.data(), static_cast<std::size_t>(alignedToArray(end) - end));
        file.write(array.data(), array.size());
        end = alignedToArray(end) + array.size();
    }
}

Result<void> writeTo(const std::string &path, const std::vector<FieldContainerPtr> &roots,
                     const SceneWriteOptions &options)
{
    OsbEncoder encoder(options);
    if (Result<void> encoded = encoder.encode(roots); !encoded)
        return encoded;
    const Result<std::vector<std::byte>> structure = encoder.structure();
    if (!structure)
        return Failure{structure.reason()};

    AtomicFile file(path);
    std::string error;
    if (!file.open(error))
        return Failure{error};
    writeParts(file, structure.value(), encoder.storedArrays());
    if (!file.commit(error))
        return Failure{error};
    return {};
}

Result<SceneRoots> readFrom(const std::string &path)
{
    const Result<OsbFile> file = OsbFile::open(path);
    if (!file)
        return Failure{file.reason()};
    return OsbDecoder(file.value(), path).decode();
}

} // namespace

Result<void> writeSceneFile(const std::string &path, const std::vector<FieldContainerPtr> &roots,
                            const SceneWriteOptions &options)
{
    Result<void> written = writeTo(path, roots, options);
    if (!written)
        return Failure{"Cannot write scene file \"" + path + "\": " + written.reason()};
    return written;
}

Result<SceneRoots> readSceneFile(const std::string &path)
{
    Result<SceneRoots> read = readFrom(path);
    if (!read)
        return Failure{"Cannot read scene file \"" + path + "\": " + read.reason()};
    return read;
}

} // namespace osg
