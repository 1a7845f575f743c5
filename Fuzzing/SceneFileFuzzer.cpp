// SPDX-License-Identifier: Apache-2.0
// Any bytes as a scene file. Checksums are made right first: no chance would ever find one.
#include "SceneGraph/Internal/OsbLayout.h"
#include "SceneGraph/SceneFile.h"
#include "SceneGraph/SceneLog.h"
#include "ScratchFile.h"

#include <cstring>
#include <vector>

namespace {

void repair(std::vector<std::uint8_t> &bytes)
{
    osg::OsbHeader header;
    if (bytes.size() < sizeof header)
        return;
    std::memcpy(&header, bytes.data(), sizeof header);
    header.fileSize = bytes.size();
    const std::size_t rest = bytes.size() - sizeof header;
    if (header.structureSize > rest)
        header.structureSize = rest;
    const auto structure = std::as_bytes(std::span(bytes)).subspan(sizeof header, header.structureSize);
    header.structureChecksum = osg::checksumOf(structure);
    header.headerChecksum = header.computedChecksum();
    std::memcpy(bytes.data(), &header, sizeof header);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const ScratchFile file("scene.osb");
    std::vector<std::uint8_t> bytes(data, data + size);
    repair(bytes);
    file.write(bytes.data(), bytes.size());
    static_cast<void>(osg::readSceneFile(file.path()));
    return 0;
}

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    silenceStandardOutput();
    return 0;
}
