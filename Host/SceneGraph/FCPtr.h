// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/SceneGraphExport.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace osg {

class FieldContainer;
class FieldContainerType;

/// The null handle, for comparisons and arguments.
inline constexpr std::nullptr_t NullFC = nullptr;

/// Points at a field container without owning it; the root of all handle types.
///
/// Handles compare and order by container id, so every set and map of them has one reproducible order, also when a
/// container it names is gone. In debug builds access through a handle to a destroyed container aborts with a message.
class KX_SCENEGRAPH_EXPORT FieldContainerPtr
{
public:
    using Object = FieldContainer;

    constexpr FieldContainerPtr() = default;
    constexpr FieldContainerPtr(std::nullptr_t) {}
    explicit FieldContainerPtr(FieldContainer *object);

    explicit operator bool() const { return _id != 0; }
    FieldContainer *operator->() const { return checked(); }
    FieldContainer &operator*() const { return *checked(); }
    FieldContainer *get() const { return _object; }

    /// 0 for the null handle.
    std::uint32_t getFieldContainerId() const { return _id; }

    friend bool operator==(const FieldContainerPtr &a, const FieldContainerPtr &b) { return a._id == b._id; }
    friend std::strong_ordering operator<=>(const FieldContainerPtr &a, const FieldContainerPtr &b)
    {
        return a._id <=> b._id;
    }

protected:
#ifdef NDEBUG
    FieldContainer *checked() const
    {
        return _object;
    }
#else
    FieldContainer *checked() const;
#endif

private:
    FieldContainer *_object = nullptr;
    std::uint32_t _id = 0;
};

/// The handle of class \a T, whose parent class has the handle \a BasePtr: up-casts are implicit.
template <class BasePtr, class T> class FCPtr : public BasePtr
{
public:
    using Object = T;

    constexpr FCPtr() = default;
    constexpr FCPtr(std::nullptr_t) {}
    explicit FCPtr(T *object) : BasePtr(object) {}

    T *operator->() const { return static_cast<T *>(this->checked()); }
    T &operator*() const { return *static_cast<T *>(this->checked()); }
    T *get() const { return static_cast<T *>(FieldContainerPtr::get()); }

    /// \a handle as this type, or null when its container is of another type (tested along the chain of parent types).
    static FCPtr dcast(const FieldContainerPtr &handle);
};

template <class T>
concept Handle = std::is_base_of_v<FieldContainerPtr, T>;

KX_SCENEGRAPH_EXPORT void addRef(const FieldContainerPtr &handle);
KX_SCENEGRAPH_EXPORT void subRef(const FieldContainerPtr &handle);
KX_SCENEGRAPH_EXPORT bool isOfType(const FieldContainerPtr &handle, const FieldContainerType &type);

template <class BasePtr, class T> FCPtr<BasePtr, T> FCPtr<BasePtr, T>::dcast(const FieldContainerPtr &handle)
{
    return isOfType(handle, T::getClassType()) ? FCPtr(static_cast<T *>(handle.get())) : FCPtr();
}

/// \a handle as the handle type \a Ptr, or null when its container is of another type.
template <Handle Ptr> Ptr dcast(const FieldContainerPtr &handle)
{
    return Ptr::dcast(handle);
}

/// Owns one reference to a container: what is kept longer than the current statement is kept in one of these.
template <class T> class FCRef
{
public:
    using Ptr = typename T::Ptr;

    FCRef() = default;
    FCRef(std::nullptr_t) {}
    FCRef(const Ptr &handle) : _handle(handle) { acquire(); }
    FCRef(const FCRef &other) : _handle(other._handle) { acquire(); }
    FCRef(FCRef &&other) noexcept : _handle(other._handle) { other._handle = nullptr; }
    ~FCRef() { release(); }

    FCRef &operator=(const FCRef &other)
    {
        FCRef copy(other);
        swap(copy);
        return *this;
    }
    FCRef &operator=(FCRef &&other) noexcept
    {
        swap(other);
        return *this;
    }

    const Ptr &get() const { return _handle; }
    operator const Ptr &() const { return _handle; }
    explicit operator bool() const { return static_cast<bool>(_handle); }
    T *operator->() const { return _handle.operator->(); }
    T &operator*() const { return *_handle; }

    void reset() { *this = FCRef(); }
    void swap(FCRef &other) noexcept
    {
        const Ptr handle = _handle;
        _handle = other._handle;
        other._handle = handle;
    }

    /// Hands the reference over: the receiver releases it. Expects the receiver to know.
    [[nodiscard]] Ptr take()
    {
        const Ptr handle = _handle;
        _handle = nullptr;
        return handle;
    }
    /// Adopts a reference that somebody else added.
    static FCRef adopt(const Ptr &handle)
    {
        FCRef ref;
        ref._handle = handle;
        return ref;
    }

private:
    void acquire()
    {
        if (_handle)
            addRef(_handle);
    }
    void release()
    {
        if (_handle)
            subRef(_handle);
        _handle = nullptr;
    }

    Ptr _handle;
};

} // namespace osg
