// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Fields.h"

#include <cstddef>
#include <cstring>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace osg {

/// Several lambdas as one visitor.
template <class... Fs> struct Overloaded : Fs...
{
    using Fs::operator()...;
};
template <class... Fs> Overloaded(Fs...) -> Overloaded<Fs...>;

template <class T> struct IsMField : std::false_type
{};
template <class T> struct IsMField<MField<T>> : std::true_type
{};

/// Numbers and tuples of numbers, which are their bytes.
template <class T>
concept PlainValue = std::is_trivially_copyable_v<T> && !std::is_pointer_v<T>;

/// Several plain values, which lie one after the other in memory.
template <class T>
concept PlainValues = IsMField<T>::value && PlainValue<typename T::value_type>;

} // namespace osg
