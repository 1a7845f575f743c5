// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Internal/OsbFile.h"
#include "SceneGraph/Internal/ReferenceGraph.h"
#include "SceneGraph/SceneFile.h"

#include <cstdint>
#include <string>
#include <vector>

namespace osg {

/// Makes containers of an .osb file's structure and arrays.
///
/// Nothing refers to anything before all values were read and all references were found sensible; until then each
/// container is owned here alone, and a failure leaves nothing behind.
class OsbDecoder
{
public:
    /// \a name is the file's, for log lines.
    OsbDecoder(const OsbFile &file, std::string name) : _file(file), _name(std::move(name)) {}

    Result<SceneRoots> decode();

private:
    struct FileField
    {
        const FieldInfo *info; ///< null: not known here
        osb::Kind kind;
        std::string name;
        bool isReported = false;
    };
    struct FileType
    {
        FieldContainerType *type; ///< null: not known here
        std::vector<FileField> fields;
        std::string name;
        bool isReported = false;
    };
    /// The references of one field, not yet set.
    struct Link
    {
        std::uint32_t owner;
        const FieldInfo *field;
        std::uint32_t firstReference;
        std::uint32_t count;
    };

    Result<void> readTypes();
    Result<void> readContainers();
    Result<void> readContainer(const osb::Container &entry);
    Result<void> readValue(FileType &type, const osb::Value &value, FieldMask &seen);
    Result<void> readKnownValue(const FileField &field, const osb::Value &value);
    Result<void> skipValue(const osb::Value &value);
    Result<void> checkEverythingUsed() const;
    Result<void> checkReferences() const;
    Result<void> checkLink(const Link &link, ReferenceGraph &graph) const;
    Result<void> checkValues() const;
    void connect();
    void announce() const;
    Result<SceneRoots> roots() const;
    void reportUnknown(const std::string &what, bool &isReported) const;

    Result<std::span<const std::byte>> takeInline(const osb::Value &value);
    Result<const osb::Array *> takeArray();
    Result<std::uint32_t> takeReferences(const osb::Value &value);

    Result<void> readReferences(const osb::Value &value);
    Result<void> readInto(RefFieldBase &target, const osb::Value &value);
    Result<void> readInto(MRefFieldBase &target, const osb::Value &value);
    Result<void> readInto(std::string &target, const osb::Value &value);
    Result<void> readInto(StringMap &target, const osb::Value &value);
    Result<void> readInto(MField<std::string> &target, const osb::Value &value);
    Result<void> readInto(bool &target, const osb::Value &value);
    template <class T> Result<void> readInto(T &target, const osb::Value &value);

    FieldContainerPtr containerFor(std::uint32_t reference) const;
    std::uint32_t referenceAt(std::uint32_t index) const { return _file.scene().references()->Get(index); }

    const OsbFile &_file;
    std::string _name;
    std::vector<FileType> _types;
    std::vector<FCRef<FieldContainer>> _containers; ///< null: of an unknown type
    std::vector<Link> _links;
    std::uint32_t _owner = 0;          ///< whose values are being read
    const FieldInfo *_field = nullptr; ///< which one of them
    std::uint32_t _nextValue = 0;
    std::uint32_t _nextInline = 0;
    std::uint32_t _nextReference = 0;
    std::uint32_t _nextArray = 0;
};

} // namespace osg
