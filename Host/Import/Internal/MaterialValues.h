// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/VectorTypes.h"

#include <assimp/material.h>

#include <optional>
#include <string>

namespace kximport {

/// Reads what a parsed material says; numbers that are not finite count as not said.
///
/// The keys are the parser's macros, which stand for three arguments.
class MaterialValues
{
public:
    explicit MaterialValues(const aiMaterial &material) : _material(material) {}

    const aiMaterial &material() const { return _material; }

    bool has(const char *key, unsigned type, unsigned index) const;
    std::optional<float> number(const char *key, unsigned type, unsigned index) const;
    std::optional<int> integer(const char *key, unsigned type, unsigned index) const;
    /// RGB without alpha has alpha 1.
    std::optional<osg::Color4f> color(const char *key, unsigned type, unsigned index) const;
    /// UTF-8 on one line; "" where nothing is said.
    std::string text(const char *key, unsigned type, unsigned index) const;

private:
    const aiMaterial &_material;
};

} // namespace kximport
