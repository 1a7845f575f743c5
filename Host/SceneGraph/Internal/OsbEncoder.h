// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Internal/OsbLayout.h"
#include "SceneGraph/Internal/ReferenceGraph.h"
#include "SceneGraph/SceneFile.h"

#include <map>
#include <span>
#include <unordered_map>
#include <vector>

namespace osg {

/// Turns containers into the parts of an .osb file. Does not write; long arrays stay where they are in memory.
class OsbEncoder
{
public:
    explicit OsbEncoder(const SceneWriteOptions &options) : _options(options) {}

    /// The reason why these containers cannot be written, or nothing.
    Result<void> encode(const std::vector<FieldContainerPtr> &roots);

    /// After encode(): the structure part, and the long arrays as they are stored; valid while the containers are not
    /// changed and the encoder lives.
    Result<std::vector<std::byte>> structure() const;
    const std::vector<std::span<const std::byte>> &storedArrays() const { return _stored; }

private:
    struct FileType
    {
        const FieldContainerType *type;
        std::vector<osb::Kind> kinds;
    };

    std::uint32_t referenceTo(const FieldContainerPtr &container);
    std::uint32_t numberOfType(FieldContainer &container);
    void encodeContainer(std::uint32_t number);
    void addToGraph(std::uint32_t owner, const FieldInfo &field, std::size_t firstReference);
    void addInline(std::size_t field, std::span<const std::byte> bytes);
    void addArray(std::size_t field, std::span<const std::byte> bytes);
    void addReferences(std::size_t field, std::size_t firstReference);

    void encodeValue(std::size_t field, const RefFieldBase &value);
    void encodeValue(std::size_t field, const MRefFieldBase &value);
    void encodeValue(std::size_t field, const std::string &value);
    void encodeValue(std::size_t field, const StringMap &value);
    void encodeValue(std::size_t field, const MField<std::string> &value);
    template <class T> void encodeValue(std::size_t field, const T &value);

    SceneWriteOptions _options;
    std::vector<FieldContainerPtr> _containers;
    std::unordered_map<std::uint32_t, std::uint32_t> _numbers; ///< by container id
    std::vector<FileType> _types;
    std::map<const FieldContainerType *, std::uint32_t> _typeNumbers; ///< looked up only, never walked
    ReferenceGraph _graph;

    std::vector<osb::Container> _containerEntries;
    std::vector<osb::Value> _values;
    std::vector<std::byte> _inlineBytes;
    std::vector<std::uint32_t> _references;
    std::vector<osb::Array> _arrays;
    std::vector<std::uint32_t> _roots;
    std::vector<std::span<const std::byte>> _stored;
    std::vector<std::vector<std::byte>> _blocks; ///< what was compressed
};

} // namespace osg
