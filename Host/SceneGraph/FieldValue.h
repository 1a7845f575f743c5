// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/FieldContainer.h"

#include <string>
#include <variant>
#include <vector>

namespace osg {

/// The value of one field of any container, read and set by what the field's declaration says.
///
/// Holds what a field of references names, so that an undo can bring it back.
class KX_SCENEGRAPH_EXPORT FieldValue
{
public:
    /// What a field that refers to containers holds.
    struct Reference
    {
        FCRef<FieldContainer> container;

        friend bool operator==(const Reference &a, const Reference &b)
        {
            return a.container.get() == b.container.get();
        }
    };

    /// A type for each kind of field.
    using Content =
        std::variant<bool, std::int32_t, std::uint32_t, std::uint64_t, float, double, std::string, Vec2f, Vec3f, Vec4f,
                     Vec3d, Quaternion, Matrix, StringMap, MField<std::uint8_t>, MField<std::int32_t>,
                     MField<std::uint32_t>, MField<float>, MField<double>, MField<Vec2f>, MField<Vec3f>, MField<Vec4f>,
                     MField<std::string>, Reference, std::vector<Reference>>;

    FieldValue() = default;
    template <class T> FieldValue(T value) : _content(std::move(value)) {}

    static FieldValue of(FieldContainer &container, const FieldInfo &field);
    /// A reference to this container, or to none.
    static FieldValue reference(const FieldContainerPtr &container);

    /// Sets the field. False, and nothing changes, where the field is of another type.
    bool assignTo(FieldContainer &container, const FieldInfo &field) const;

    const Content &content() const { return _content; }
    /// Null where the value is of another type.
    template <class T> const T *get() const { return std::get_if<T>(&_content); }

    friend bool operator==(const FieldValue &, const FieldValue &) = default;

private:
    Content _content;
};

} // namespace osg
