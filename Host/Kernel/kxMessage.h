// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/KernelExport.h"

#include <boost/any.hpp>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <typeinfo>

/// A message between the modules of the host: a numeric code for broadcasts, and named attributes of any type.
///
/// A handler answers by setting attributes on the message that it was given. Copies are independent.
class KX_KERNEL_EXPORT kxMessage
{
public:
    /// A message of code 0, as named calls use it.
    kxMessage() = default;
    explicit kxMessage(std::uint64_t code);

    std::uint64_t code() const { return _code; }

    /// Stores \a value under \a name. With \a replace false an attribute that is there already keeps its value.
    /// A text literal is stored as `const char *`; write `std::string("...")` where the receiver reads a string.
    void set(const std::string &name, const boost::any &value, bool replace = true);

    bool has(const std::string &name) const;

    /// The attribute, if it is there and of exactly the type \a Value. An absent one is nothing, silently; one of another
    /// type is nothing as well and writes a line with both type names to standard error.
    template <class Value> std::optional<Value> get(const std::string &name) const
    {
        const boost::any *attribute = find(name, typeid(Value));
        return attribute ? std::optional<Value>(boost::any_cast<const Value &>(*attribute)) : std::nullopt;
    }

    /// The same with the result in \a value, which stays as it was when the answer is false.
    template <class Value> bool get(const std::string &name, Value &value) const
    {
        const boost::any *attribute = find(name, typeid(Value));
        if (attribute)
            value = boost::any_cast<const Value &>(*attribute);
        return attribute != nullptr;
    }

private:
    const boost::any *find(const std::string &name, const std::type_info &requested) const;

    std::uint64_t _code = 0;
    std::map<std::string, boost::any> _attributes;
};
