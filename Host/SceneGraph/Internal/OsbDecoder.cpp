// SPDX-License-Identifier: Apache-2.0
#include "SceneGraph/Internal/OsbDecoder.h"

#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Internal/FieldVisit.h"
#include "SceneGraph/SceneLog.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <utility>

namespace osg {

namespace {

/// Names are shown in log lines, so nothing but names may come through.
bool isName(const flatbuffers::String &text)
{
    return text.size() > 0 && text.size() <= MaxNameLength && std::all_of(text.begin(), text.end(), [](char c) {
               return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == ':';
           });
}

/// Takes length and text from the front of \a bytes; false when they are cut off.
bool takeText(std::span<const std::byte> &bytes, std::string &text)
{
    std::uint32_t length = 0;
    if (bytes.size() < sizeof length)
        return false;
    std::memcpy(&length, bytes.data(), sizeof length);
    bytes = bytes.subspan(sizeof length);
    if (bytes.size() < length)
        return false;
    text.assign(reinterpret_cast<const char *>(bytes.data()), length);
    bytes = bytes.subspan(length);
    return true;
}

Failure cutOffText()
{
    return {"A text is cut off"};
}

FieldMask allFieldsOf(const FieldContainerType &type)
{
    FieldMask fields = 0;
    for (const FieldInfo &field : type.fields())
        fields |= field.mask;
    return fields;
}

} // namespace

Result<SceneRoots> OsbDecoder::decode()
{
    for (const auto step : {&OsbDecoder::readTypes, &OsbDecoder::readContainers})
        if (const Result<void> done = (this->*step)(); !done)
            return Failure{done.reason()};
    for (const auto check : {&OsbDecoder::checkEverythingUsed, &OsbDecoder::checkReferences, &OsbDecoder::checkValues})
        if (const Result<void> done = (this->*check)(); !done)
            return Failure{done.reason()};
    Result<SceneRoots> result = roots();
    if (result) {
        connect();
        announce();
    }
    return result;
}

Result<void> OsbDecoder::readTypes()
{
    const auto &types = *_file.scene().types();
    if (types.size() > MaxTypesInFile)
        return Failure{"There are too many types"};
    for (const osb::Type *entry : types) {
        if (!isName(*entry->name()) || entry->fields()->size() > MaxFieldsOfType)
            return Failure{"The description of a type makes no sense"};
        FileType type{nullptr, {}, entry->name()->str()};
        type.type = FieldContainerFactory::the().findType(type.name);
        if (type.type != nullptr && type.type->isAbstract())
            return Failure{"Of the type " + type.name + " nothing can be made"};
        for (const osb::Field *field : *entry->fields()) {
            if (!isName(*field->name()))
                return Failure{"The description of the type " + type.name + " makes no sense"};
            FileField known{nullptr, field->kind(), field->name()->str()};
            if (type.type != nullptr)
                known.info = type.type->findField(known.name);
            type.fields.push_back(std::move(known));
        }
        _types.push_back(std::move(type));
    }
    return {};
}

Result<void> OsbDecoder::readContainers()
{
    const auto &entries = *_file.scene().containers();
    _containers.reserve(entries.size());
    for (const osb::Container *entry : entries)
        if (Result<void> done = readContainer(*entry); !done)
            return done;
    return {};
}

Result<void> OsbDecoder::readContainer(const osb::Container &entry)
{
    const auto &values = *_file.scene().values();
    if (entry.type() >= _types.size() || entry.value_count() > values.size() - _nextValue)
        return Failure{"A container's type or values are missing"};
    FileType &type = _types[entry.type()];
    if (type.type == nullptr)
        reportUnknown("type " + type.name, type.isReported);
    _owner = static_cast<std::uint32_t>(_containers.size());
    _containers.emplace_back(type.type != nullptr ? type.type->createContainer() : FieldContainerPtr());

    FieldMask seen = 0;
    for (std::uint32_t i = 0; i < entry.value_count(); ++i)
        if (Result<void> done = readValue(type, *values.Get(_nextValue++), seen); !done)
            return done;
    return {};
}

Result<void> OsbDecoder::readValue(FileType &type, const osb::Value &value, FieldMask &seen)
{
    if (value.field() >= type.fields.size())
        return Failure{"A value belongs to no field"};
    FileField &field = type.fields[value.field()];
    if (field.info == nullptr) {
        if (type.type != nullptr)
            reportUnknown("field " + type.name + "." + field.name, field.isReported);
        return skipValue(value);
    }
    if ((seen & field.info->mask) != 0)
        return Failure{type.name + "." + field.name + ": There are two values"};
    seen |= field.info->mask;
    const Result<void> done = readKnownValue(field, value);
    if (!done)
        return Failure{type.name + "." + field.name + ": " + done.reason()};
    return {};
}

Result<void> OsbDecoder::readKnownValue(const FileField &field, const osb::Value &value)
{
    const FieldPointer pointer = field.info->address(*_containers[_owner]);
    if (kindOf(pointer) != field.kind)
        return Failure{"The field is of another kind here"};
    _field = field.info;
    return std::visit([&](auto *target) { return readInto(*target, value); }, pointer);
}

/// What is not known here is still counted, because values lie one behind the other.
Result<void> OsbDecoder::skipValue(const osb::Value &value)
{
    const auto toVoid = [](const auto &taken) {
        return taken ? Result<void>() : Result<void>(Failure{taken.reason()});
    };
    switch (value.place()) {
    case osb::Place::Inline:
        return toVoid(takeInline(value));
    case osb::Place::References:
        return toVoid(takeReferences(value));
    case osb::Place::Array:
        return toVoid(takeArray());
    }
    return Failure{"A value lies in an unknown place"};
}

Result<std::span<const std::byte>> OsbDecoder::takeInline(const osb::Value &value)
{
    const auto &bytes = *_file.scene().inline_bytes();
    if (value.place() != osb::Place::Inline || value.size() > bytes.size() - _nextInline)
        return Failure{"The value is missing"};
    const auto *first = reinterpret_cast<const std::byte *>(bytes.data()) + _nextInline;
    _nextInline += value.size();
    return std::span(first, value.size());
}

Result<const osb::Array *> OsbDecoder::takeArray()
{
    const auto &arrays = *_file.scene().arrays();
    if (_nextArray >= arrays.size())
        return Failure{"The array is missing"};
    return arrays.Get(_nextArray++);
}

/// The index of the first one.
Result<std::uint32_t> OsbDecoder::takeReferences(const osb::Value &value)
{
    const auto &references = *_file.scene().references();
    if (value.place() != osb::Place::References || value.size() > references.size() - _nextReference)
        return Failure{"The reference is missing"};
    const std::uint32_t first = _nextReference;
    _nextReference += value.size();
    return first;
}

Result<void> OsbDecoder::readReferences(const osb::Value &value)
{
    const Result<std::uint32_t> first = takeReferences(value);
    if (!first)
        return Failure{first.reason()};
    _links.push_back({_owner, _field, first.value(), value.size()});
    return {};
}

Result<void> OsbDecoder::readInto(RefFieldBase &, const osb::Value &value)
{
    if (value.size() != 1)
        return Failure{"There is more than one reference"};
    return readReferences(value);
}

Result<void> OsbDecoder::readInto(MRefFieldBase &, const osb::Value &value)
{
    return readReferences(value);
}

Result<void> OsbDecoder::readInto(std::string &target, const osb::Value &value)
{
    if (value.place() == osb::Place::Array) {
        const Result<const osb::Array *> array = takeArray();
        if (!array)
            return Failure{array.reason()};
        std::vector<char> text;
        Result<void> done = _file.readArray(*array.value(), text);
        target.assign(text.begin(), text.end());
        return done;
    }
    const Result<std::span<const std::byte>> bytes = takeInline(value);
    if (!bytes)
        return Failure{bytes.reason()};
    target.assign(reinterpret_cast<const char *>(bytes.value().data()), bytes.value().size());
    return {};
}

Result<void> OsbDecoder::readInto(StringMap &target, const osb::Value &value)
{
    const Result<std::span<const std::byte>> taken = takeInline(value);
    if (!taken)
        return Failure{taken.reason()};
    std::span<const std::byte> bytes = taken.value();
    while (!bytes.empty()) {
        std::string key;
        std::string text;
        if (!takeText(bytes, key) || !takeText(bytes, text))
            return cutOffText();
        target.insert_or_assign(std::move(key), std::move(text));
    }
    return {};
}

Result<void> OsbDecoder::readInto(MField<std::string> &target, const osb::Value &value)
{
    const Result<std::span<const std::byte>> taken = takeInline(value);
    if (!taken)
        return Failure{taken.reason()};
    target.clear();
    std::span<const std::byte> bytes = taken.value();
    while (!bytes.empty()) {
        std::string text;
        if (!takeText(bytes, text))
            return cutOffText();
        target.values().push_back(std::move(text));
    }
    return {};
}

Result<void> OsbDecoder::readInto(bool &target, const osb::Value &value)
{
    const Result<std::span<const std::byte>> bytes = takeInline(value);
    if (!bytes)
        return Failure{bytes.reason()};
    if (bytes.value().size() != 1 || bytes.value()[0] > std::byte{1})
        return Failure{"The value is neither true nor false"};
    target = bytes.value()[0] == std::byte{1};
    return {};
}

template <class T> Result<void> OsbDecoder::readInto(T &target, const osb::Value &value)
{
    if constexpr (PlainValues<T>)
        if (value.place() == osb::Place::Array) {
            const Result<const osb::Array *> array = takeArray();
            if (!array)
                return Failure{array.reason()};
            return _file.readArray(*array.value(), target.values());
        }

    const Result<std::span<const std::byte>> bytes = takeInline(value);
    if (!bytes)
        return Failure{bytes.reason()};
    const std::size_t size = bytes.value().size();
    if constexpr (PlainValues<T>) {
        if (size % sizeof(typename T::value_type) != 0)
            return Failure{"The length does not fit the kind"};
        target.resize(size / sizeof(typename T::value_type));
        if (size > 0)
            std::memcpy(static_cast<void *>(target.data()), bytes.value().data(), size);
    } else {
        static_assert(PlainValue<T>);
        if (size != sizeof target)
            return Failure{"The length does not fit the kind"};
        std::memcpy(static_cast<void *>(&target), bytes.value().data(), size);
    }
    return {};
}

Result<void> OsbDecoder::checkEverythingUsed() const
{
    const osb::Scene &scene = _file.scene();
    if (_nextValue != scene.values()->size() || _nextInline != scene.inline_bytes()->size() ||
        _nextReference != scene.references()->size() || _nextArray != scene.arrays()->size())
        return Failure{"There are values that belong to no container"};
    return {};
}

Result<void> OsbDecoder::checkReferences() const
{
    for (const std::uint32_t reference : *_file.scene().references())
        if (reference > _containers.size())
            return Failure{"A reference leads nowhere"};
    ReferenceGraph graph;
    for (const Link &link : _links)
        if (Result<void> done = checkLink(link, graph); !done)
            return done;
    if (const auto fault = graph.findFault(_containers.size()))
        return Failure{*fault};
    return {};
}

Result<void> OsbDecoder::checkLink(const Link &link, ReferenceGraph &graph) const
{
    FieldContainer &owner = *_containers[link.owner];
    const FieldPointer pointer = link.field->address(owner);
    const auto *single = std::get_if<RefFieldBase *>(&pointer);
    const FieldContainerType &required =
        single != nullptr ? (*single)->requiredType() : std::get<MRefFieldBase *>(pointer)->requiredType();

    for (std::uint32_t i = 0; i < link.count; ++i) {
        const FieldContainerPtr target = containerFor(referenceAt(link.firstReference + i));
        if (!target)
            continue;
        const std::uint32_t number = referenceAt(link.firstReference + i) - 1;
        if (!isOfType(target, required))
            return Failure{std::string(owner.getType().getCName()) + "." + link.field->name + " refers to a " +
                           target->getType().getCName()};
        if (holdsChildren(owner.getType(), *link.field))
            graph.addChild(link.owner, number);
        else if (holdsAttachments(owner.getType(), *link.field))
            graph.addAttachment(link.owner, number, target->getType());
        else
            graph.addReference(link.owner, number);
    }
    return {};
}

Result<void> OsbDecoder::checkValues() const
{
    for (const FCRef<FieldContainer> &container : _containers)
        if (const auto fault = container ? findValueFault(container) : std::nullopt)
            return Failure{*fault};
    return {};
}

/// Null for null and for a container of an unknown type.
FieldContainerPtr OsbDecoder::containerFor(std::uint32_t reference) const
{
    return reference == 0 ? FieldContainerPtr() : _containers[reference - 1].get();
}

void OsbDecoder::connect()
{
    for (const Link &link : _links) {
        FieldContainer &owner = *_containers[link.owner];
        const FieldPointer pointer = link.field->address(owner);
        if (const auto *single = std::get_if<RefFieldBase *>(&pointer)) {
            (*single)->setContainer(containerFor(referenceAt(link.firstReference)));
            continue;
        }
        // A list of children or attachments has no gaps; elsewhere a gap keeps the others' indices.
        const bool dropsNull =
            holdsChildren(owner.getType(), *link.field) || holdsAttachments(owner.getType(), *link.field);
        MRefFieldBase &list = *std::get<MRefFieldBase *>(pointer);
        list.clearContainers();
        for (std::uint32_t i = 0; i < link.count; ++i)
            if (const FieldContainerPtr target = containerFor(referenceAt(link.firstReference + i));
                target || !dropsNull)
                list.appendContainer(target);
    }
}

void OsbDecoder::announce() const
{
    for (const FCRef<FieldContainer> &container : _containers) {
        if (!container)
            continue;
        const FieldMask fields = allFieldsOf(container->getType());
        const CPEditor edit(container, fields);
        container->markChanged(fields);
    }
}

Result<SceneRoots> OsbDecoder::roots() const
{
    SceneRoots result;
    for (const std::uint32_t reference : *_file.scene().roots()) {
        if (reference > _containers.size())
            return Failure{"A root is missing"};
        if (const FieldContainerPtr root = containerFor(reference))
            result.emplace_back(root);
    }
    return result;
}

void OsbDecoder::reportUnknown(const std::string &what, bool &isReported) const
{
    if (!std::exchange(isReported, true))
        logLine(LogLevel::Warning, "Scene file \"" + _name + "\": the " + what + " is not known and is skipped");
}

} // namespace osg
