// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxMessage.h"

#include "Kernel/Internal/StandardError.h"

#include <boost/core/demangle.hpp>

kxMessage::kxMessage(std::uint64_t code) : _code(code) {}

void kxMessage::set(const std::string &name, const boost::any &value, bool replace)
{
    if (replace)
        _attributes[name] = value;
    else
        _attributes.emplace(name, value);
}

bool kxMessage::has(const std::string &name) const
{
    return _attributes.count(name) != 0;
}

const boost::any *kxMessage::find(const std::string &name, const std::type_info &requested) const
{
    const auto found = _attributes.find(name);
    if (found == _attributes.end())
        return nullptr;
    if (found->second.type() == requested)
        return &found->second;

    kxKernelInternal::writeToStandardError("kxMessage::get : Attribute '" + name + "' has wrong type (is:'" +
                                           boost::core::demangle(found->second.type().name()) + "' != req:'" +
                                           boost::core::demangle(requested.name()) + "')!\n");
    return nullptr;
}
