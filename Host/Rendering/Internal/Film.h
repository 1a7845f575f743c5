// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/Internal/Vector.h"
#include "SceneGraph/Image.h"

#include <array>
#include <cstdint>
#include <vector>

namespace kxRender {

/// Sums up samples: linear light multiplied by its alpha, rows from the bottom up.
class Film
{
public:
    Film(int width, int height);

    int width() const { return _width; }
    int height() const { return _height; }

    /// Pixels are independent; one thread at a time for each.
    void add(int x, int y, V3 color, float alpha);
    V3 color(int x, int y) const;
    float alpha(int x, int y) const;
    int samples(int x, int y) const { return static_cast<int>(at(x, y).count); }

    /// Red, green, blue and alpha of a pixel for the screen.
    std::array<std::uint8_t, 4> developed(int x, int y, float exposure) const;
    /// An 8-bit RGBA picture for the screen. The caller owns one reference.
    osg::ImagePtr develop(float exposure) const;

private:
    struct Pixel
    {
        V3 color;
        float alpha = 0.0F;
        std::uint32_t count = 0;
    };
    Pixel &at(int x, int y)
    {
        return _pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(_width) + static_cast<std::size_t>(x)];
    }
    const Pixel &at(int x, int y) const { return const_cast<Film *>(this)->at(x, y); }

    int _width;
    int _height;
    std::vector<Pixel> _pixels;
};

/// Linear light of any strength as sRGB between 0 and 1: dark and middle tones keep their hue and saturation, light runs
/// softly into white.
V3 toneMapped(V3 color);

} // namespace kxRender
