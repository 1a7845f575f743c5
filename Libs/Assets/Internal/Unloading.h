// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCoreApplication>

namespace kxAssetsInternal {

/// For destructors of static objects: whether the program goes on without the library, which then leaves nothing behind.
/// When the program ends instead, what else there was may be gone already, and nothing is touched.
inline bool doesProgramGoOn()
{
    return QCoreApplication::instance() != nullptr;
}

/// A static object that is destroyed only when the library is unloaded from a program that goes on.
template <class T> class KeptUntilUnload
{
public:
    KeptUntilUnload() : _object() {}
    ~KeptUntilUnload()
    {
        if (doesProgramGoOn())
            _object.~T();
    }
    KeptUntilUnload(const KeptUntilUnload &) = delete;
    KeptUntilUnload &operator=(const KeptUntilUnload &) = delete;

    T *get() { return &_object; }

private:
    union
    {
        T _object;
    };
};

} // namespace kxAssetsInternal
