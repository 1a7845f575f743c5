// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/Internal/Vector.h"
#include "SceneGraph/Material.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace kxRender {

/// Light from all around, as a map of directions: u once around Y, v from nadir to zenith. Bright parts are found in
/// proportion to what they give.
class EnvironmentLight
{
public:
    /// One radiance for every direction; \a radiance is asked at the middle of each pixel.
    EnvironmentLight(int width, int height, const std::function<V3(V3 direction)> &radiance);

    /// What an environment material stands for, the current one of a switch; nothing for other materials.
    static std::optional<EnvironmentLight> from(const osg::MaterialPtr &material);

    V3 radiance(V3 direction) const { return lookUp(direction).radiance; }
    /// Per solid angle.
    float pdf(V3 direction) const { return lookUp(direction).pdf; }
    struct Arrival
    {
        V3 radiance;
        float pdf = 0.0F; ///< with which sample() chooses the direction; per solid angle
    };
    Arrival lookUp(V3 direction) const;
    struct Sample
    {
        V3 direction;
        V3 radiance;
        float pdf = 0.0F; ///< 0: there is no light
    };
    Sample sample(float u, float v) const;

    int width() const { return _width; }
    int height() const { return _height; }

    /// The map's coordinates of a direction, and back.
    static std::pair<float, float> toMap(V3 direction);
    static V3 toDirection(float u, float v);

private:
    const V3 &texel(int x, int y) const
    {
        return _pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(_width) + static_cast<std::size_t>(x)];
    }
    /// \a x and \a y in pixels.
    V3 between(float x, float y) const;
    float pdf(int x, int y, float cosine) const;

    int _width;
    int _height;
    std::vector<V3> _pixels;
    std::vector<float> _rows;                ///< running sums of the rows' weights
    std::vector<float> _columns;             ///< running sums within each row
    std::vector<std::uint16_t> _rowGuide;    ///< where to begin looking in _rows
    std::vector<std::uint16_t> _columnGuide; ///< and in each row of _columns
    std::vector<float> _rowCosines;          ///< of the latitudes of the rows' middles
    float _total = 0.0F;
};

} // namespace kxRender
