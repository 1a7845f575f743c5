// SPDX-License-Identifier: Apache-2.0
// Any bytes as a picture in the host's own format. Checksums are made right first.
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Image.h"
#include "SceneGraph/Internal/Checksum.h"
#include "ScratchFile.h"

#include <cstring>
#include <vector>

namespace {

constexpr std::size_t HeaderSize = 64;
constexpr std::size_t StoredSizeAt = 32;
constexpr std::size_t StoredChecksumAt = 40;
constexpr std::size_t HeaderChecksumAt = 56;

void put(std::vector<std::uint8_t> &bytes, std::size_t at, std::uint64_t value)
{
    std::memcpy(bytes.data() + at, &value, sizeof value);
}

void repair(std::vector<std::uint8_t> &bytes)
{
    if (bytes.size() < HeaderSize)
        return;
    put(bytes, StoredSizeAt, bytes.size() - HeaderSize);
    put(bytes, StoredChecksumAt, osg::checksumOf(std::as_bytes(std::span(bytes)).subspan(HeaderSize)));
    put(bytes, HeaderChecksumAt, osg::checksumOf(std::as_bytes(std::span(bytes)).first(HeaderChecksumAt)));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const ScratchFile file("picture.vif");
    std::vector<std::uint8_t> bytes(data, data + size);
    repair(bytes);
    file.write(bytes.data(), bytes.size());
    const osg::FCRef<osg::Image> image(osg::Image::create());
    const osg::CPEditor edit(image.get(), osg::AllFieldMask);
    if (image->read(file.path()) && !image->isValid())
        __builtin_trap();
    return 0;
}

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    silenceStandardOutput();
    return 0;
}
