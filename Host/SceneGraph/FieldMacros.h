// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Fields.h"

#include <type_traits>
#include <utility>
#include <vector>

/// \file
/// A container class declares each of its fields once, and reading, writing, cloning, comparing and scripting follow.
///
///     class AssetAttachment final : public Attachment
///     {
///         OSG_CONTAINER(AssetAttachment, Attachment)
///         OSG_FIELD(std::string, Uuid)               // getUuid(), setUuid(), UuidFieldMask
///         OSG_FIELD(bool, UserEdited, false)
///         OSG_MFIELD(std::string, Labels)            // getLabels(), editLabels(), LabelsFieldMask
///     };
///
/// and OSG_CONTAINER_SOURCE(AssetAttachment) in its source file. A field's index is counted at compile time by overload
/// ranking, so it is the same in every translation unit and goes on where the parent's fields end.

namespace osg {

template <unsigned N> struct FieldIndex
{
    static constexpr unsigned value = N;
};
template <unsigned N> struct Rank : Rank<N - 1>
{};
template <> struct Rank<0>
{};

inline constexpr unsigned MaxFields = 60;

template <class C> inline constexpr unsigned fieldCount = decltype(C::fieldCounter(Rank<MaxFields>{}))::value;

template <class C, class Storage> struct FieldDescription
{
    const char *name;
    FieldMask mask;
    Storage C::*member;
};

template <class T> struct FieldTraits
{
    using Storage = T;
    using Getter = std::conditional_t<std::is_scalar_v<T>, T, const T &>;
    using Param = std::conditional_t<std::is_scalar_v<T>, T, const T &>;
};
template <Handle T> struct FieldTraits<T>
{
    using Storage = RefField<T>;
    using Getter = const T &;
    using Param = const T &;
};

class FieldContainerType;
class FieldContainer;

template <class C, unsigned... Is> std::vector<FieldInfo> describeOwnFields(std::integer_sequence<unsigned, Is...>)
{
    constexpr unsigned first = fieldCount<typename C::Inherited>;
    return {FieldInfo{C::describe(FieldIndex<first + Is>{}).name, C::describe(FieldIndex<first + Is>{}).mask,
                      [](FieldContainer &container) {
                          return toFieldPointer(static_cast<C &>(container).*
                                                (C::describe(FieldIndex<first + Is>{}).member));
                      }}...};
}

template <class C> std::vector<FieldInfo> describeOwnFields()
{
    constexpr unsigned own = fieldCount<C> - fieldCount<typename C::Inherited>;
    if constexpr (own == 0)
        return {};
    else
        return describeOwnFields<C>(std::make_integer_sequence<unsigned, own>{});
}

} // namespace osg

#define OSG_CONTAINER_COMMON(Class, ParentClass)                                                                       \
public:                                                                                                                \
    using Self = Class;                                                                                                \
    using Inherited = ParentClass;                                                                                     \
    using Ptr = ::osg::FCPtr<ParentClass::Ptr, Class>;                                                                 \
    static ::osg::FieldContainerType &getClassType();                                                                  \
    ::osg::FieldContainerType &getType() const override                                                                \
    {                                                                                                                  \
        return getClassType();                                                                                         \
    }                                                                                                                  \
    static auto fieldCounter(::osg::Rank<0>)->::osg::FieldIndex<::osg::fieldCount<ParentClass>>;

/// A class of which containers are made. Its constructor is protected: create() is the way.
#define OSG_CONTAINER(Class, ParentClass)                                                                              \
    OSG_CONTAINER_COMMON(Class, ParentClass)                                                                           \
    static Ptr create();                                                                                               \
                                                                                                                       \
protected:                                                                                                             \
    Class() = default;                                                                                                 \
    ~Class() override = default;                                                                                       \
                                                                                                                       \
private:

/// The same for a class that declares its own (protected) constructor and destructor.
#define OSG_CONTAINER_WITH_LIFECYCLE(Class, ParentClass)                                                               \
    OSG_CONTAINER_COMMON(Class, ParentClass)                                                                           \
    static Ptr create();                                                                                               \
                                                                                                                       \
private:

/// A class that is only derived from.
#define OSG_ABSTRACT_CONTAINER(Class, ParentClass)                                                                     \
    OSG_CONTAINER_COMMON(Class, ParentClass)                                                                           \
protected:                                                                                                             \
    Class() = default;                                                                                                 \
    ~Class() override = default;                                                                                       \
                                                                                                                       \
private:

#define OSG_FIELD_COMMON(Name, StorageType)                                                                            \
    static constexpr unsigned Name##FieldId = decltype(fieldCounter(::osg::Rank<::osg::MaxFields>{}))::value;          \
    static_assert(Name##FieldId < ::osg::MaxFields);                                                                   \
    static constexpr ::osg::FieldMask Name##FieldMask = ::osg::FieldMask{1} << Name##FieldId;                          \
    static auto fieldCounter(::osg::Rank<Name##FieldId + 1>)->::osg::FieldIndex<Name##FieldId + 1>;                    \
    static ::osg::FieldDescription<Self, StorageType> describe(::osg::FieldIndex<Name##FieldId>)                       \
    {                                                                                                                  \
        return {#Name, Name##FieldMask, &Self::Name##_};                                                               \
    }

/// A field with one value; the default follows the name.
#define OSG_FIELD(Type, Name, ...)                                                                                     \
public:                                                                                                                \
    OSG_FIELD_COMMON(Name, ::osg::FieldTraits<Type>::Storage)                                                          \
    ::osg::FieldTraits<Type>::Getter get##Name() const                                                                 \
    {                                                                                                                  \
        return Name##_;                                                                                                \
    }                                                                                                                  \
    void set##Name(::osg::FieldTraits<Type>::Param value)                                                              \
    {                                                                                                                  \
        recordChange(Name##FieldMask);                                                                                 \
        Name##_ = value;                                                                                               \
    }                                                                                                                  \
                                                                                                                       \
private:                                                                                                               \
    ::osg::FieldTraits<Type>::Storage Name##_{__VA_ARGS__};

/// A field with one value whose accessors do more than read and write: the class declares those itself.
#define OSG_FIELD_WITHOUT_ACCESSORS(Type, Name, ...)                                                                   \
public:                                                                                                                \
    OSG_FIELD_COMMON(Name, ::osg::FieldTraits<Type>::Storage)                                                          \
                                                                                                                       \
private:                                                                                                               \
    ::osg::FieldTraits<Type>::Storage Name##_{__VA_ARGS__};

/// A field with several values. The reference from its editor is used inside the bracket only.
#define OSG_MFIELD(Type, Name)                                                                                         \
public:                                                                                                                \
    OSG_FIELD_COMMON(Name, ::osg::MField<Type>)                                                                        \
    const ::osg::MField<Type> &get##Name() const                                                                       \
    {                                                                                                                  \
        return Name##_;                                                                                                \
    }                                                                                                                  \
    ::osg::MField<Type> &edit##Name()                                                                                  \
    {                                                                                                                  \
        recordChange(Name##FieldMask);                                                                                 \
        return Name##_;                                                                                                \
    }                                                                                                                  \
                                                                                                                       \
private:                                                                                                               \
    ::osg::MField<Type> Name##_;

#define OSG_ABSTRACT_CONTAINER_SOURCE(Class)                                                                           \
    ::osg::FieldContainerType &Class::getClassType()                                                                   \
    {                                                                                                                  \
        static ::osg::FieldContainerType type(#Class, &Inherited::getClassType(), nullptr,                             \
                                              ::osg::describeOwnFields<Class>());                                      \
        return type;                                                                                                   \
    }

#define OSG_CONTAINER_SOURCE(Class)                                                                                    \
    ::osg::FieldContainerType &Class::getClassType()                                                                   \
    {                                                                                                                  \
        static ::osg::FieldContainerType type(                                                                         \
            #Class, &Inherited::getClassType(), []() -> ::osg::FieldContainerPtr { return Class::create(); },          \
            ::osg::describeOwnFields<Class>());                                                                        \
        return type;                                                                                                   \
    }                                                                                                                  \
    Class::Ptr Class::create()                                                                                         \
    {                                                                                                                  \
        auto *container = new Class;                                                                                   \
        ::osg::publishContainer(*container);                                                                           \
        return Ptr(container);                                                                                         \
    }
