// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Internal/OsbLayout.h"

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace kxtest {

/// A scene file put together by hand, with any nonsense in it; lengths and checksums around it are right.
class OsbParts
{
public:
    using Kind = osg::osb::Kind;
    using Fields = std::vector<std::pair<std::string, Kind>>;

    /// Its number.
    std::uint32_t addType(const std::string &name, const Fields &fields);
    /// The reference to it: its number and 1. What follows are its values.
    std::uint32_t addContainer(std::uint32_t type);
    void addInline(std::uint16_t field, const std::string &bytes);
    void addReferences(std::uint16_t field, const std::vector<std::uint32_t> &references);
    void addArray(std::uint16_t field, const std::string &bytes);
    /// An array whose entry is what the caller says.
    void addArray(std::uint16_t field, const std::string &stored, std::uint64_t size, osg::osb::Encoding encoding);

    std::string bytes() const;
    /// Header and arrays around any structure.
    std::string bytesAround(const std::string &structure) const;
    std::string structure() const;

    /// The memory of a value.
    template <class T> static std::string raw(const T &value)
    {
        return std::string(reinterpret_cast<const char *>(&value), sizeof value);
    }
    template <class T> static std::string raw(const std::vector<T> &values)
    {
        return std::string(reinterpret_cast<const char *>(values.data()), values.size() * sizeof(T));
    }
    /// As it stands in lists of texts.
    static std::string text(const std::string &content);

    std::vector<std::pair<std::string, Fields>> types;
    std::vector<osg::osb::Container> containers;
    std::vector<osg::osb::Value> values;
    std::string inlineBytes;
    std::vector<std::uint32_t> references;
    std::vector<osg::osb::Array> arrays;
    std::vector<std::uint32_t> roots;
    std::string arrayBytes;
    std::function<void(osg::OsbHeader &)> changeHeader;

private:
    void addValue(std::uint16_t field, osg::osb::Place place, std::size_t size);
};

} // namespace kxtest
