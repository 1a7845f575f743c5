// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/FieldContainer.h"

#include <string>
#include <variant>
#include <vector>

/// The value of one field of any container, read and set by what the field's declaration says.
///
/// Holds what a field of references names, so that an undo can bring it back.
class FieldValue
{
public:
    /// What a field that refers to containers holds.
    struct Reference
    {
        osg::FCRef<osg::FieldContainer> container;

        friend bool operator==(const Reference &a, const Reference &b)
        {
            return a.container.get() == b.container.get();
        }
    };

    using Content =
        std::variant<bool, std::int32_t, std::uint32_t, std::uint64_t, float, double, std::string, osg::Vec2f,
                     osg::Vec3f, osg::Vec4f, osg::Vec3d, osg::Quaternion, osg::Matrix, osg::StringMap,
                     osg::MField<std::uint8_t>, osg::MField<std::int32_t>, osg::MField<std::uint32_t>,
                     osg::MField<float>, osg::MField<double>, osg::MField<osg::Vec2f>, osg::MField<osg::Vec3f>,
                     osg::MField<osg::Vec4f>, osg::MField<std::string>, Reference, std::vector<Reference>>;

    FieldValue() = default;
    template <class T> FieldValue(T value) : _content(std::move(value)) {}

    static FieldValue of(osg::FieldContainer &container, const osg::FieldInfo &field);
    /// A reference to this container, or to none.
    static FieldValue reference(const osg::FieldContainerPtr &container);

    /// Sets the field. False, and nothing changes, where the field is of another type.
    bool assignTo(osg::FieldContainer &container, const osg::FieldInfo &field) const;

    const Content &content() const { return _content; }
    /// Null where the value is of another type.
    template <class T> const T *get() const { return std::get_if<T>(&_content); }

    friend bool operator==(const FieldValue &, const FieldValue &) = default;

private:
    Content _content;
};
