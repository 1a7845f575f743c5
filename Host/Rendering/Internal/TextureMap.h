// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Texture.h"

#include <array>
#include <cstdint>
#include <vector>

namespace kxRender {

/// A texture as the renderer reads it: its pixels, how they lie on the surface, and how they are decoded.
class TextureMap
{
public:
    /// Expects an image that isUsable().
    explicit TextureMap(const osg::TexturePtr &texture);
    static bool isUsable(const osg::TexturePtr &texture);

    /// RGBA in linear light at a texture coordinate, between the four nearest pixels. Never anything but numbers.
    std::array<float, 4> sample(float u, float v) const;
    /// Whether alpha is 1 everywhere.
    bool isOpaque() const { return _isOpaque; }
    /// The distance of one pixel in texture coordinates of the surface.
    std::array<float, 2> pixelStep() const;

private:
    std::array<float, 4> texel(int x, int y) const;
    std::array<float, 2> mapped(float u, float v) const;

    int _width;
    int _height;
    std::uint32_t _wrapU;
    std::uint32_t _wrapV;
    std::array<float, 6> _matrix;
    bool _isBytes = false;
    bool _isOpaque = true;
    std::vector<std::uint8_t> _bytes; // RGBA
    std::vector<std::array<float, 4>> _floats;
    std::array<float, 256> _decode{}; // of the colour channels of bytes
};

} // namespace kxRender
