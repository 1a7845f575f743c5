// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxTexturePattern.h"

#include "AssetSession/Internal/PatternFunctions.h"
#include "AssetSession/Internal/PatternParameters.h"
#include "SceneGraph/EditCP.h"

#include <algorithm>
#include <cmath>

using kxAssetSessionInternal::PatternMaker;
using kxAssetSessionInternal::patternMakers;
using kxAssetSessionInternal::PatternParameters;

namespace {

constexpr int MinSize = 4;
constexpr int MaxSize = 4096;
constexpr float MaxDepth = 10.0F;

std::uint8_t toByte(float value)
{
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0F, 1.0F) * 255.0F));
}

std::string listed(const std::vector<std::string> &names)
{
    std::string text;
    for (const std::string &name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

int mix(int a, int b, float t)
{
    return static_cast<int>(std::lround(static_cast<float>(a) + static_cast<float>(b - a) * t));
}

} // namespace

std::vector<std::string> kxTexturePattern::names()
{
    std::vector<std::string> result;
    for (const auto &[name, maker] : patternMakers())
        result.push_back(name);
    return result;
}

osg::Result<kxTexturePattern> kxTexturePattern::fromJson(const QJsonObject &description)
{
    PatternParameters parameters(description);
    const std::string name = parameters.text("pattern");
    const auto maker = patternMakers().find(name);
    if (maker == patternMakers().end())
        return osg::Failure{"there is no pattern '" + name + "', but " + listed(names())};
    kxTexturePattern pattern;
    pattern._place = maker->second(parameters);
    pattern._size = parameters.integer("size", pattern._size, MinSize, MaxSize);
    pattern._colors = parameters.colors("colors");
    pattern._from = parameters.number("from", 0.0F, 0.0F, 1.0F);
    pattern._to = parameters.number("to", 1.0F, 0.0F, 1.0F);
    pattern._depth = parameters.number("depth", 1.0F, -MaxDepth, MaxDepth);
    if (const std::string complaint = parameters.complaint(); !complaint.empty())
        return osg::Failure{"pattern '" + name + "': " + complaint};
    if (pattern._colors.empty())
        pattern._colors = {{0.0F, QColor(0, 0, 0)}, {1.0F, QColor(255, 255, 255)}};
    return pattern;
}

osg::FCRef<osg::Image> kxTexturePattern::draw(std::uint32_t channels, const Pixel &pixel) const
{
    osg::FCRef<osg::Image> image(osg::Image::create());
    const osg::CPEditor edit(image.get(), osg::AllFieldMask);
    const auto side = static_cast<std::uint32_t>(_size);
    if (!image->set(side, side, channels, osg::PixelType::UInt8))
        return image;
    std::uint8_t *next = image->editPixels().data();
    for (int y = 0; y < _size; ++y)
        for (int x = 0; x < _size; ++x) {
            pixel(x, y, next);
            next += channels;
        }
    return image;
}

kxTexturePattern::Place kxTexturePattern::atPixel(int x, int y) const
{
    const auto side = static_cast<float>(_size);
    return at((static_cast<float>(x) + 0.5F) / side, (static_cast<float>(y) + 0.5F) / side);
}

QColor kxTexturePattern::colorOf(float tone) const
{
    const auto above =
        std::find_if(_colors.begin(), _colors.end(), [&](const auto &stop) { return stop.first > tone; });
    if (above == _colors.begin())
        return above->second;
    const auto below = std::prev(above);
    if (above == _colors.end())
        return below->second;
    const float t = (tone - below->first) / (above->first - below->first);
    const QColor &a = below->second;
    const QColor &b = above->second;
    return {mix(a.red(), b.red(), t), mix(a.green(), b.green(), t), mix(a.blue(), b.blue(), t),
            mix(a.alpha(), b.alpha(), t)};
}

osg::FCRef<osg::Image> kxTexturePattern::drawColors() const
{
    const bool isOpaque =
        std::all_of(_colors.begin(), _colors.end(), [](const auto &stop) { return stop.second.alpha() == 255; });
    return draw(isOpaque ? 3 : 4, [this, isOpaque](int x, int y, std::uint8_t *pixel) {
        const QColor color = colorOf(atPixel(x, y).tone);
        pixel[0] = static_cast<std::uint8_t>(color.red());
        pixel[1] = static_cast<std::uint8_t>(color.green());
        pixel[2] = static_cast<std::uint8_t>(color.blue());
        if (!isOpaque)
            pixel[3] = static_cast<std::uint8_t>(color.alpha());
    });
}

osg::FCRef<osg::Image> kxTexturePattern::drawValues() const
{
    return draw(
        1, [this](int x, int y, std::uint8_t *pixel) { *pixel = toByte(_from + (_to - _from) * atPixel(x, y).tone); });
}

osg::FCRef<osg::Image> kxTexturePattern::drawNormals() const
{
    std::vector<Place> places;
    places.reserve(static_cast<std::size_t>(_size) * static_cast<std::size_t>(_size));
    for (int y = 0; y < _size; ++y)
        for (int x = 0; x < _size; ++x)
            places.push_back(atPixel(x, y));
    const auto place = [this, &places](int x, int y) -> const Place & {
        const auto row = static_cast<std::size_t>((y + _size) % _size);
        const auto column = static_cast<std::size_t>((x + _size) % _size);
        return places[row * static_cast<std::size_t>(_size) + column];
    };
    const float perDifference = 0.5F * static_cast<float>(_size) * _depth; // of two pixels' heights
    return draw(3, [&](int x, int y, std::uint8_t *pixel) {
        const Place &here = place(x, y);
        const float slopeX = here.slopeX + perDifference * (place(x + 1, y).height - place(x - 1, y).height);
        const float slopeY = here.slopeY + perDifference * (place(x, y + 1).height - place(x, y - 1).height);
        const float length = std::sqrt(slopeX * slopeX + slopeY * slopeY + 1.0F);
        pixel[0] = toByte(0.5F - 0.5F * slopeX / length);
        pixel[1] = toByte(0.5F - 0.5F * slopeY / length);
        pixel[2] = toByte(0.5F + 0.5F / length);
    });
}
