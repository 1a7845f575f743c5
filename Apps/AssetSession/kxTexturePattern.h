// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/AssetSessionExport.h"
#include "SceneGraph/Image.h"
#include "SceneGraph/Result.h"

#include <QColor>
#include <QJsonObject>

#include <functional>
#include <string>
#include <utility>
#include <vector>

/// A computed texture that continues over its borders: wood, leather, cloth ... See Docs/material-descriptions.md.
///
/// At every place it has a tone, which chooses from colours or values, and a height. Safe on any thread known to the scene
/// graph; the same on every machine for the same description.
class KX_ASSETSESSION_EXPORT kxTexturePattern
{
public:
    /// What a pattern is at one place.
    struct Place
    {
        float tone = 0.0F;   ///< 0 to 1
        float height = 0.0F; ///< scaled by "depth", in widths of the tile
        float slopeX = 0.0F; ///< added to the height's own slope
        float slopeY = 0.0F;
    };

    /// \a description is {"pattern": NAME, ...}; the failure's reason names what is wrong in it.
    static osg::Result<kxTexturePattern> fromJson(const QJsonObject &description);

    /// The names of all patterns, sorted.
    static std::vector<std::string> names();

    Place at(float u, float v) const { return _place(u, v); }

    /// The colours along the tone, sRGB, with alpha where a colour has some. Black to white where none are described.
    osg::FCRef<osg::Image> drawColors() const;
    /// Grey: the values "from" and "to" along the tone, 0 and 1 where they are not described.
    osg::FCRef<osg::Image> drawValues() const;
    /// The height's normals in tangent space, +Y up.
    osg::FCRef<osg::Image> drawNormals() const;

private:
    using Function = std::function<Place(float u, float v)>;
    using Pixel = std::function<void(int x, int y, std::uint8_t *pixel)>;

    kxTexturePattern() = default;
    osg::FCRef<osg::Image> draw(std::uint32_t channels, const Pixel &pixel) const;
    /// In the pixel's middle.
    Place atPixel(int x, int y) const;
    QColor colorOf(float tone) const;

    Function _place;
    int _size = 512;
    std::vector<std::pair<float, QColor>> _colors; ///< by tone
    float _from = 0.0F;
    float _to = 1.0F;
    float _depth = 1.0F;
};
