// SPDX-License-Identifier: Apache-2.0
#include "OsbParts.h"

namespace kxtest {

using namespace osg;

std::uint32_t OsbParts::addType(const std::string &name, const Fields &fields)
{
    types.emplace_back(name, fields);
    return static_cast<std::uint32_t>(types.size() - 1);
}

std::uint32_t OsbParts::addContainer(std::uint32_t type)
{
    containers.emplace_back(type, 0U);
    return static_cast<std::uint32_t>(containers.size());
}

void OsbParts::addValue(std::uint16_t field, osb::Place place, std::size_t size)
{
    values.emplace_back(field, place, std::uint8_t{0}, static_cast<std::uint32_t>(size));
    containers.back().mutate_value_count(containers.back().value_count() + 1);
}

void OsbParts::addInline(std::uint16_t field, const std::string &bytes)
{
    addValue(field, osb::Place::Inline, bytes.size());
    inlineBytes += bytes;
}

void OsbParts::addReferences(std::uint16_t field, const std::vector<std::uint32_t> &entries)
{
    addValue(field, osb::Place::References, entries.size());
    references.insert(references.end(), entries.begin(), entries.end());
}

void OsbParts::addArray(std::uint16_t field, const std::string &bytes)
{
    addArray(field, bytes, bytes.size(), osb::Encoding::Plain);
}

void OsbParts::addArray(std::uint16_t field, const std::string &stored, std::uint64_t size, osb::Encoding encoding)
{
    addValue(field, osb::Place::Array, 0);
    arrayBytes.resize(alignedToArray(arrayBytes.size()));
    arrays.emplace_back(arrayBytes.size(), stored.size(), size, checksumOf(std::as_bytes(std::span(stored))), encoding);
    arrayBytes += stored;
}

std::string OsbParts::structure() const
{
    flatbuffers::FlatBufferBuilder builder;
    std::vector<flatbuffers::Offset<osb::Type>> typeOffsets;
    for (const auto &[name, fields] : types) {
        std::vector<flatbuffers::Offset<osb::Field>> fieldOffsets;
        for (const auto &[fieldName, kind] : fields)
            fieldOffsets.push_back(osb::CreateField(builder, builder.CreateString(fieldName), kind));
        const auto nameOffset = builder.CreateString(name);
        typeOffsets.push_back(osb::CreateType(builder, nameOffset, builder.CreateVector(fieldOffsets)));
    }
    const auto typeVector = builder.CreateVector(typeOffsets);
    const auto containerVector = builder.CreateVectorOfStructs(containers);
    const auto valueVector = builder.CreateVectorOfStructs(values);
    const auto inlineVector =
        builder.CreateVector(reinterpret_cast<const std::uint8_t *>(inlineBytes.data()), inlineBytes.size());
    const auto referenceVector = builder.CreateVector(references);
    const auto arrayVector = builder.CreateVectorOfStructs(arrays);
    osb::FinishSceneBuffer(builder, osb::CreateScene(builder, typeVector, containerVector, valueVector, inlineVector,
                                                     referenceVector, arrayVector, builder.CreateVector(roots)));
    return std::string(reinterpret_cast<const char *>(builder.GetBufferPointer()), builder.GetSize());
}

std::string OsbParts::bytesAround(const std::string &structure) const
{
    std::string body = structure;
    if (!arrayBytes.empty())
        body.resize(alignedToArray(sizeof(OsbHeader) + structure.size()) - sizeof(OsbHeader));
    body += arrayBytes;

    OsbHeader header;
    header.structureSize = structure.size();
    header.structureChecksum = checksumOf(std::as_bytes(std::span(structure)));
    header.fileSize = sizeof header + body.size();
    if (changeHeader)
        changeHeader(header);
    header.headerChecksum = header.computedChecksum();
    return raw(header) + body;
}

std::string OsbParts::bytes() const
{
    return bytesAround(structure());
}

std::string OsbParts::text(const std::string &content)
{
    return raw(static_cast<std::uint32_t>(content.size())) + content;
}

} // namespace kxtest
