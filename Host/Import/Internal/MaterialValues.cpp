// SPDX-License-Identifier: Apache-2.0
#include "Import/Internal/MaterialValues.h"

#include "Import/Internal/ForeignText.h"

#include <cmath>

namespace kximport {

bool MaterialValues::has(const char *key, unsigned type, unsigned index) const
{
    const aiMaterialProperty *property = nullptr;
    return aiGetMaterialProperty(&_material, key, type, index, &property) == aiReturn_SUCCESS;
}

std::optional<float> MaterialValues::number(const char *key, unsigned type, unsigned index) const
{
    ai_real value = 0;
    if (_material.Get(key, type, index, value) != aiReturn_SUCCESS || !std::isfinite(value))
        return std::nullopt;
    return static_cast<float>(value);
}

std::optional<int> MaterialValues::integer(const char *key, unsigned type, unsigned index) const
{
    int value = 0;
    if (_material.Get(key, type, index, value) != aiReturn_SUCCESS)
        return std::nullopt;
    return value;
}

std::optional<osg::Color4f> MaterialValues::color(const char *key, unsigned type, unsigned index) const
{
    aiColor4D value(0, 0, 0, 1);
    if (_material.Get(key, type, index, value) != aiReturn_SUCCESS)
        return std::nullopt;
    if (!std::isfinite(value.r) || !std::isfinite(value.g) || !std::isfinite(value.b) || !std::isfinite(value.a))
        return std::nullopt;
    return osg::Color4f{value.r, value.g, value.b, value.a};
}

std::string MaterialValues::text(const char *key, unsigned type, unsigned index) const
{
    aiString value;
    if (_material.Get(key, type, index, value) != aiReturn_SUCCESS)
        return {};
    return oneLine(std::string_view(value.C_Str()));
}

} // namespace kximport
