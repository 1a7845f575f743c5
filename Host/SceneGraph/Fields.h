// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/FCPtr.h"
#include "SceneGraph/Matrix.h"
#include "SceneGraph/SceneGraphExport.h"
#include "SceneGraph/VectorTypes.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace osg {

using FieldMask = std::uint64_t;
inline constexpr FieldMask AllFieldMask = ~FieldMask{0};

using StringMap = std::map<std::string, std::string>;

/// A field that refers to one container, seen without its static type.
class KX_SCENEGRAPH_EXPORT RefFieldBase
{
public:
    virtual ~RefFieldBase() = default;
    virtual FieldContainerPtr getContainer() const = 0;
    /// False, and nothing changes, where the container is not of the field's type. Null is accepted.
    virtual bool setContainer(const FieldContainerPtr &container) = 0;
    virtual const FieldContainerType &requiredType() const = 0;
};

/// A field that refers to several containers, seen without its static type.
class KX_SCENEGRAPH_EXPORT MRefFieldBase
{
public:
    virtual ~MRefFieldBase() = default;
    virtual std::size_t containerCount() const = 0;
    virtual FieldContainerPtr containerAt(std::size_t index) const = 0;
    /// False, and nothing changes, where the container is not of the field's type. Null is accepted.
    virtual bool appendContainer(const FieldContainerPtr &container) = 0;
    virtual void clearContainers() = 0;
    virtual const FieldContainerType &requiredType() const = 0;
};

/// Holds one reference to the container it names.
template <Handle T> class RefField final : public RefFieldBase
{
public:
    RefField() = default;
    RefField(const RefField &) = delete;
    RefField &operator=(const RefField &) = delete;
    ~RefField() override { *this = T(); }

    RefField &operator=(const T &value)
    {
        const T old = _value;
        if (value)
            addRef(value);
        _value = value;
        if (old)
            subRef(old);
        return *this;
    }
    operator const T &() const { return _value; }

    FieldContainerPtr getContainer() const override { return _value; }
    bool setContainer(const FieldContainerPtr &container) override
    {
        if (container && !isOfType(container, requiredType()))
            return false;
        *this = T::dcast(container);
        return true;
    }
    const FieldContainerType &requiredType() const override { return T::Object::getClassType(); }

private:
    T _value;
};

/// A field of several values.
template <class T> class MField
{
public:
    using value_type = T;
    using const_iterator = typename std::vector<T>::const_iterator;

    MField() = default;
    MField(std::vector<T> values) : _values(std::move(values)) {}
    MField(std::initializer_list<T> values) : _values(values) {}

    std::size_t size() const { return _values.size(); }
    bool empty() const { return _values.empty(); }
    const T &operator[](std::size_t i) const { return _values[i]; }
    T &operator[](std::size_t i) { return _values[i]; }
    const T *data() const { return _values.data(); }
    T *data() { return _values.data(); }
    auto begin() const { return _values.begin(); }
    auto end() const { return _values.end(); }
    void clear() { _values.clear(); }
    void resize(std::size_t count) { _values.resize(count); }
    void reserve(std::size_t count) { _values.reserve(count); }
    void push_back(const T &value) { _values.push_back(value); }
    void erase(std::size_t i) { _values.erase(_values.begin() + static_cast<std::ptrdiff_t>(i)); }
    const std::vector<T> &values() const { return _values; }
    std::vector<T> &values() { return _values; }

    friend bool operator==(const MField &, const MField &) = default;

private:
    std::vector<T> _values;
};

/// A field of several containers; holds one reference for each entry. Null entries are allowed.
template <Handle T> class MField<T> final : public MRefFieldBase
{
public:
    using value_type = T;

    MField() = default;
    MField(std::initializer_list<T> values)
    {
        for (const T &value : values)
            push_back(value);
    }
    MField(const MField &other) : MRefFieldBase() { assign(other._values); }
    MField &operator=(const MField &other)
    {
        assign(other._values);
        return *this;
    }
    ~MField() override { clear(); }

    std::size_t size() const { return _values.size(); }
    bool empty() const { return _values.empty(); }
    const T &operator[](std::size_t i) const { return _values[i]; }
    auto begin() const { return _values.begin(); }
    auto end() const { return _values.end(); }
    void reserve(std::size_t count) { _values.reserve(count); }
    const std::vector<T> &values() const { return _values; }

    void push_back(const T &value) { insert(_values.size(), value); }
    void insert(std::size_t i, const T &value)
    {
        if (value)
            addRef(value);
        _values.insert(_values.begin() + static_cast<std::ptrdiff_t>(i), value);
    }
    void replace(std::size_t i, const T &value)
    {
        const T old = _values[i];
        if (value)
            addRef(value);
        _values[i] = value;
        if (old)
            subRef(old);
    }
    void erase(std::size_t i)
    {
        const T old = _values[i];
        _values.erase(_values.begin() + static_cast<std::ptrdiff_t>(i));
        if (old)
            subRef(old);
    }
    void clear() { assign({}); }
    void assign(const std::vector<T> &values)
    {
        std::vector<T> next(values);
        for (const T &value : next)
            if (value)
                addRef(value);
        _values.swap(next);
        for (const T &old : next)
            if (old)
                subRef(old);
    }

    std::size_t containerCount() const override { return _values.size(); }
    FieldContainerPtr containerAt(std::size_t index) const override { return _values[index]; }
    bool appendContainer(const FieldContainerPtr &container) override
    {
        if (container && !isOfType(container, requiredType()))
            return false;
        push_back(T::dcast(container));
        return true;
    }
    void clearContainers() override { clear(); }
    const FieldContainerType &requiredType() const override { return T::Object::getClassType(); }

private:
    std::vector<T> _values;
};

/// The address of one field's storage: every kind of field there is.
using FieldPointer =
    std::variant<bool *, std::int32_t *, std::uint32_t *, std::uint64_t *, float *, double *, std::string *, Vec2f *,
                 Vec3f *, Vec4f *, Vec3d *, Quaternion *, Matrix *, StringMap *, RefFieldBase *, MField<std::uint8_t> *,
                 MField<std::int32_t> *, MField<std::uint32_t> *, MField<float> *, MField<double> *, MField<Vec2f> *,
                 MField<Vec3f> *, MField<Vec4f> *, MField<std::string> *, MRefFieldBase *>;

/// What the declaration of a field says about it.
struct FieldInfo
{
    const char *name;
    FieldMask mask;
    FieldPointer (*address)(FieldContainer &);
};

template <class T> FieldPointer toFieldPointer(T &storage)
{
    if constexpr (std::is_base_of_v<RefFieldBase, T>)
        return static_cast<RefFieldBase *>(&storage);
    else if constexpr (std::is_base_of_v<MRefFieldBase, T>)
        return static_cast<MRefFieldBase *>(&storage);
    else
        return &storage;
}

} // namespace osg
