// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Internal/OsbEncoder.h"

#include "SceneGraph/Internal/Compression.h"
#include "SceneGraph/Internal/FieldVisit.h"

#include <algorithm>
#include <limits>

namespace osg {

namespace {

/// Length in four bytes, then the text.
void appendText(std::vector<std::byte> &bytes, const std::string &text)
{
    const auto length = static_cast<std::uint32_t>(text.size());
    const auto *lengthBytes = reinterpret_cast<const std::byte *>(&length);
    bytes.insert(bytes.end(), lengthBytes, lengthBytes + sizeof length);
    const auto *textBytes = reinterpret_cast<const std::byte *>(text.data());
    bytes.insert(bytes.end(), textBytes, textBytes + text.size());
}

} // namespace

Result<void> OsbEncoder::encode(const std::vector<FieldContainerPtr> &roots)
{
    for (const FieldContainerPtr &root : roots)
        _roots.push_back(referenceTo(root));
    // Encoding a container numbers those that it refers to, which lengthens the list.
    for (std::uint32_t number = 0; number < _containers.size(); ++number) {
        if (const auto fault = findValueFault(_containers[number]))
            return Failure{*fault};
        encodeContainer(number);
    }
    if (const auto fault = _graph.findFault(_containers.size()))
        return Failure{*fault};
    return {};
}

/// 0 for null; a container that is met for the first time gets the next number.
std::uint32_t OsbEncoder::referenceTo(const FieldContainerPtr &container)
{
    if (!container)
        return 0;
    const auto next = static_cast<std::uint32_t>(_containers.size());
    const auto [position, isNew] = _numbers.emplace(container.getFieldContainerId(), next);
    if (isNew)
        _containers.push_back(container);
    return position->second + 1;
}

std::uint32_t OsbEncoder::numberOfType(FieldContainer &container)
{
    const FieldContainerType &type = container.getType();
    const auto next = static_cast<std::uint32_t>(_types.size());
    const auto [position, isNew] = _typeNumbers.emplace(&type, next);
    if (isNew) {
        FileType entry{&type, {}};
        for (const FieldInfo &field : type.fields())
            entry.kinds.push_back(kindOf(field.address(container)));
        _types.push_back(std::move(entry));
    }
    return position->second;
}

void OsbEncoder::encodeContainer(std::uint32_t number)
{
    FieldContainer &container = *_containers[number];
    const std::uint32_t type = numberOfType(container);
    const std::size_t firstValue = _values.size();
    const std::vector<FieldInfo> &fields = container.getType().fields();
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (_options.leavesOut && _options.leavesOut(container, fields[i]))
            continue;
        const std::size_t firstReference = _references.size();
        std::visit([&](const auto *value) { encodeValue(i, *value); }, fields[i].address(container));
        addToGraph(number, fields[i], firstReference);
    }
    _containerEntries.emplace_back(type, static_cast<std::uint32_t>(_values.size() - firstValue));
}

void OsbEncoder::addToGraph(std::uint32_t owner, const FieldInfo &field, std::size_t firstReference)
{
    const FieldContainerType &type = _containers[owner]->getType();
    for (std::size_t i = firstReference; i < _references.size(); ++i) {
        if (_references[i] == 0)
            continue;
        const std::uint32_t target = _references[i] - 1;
        if (holdsChildren(type, field))
            _graph.addChild(owner, target);
        else if (holdsAttachments(type, field))
            _graph.addAttachment(owner, target, _containers[target]->getType());
        else
            _graph.addReference(owner, target);
    }
}

void OsbEncoder::addInline(std::size_t field, std::span<const std::byte> bytes)
{
    _values.emplace_back(static_cast<std::uint16_t>(field), osb::Place::Inline, std::uint8_t{0},
                         static_cast<std::uint32_t>(bytes.size()));
    _inlineBytes.insert(_inlineBytes.end(), bytes.begin(), bytes.end());
}

void OsbEncoder::addArray(std::size_t field, std::span<const std::byte> bytes)
{
    std::span<const std::byte> stored = bytes;
    if (_options.isCompressed)
        if (std::vector<std::byte> block = compressed(bytes); !block.empty())
            stored = _blocks.emplace_back(std::move(block));
    const std::uint64_t offset =
        _arrays.empty() ? 0 : alignedToArray(_arrays.back().offset() + _arrays.back().stored_size());
    const osb::Encoding encoding = stored.data() == bytes.data() ? osb::Encoding::Plain : osb::Encoding::Zstd;
    _arrays.emplace_back(offset, stored.size(), bytes.size(), checksumOf(stored), encoding);
    _stored.push_back(stored);
    _values.emplace_back(static_cast<std::uint16_t>(field), osb::Place::Array, std::uint8_t{0}, std::uint32_t{0});
}

void OsbEncoder::addReferences(std::size_t field, std::size_t firstReference)
{
    _values.emplace_back(static_cast<std::uint16_t>(field), osb::Place::References, std::uint8_t{0},
                         static_cast<std::uint32_t>(_references.size() - firstReference));
}

void OsbEncoder::encodeValue(std::size_t field, const RefFieldBase &value)
{
    const FieldContainerPtr container = value.getContainer();
    if (!container)
        return;
    _references.push_back(referenceTo(container));
    addReferences(field, _references.size() - 1);
}

void OsbEncoder::encodeValue(std::size_t field, const MRefFieldBase &value)
{
    if (value.containerCount() == 0)
        return;
    const std::size_t first = _references.size();
    for (std::size_t i = 0; i < value.containerCount(); ++i)
        _references.push_back(referenceTo(value.containerAt(i)));
    addReferences(field, first);
}

void OsbEncoder::encodeValue(std::size_t field, const std::string &value)
{
    const auto bytes = std::as_bytes(std::span(value));
    if (bytes.size() > MaxInlineString)
        addArray(field, bytes);
    else
        addInline(field, bytes);
}

void OsbEncoder::encodeValue(std::size_t field, const StringMap &value)
{
    if (value.empty())
        return;
    std::vector<std::byte> bytes;
    for (const auto &[key, text] : value) {
        appendText(bytes, key);
        appendText(bytes, text);
    }
    addInline(field, bytes);
}

void OsbEncoder::encodeValue(std::size_t field, const MField<std::string> &value)
{
    if (value.empty())
        return;
    std::vector<std::byte> bytes;
    for (const std::string &text : value)
        appendText(bytes, text);
    addInline(field, bytes);
}

template <class T> void OsbEncoder::encodeValue(std::size_t field, const T &value)
{
    if constexpr (PlainValues<T>) {
        const auto bytes = std::as_bytes(std::span(value.values()));
        if (bytes.size() > MaxInlineArray)
            addArray(field, bytes);
        else if (!bytes.empty())
            addInline(field, bytes);
    } else {
        static_assert(PlainValue<T>);
        addInline(field, std::as_bytes(std::span(&value, 1)));
    }
}

Result<std::vector<std::byte>> OsbEncoder::structure() const
{
    const std::uint64_t size = _containerEntries.size() * sizeof(osb::Container) + _values.size() * sizeof(osb::Value) +
                               _inlineBytes.size() + _references.size() * sizeof(std::uint32_t) +
                               _arrays.size() * sizeof(osb::Array) + std::uint64_t{MaxTypesInFile} * 1024;
    if (size > MaxStructureSize || _types.size() > MaxTypesInFile)
        return Failure{"There are too many objects for one file"};

    flatbuffers::FlatBufferBuilder builder(static_cast<std::size_t>(size));
    std::vector<flatbuffers::Offset<osb::Type>> types;
    for (const FileType &entry : _types) {
        std::vector<flatbuffers::Offset<osb::Field>> fields;
        for (std::size_t i = 0; i < entry.kinds.size(); ++i)
            fields.push_back(
                osb::CreateField(builder, builder.CreateString(entry.type->fields()[i].name), entry.kinds[i]));
        const auto name = builder.CreateString(entry.type->getCName());
        types.push_back(osb::CreateType(builder, name, builder.CreateVector(fields)));
    }
    const auto typeVector = builder.CreateVector(types);
    const auto containers = builder.CreateVectorOfStructs(_containerEntries);
    const auto values = builder.CreateVectorOfStructs(_values);
    const auto bytes =
        builder.CreateVector(reinterpret_cast<const std::uint8_t *>(_inlineBytes.data()), _inlineBytes.size());
    const auto references = builder.CreateVector(_references);
    const auto arrays = builder.CreateVectorOfStructs(_arrays);
    const auto roots = builder.CreateVector(_roots);
    osb::FinishSceneBuffer(builder,
                           osb::CreateScene(builder, typeVector, containers, values, bytes, references, arrays, roots));
    const auto *data = reinterpret_cast<const std::byte *>(builder.GetBufferPointer());
    return std::vector<std::byte>(data, data + builder.GetSize());
}

} // namespace osg
