// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/Internal/PatternFunctions.h"

#include "AssetSession/Internal/TileableNoise.h"

#include <algorithm>
#include <cmath>

namespace kxAssetSessionInternal {

namespace {

using Place = kxTexturePattern::Place;

constexpr float Pi = 3.14159265F;
constexpr int MaxSeed = 1000000;
constexpr int MaxOctaves = 8;

TileableNoise noiseOf(PatternParameters &parameters)
{
    return TileableNoise(static_cast<std::uint32_t>(parameters.integer("seed", 0, 0, MaxSeed)));
}

float clamped(float x)
{
    return std::clamp(x, 0.0F, 1.0F);
}

float smoothStep(float low, float high, float x)
{
    const float t = clamped((x - low) / (high - low));
    return t * t * (3.0F - 2.0F * t);
}

float fraction(float x)
{
    return x - std::floor(x);
}

/// -1..1 to 0..1, with more contrast: noise seldom comes near its bounds.
float toTone(float noise, float contrast)
{
    return clamped(0.5F + 0.5F * contrast * noise);
}

/// Clouds.
PatternFunction makeNoise(PatternParameters &parameters)
{
    const TileableNoise noise = noiseOf(parameters);
    const auto [countU, countV] = parameters.count("count", {8, 8});
    const int octaves = parameters.integer("octaves", 5, 1, MaxOctaves);
    const float contrast = parameters.number("contrast", 1.6F, 0.0F, 20.0F);
    return [=, countU = countU, countV = countV](float u, float v) {
        const float tone = toTone(noise.fractal(u, v, countU, countV, octaves), contrast);
        return Place{tone, tone, 0.0F, 0.0F};
    };
}

/// Fine scratches along u.
PatternFunction makeBrushed(PatternParameters &parameters)
{
    const TileableNoise noise = noiseOf(parameters);
    const auto [countU, countV] = parameters.count("count", {4, 128});
    return [=, countU = countU, countV = countV](float u, float v) {
        const float fine = noise.gradient(u, v, countU, countV);
        const float coarse = noise.gradient(u, v + 0.37F, std::max(1, countU / 2), std::max(1, countV / 3));
        const float tone = toTone(0.6F * fine + 0.4F * coarse, 1.5F);
        return Place{tone, tone, 0.0F, 0.0F};
    };
}

/// Small plates, each tilted its own way: metallic paint.
PatternFunction makeFlakes(PatternParameters &parameters)
{
    const TileableNoise noise = noiseOf(parameters);
    const auto [countU, countV] = parameters.count("count", {128, 128});
    const float tilt = parameters.number("tilt", 0.3F, 0.0F, 2.0F);
    return [=, countU = countU, countV = countV](float u, float v) {
        const TileableNoise::Cell cell = noise.cell(u, v, countU, countV, 1.0F);
        const float angle = 2.0F * Pi * TileableNoise::random(cell.key, 2);
        const float slope = tilt * std::sqrt(TileableNoise::random(cell.key, 3));
        return Place{TileableNoise::random(cell.key, 4), 0.0F, slope * std::cos(angle), slope * std::sin(angle)};
    };
}

/// Boards cut along the stem, which lies along u: year rings, and pores.
PatternFunction makeWood(PatternParameters &parameters)
{
    const TileableNoise noise = noiseOf(parameters);
    const int rings = parameters.integer("rings", 12, 1, 200);
    const float warp = parameters.number("warp", 1.5F, 0.0F, 10.0F);
    const float pores = parameters.number("pores", 0.5F, 0.0F, 1.0F);
    return [=](float u, float v) {
        const float bend = noise.fractal(u, v, 1, 3, 3);
        const float year = fraction(v * static_cast<float>(rings) + warp * 3.0F * bend);
        const float ring = smoothStep(0.0F, 0.75F, year) * (1.0F - smoothStep(0.9F, 1.0F, year));
        const float fibre = noise.gradient(u, v, 5, 160);
        const float pore = smoothStep(0.25F, 0.55F, noise.gradient(u + 0.21F, v, 14, 220)) * (0.4F + 0.6F * ring);
        const float tone = clamped(0.15F + 0.55F * ring + 0.16F * fibre + 0.18F * bend);
        const float dark = clamped(tone + 0.45F * pores * pore);
        return Place{dark, 0.3F * (1.0F - ring) - pores * pore, 0.0F, 0.0F};
    };
}

/// Pebbled grain with creases between.
PatternFunction makeLeather(PatternParameters &parameters)
{
    const TileableNoise noise = noiseOf(parameters);
    const auto [countU, countV] = parameters.count("count", {40, 40});
    return [=, countU = countU, countV = countV](float u, float v) {
        const float bendU = noise.fractal(u, v, countU / 4 + 1, countV / 4 + 1, 2) * 0.45F / static_cast<float>(countU);
        const float bendV = noise.fractal(v, u, countV / 4 + 1, countU / 4 + 1, 2) * 0.45F / static_cast<float>(countV);
        const TileableNoise::Cell cell = noise.cell(u + bendU, v + bendV, countU, countV, 0.95F);
        const float pebble = smoothStep(0.0F, 0.42F, cell.second - cell.nearest);
        const float fine = noise.fractal(u, v, countU * 2, countV * 2, 2);
        const float wear = noise.fractal(u, v, 4, 4, 3);
        const float height = 0.85F * pebble + 0.12F * fine;
        return Place{clamped(0.75F * pebble + 0.15F + 0.12F * fine + 0.25F * wear), height, 0.0F, 0.0F};
    };
}

/// Woven threads: "step" 1 is linen, 2 and more are twills, whose floats are that long.
PatternFunction makeWeave(PatternParameters &parameters)
{
    const TileableNoise noise = noiseOf(parameters);
    const auto [countU, countV] = parameters.count("count", {48, 48});
    const int step = parameters.integer("step", 1, 1, 8);
    const float fuzz = parameters.number("fuzz", 0.25F, 0.0F, 1.0F);
    if (countU % (2 * step) != 0 || countV % (2 * step) != 0)
        parameters.refuse("count", "a multiple of twice 'step', without which the weave does not meet at the borders");
    return [=, countU = countU, countV = countV](float u, float v) {
        const float x = u * static_cast<float>(countU);
        const float y = v * static_cast<float>(countV);
        const int column = static_cast<int>(std::floor(x));
        const int row = static_cast<int>(std::floor(y));
        const int phase = (column + row) % (2 * step);
        const bool isWarpOnTop = phase < step; // the thread along v
        const float across = fraction(isWarpOnTop ? x : y) - 0.5F;
        // How far along the float: it dives under at both ends.
        const float along =
            (static_cast<float>(phase % step) + fraction(isWarpOnTop ? y : x)) / static_cast<float>(step);
        const float round = std::sqrt(std::max(0.0F, 1.0F - 3.6F * across * across));
        const float arch = 0.45F + 0.55F * std::sin(Pi * clamped(along));
        const float fibre = noise.gradient(u, v, countU * (isWarpOnTop ? 6 : 1), countV * (isWarpOnTop ? 1 : 6));
        const float height = round * arch * (1.0F + 0.2F * fuzz * fibre);
        const float shade = 0.25F * fuzz * fibre - 0.3F * (1.0F - round * arch);
        return Place{clamped((isWarpOnTop ? 0.75F : 0.25F) + shade), height, 0.0F, 0.0F};
    };
}

/// Round dents, sharp between.
PatternFunction makeHammered(PatternParameters &parameters)
{
    const TileableNoise noise = noiseOf(parameters);
    const auto [countU, countV] = parameters.count("count", {16, 16});
    return [=, countU = countU, countV = countV](float u, float v) {
        const TileableNoise::Cell cell = noise.cell(u, v, countU, countV, 0.7F);
        const float depth = std::min(1.0F, cell.nearest * cell.nearest);
        return Place{depth, depth, 0.0F, 0.0F};
    };
}

/// Stone with veins.
PatternFunction makeMarble(PatternParameters &parameters)
{
    const TileableNoise noise = noiseOf(parameters);
    const auto [countU, countV] = parameters.count("count", {3, 3});
    const float sharpness = parameters.number("sharpness", 9.0F, 1.0F, 100.0F);
    return [=, countU = countU, countV = countV](float u, float v) {
        const float bendU = 0.12F * noise.fractal(u, v, countU + 1, countV + 1, 4);
        const float bendV = 0.12F * noise.fractal(v, u, countV + 2, countU + 2, 4);
        const float wide = std::abs(noise.fractal(u + bendU, v + bendV, countU, countV, 3));
        const float thin = std::abs(noise.fractal(u + bendV, v + bendU, countU * 2, countV * 2, 4));
        const float cloud = noise.fractal(u, v, countU, countV, 5);
        const float veins = 0.75F * std::exp(-sharpness * wide) + 0.35F * std::exp(-2.0F * sharpness * thin);
        const float tone = clamped(veins * (0.75F + 0.8F * cloud) + 0.12F * cloud + 0.05F);
        return Place{tone, tone, 0.0F, 0.0F};
    };
}

/// Rectangles with rounded edges and a joint between; the joint's tone is 0.
PatternFunction makeTiles(PatternParameters &parameters)
{
    const TileableNoise noise = noiseOf(parameters);
    const auto [countU, countV] = parameters.count("count", {6, 6});
    const float joint = parameters.number("joint", 0.06F, 0.001F, 0.5F);
    const float variation = parameters.number("variation", 0.25F, 0.0F, 1.0F);
    return [=, countU = countU, countV = countV](float u, float v) {
        const float x = fraction(u * static_cast<float>(countU)) - 0.5F;
        const float y = fraction(v * static_cast<float>(countV)) - 0.5F;
        const float toBorder = 0.5F - std::max(std::abs(x), std::abs(y));
        const float isTile = smoothStep(0.5F * joint, 0.7F * joint, toBorder);
        const TileableNoise::Cell cell = noise.cell(u, v, countU, countV, 0.0F);
        const float own = (TileableNoise::random(cell.key, 2) - 0.5F) * variation;
        const float cloud = 0.25F * variation * noise.fractal(u, v, countU * 2, countV * 2, 3);
        const float height = smoothStep(0.5F * joint, 1.6F * joint, toBorder);
        return Place{isTile * clamped(0.7F + own + cloud), height, 0.0F, 0.0F};
    };
}

/// Chips of stone; "cover" is how much of a cell its chip takes. Between them the tone is 0.
PatternFunction makeChips(PatternParameters &parameters)
{
    const TileableNoise noise = noiseOf(parameters);
    const auto [countU, countV] = parameters.count("count", {20, 20});
    const float cover = parameters.number("cover", 0.5F, 0.0F, 1.0F);
    return [=, countU = countU, countV = countV](float u, float v) {
        const float bend = noise.fractal(u, v, countU * 2, countV * 2, 2) * 0.25F / static_cast<float>(countU);
        const TileableNoise::Cell cell = noise.cell(u + bend, v - bend, countU, countV, 1.0F);
        const float own = TileableNoise::random(cell.key, 3);
        const float margin = cell.second - cell.nearest - 0.5F * (1.0F - cover * own);
        const float isChip = smoothStep(0.0F, 0.04F, margin);
        return Place{isChip * (0.2F + 0.8F * TileableNoise::random(cell.key, 4)), isChip, 0.0F, 0.0F};
    };
}

/// Round holes, every second row moved by half a hole; a hole's tone is 0.
PatternFunction makeHoles(PatternParameters &parameters)
{
    const auto [countU, countV] = parameters.count("count", {24, 24});
    const float radius = parameters.number("radius", 0.32F, 0.01F, 0.5F);
    if (countV % 2 != 0)
        parameters.refuse("count", "even along v, without which the rows do not meet at the borders");
    return [=, countU = countU, countV = countV](float u, float v) {
        const float row = std::floor(v * static_cast<float>(countV));
        const float shift = std::fmod(row, 2.0F) * 0.5F;
        const float x = fraction(u * static_cast<float>(countU) + shift) - 0.5F;
        const float y = fraction(v * static_cast<float>(countV)) - 0.5F;
        const float distance = std::hypot(x, y);
        return Place{distance < radius ? 0.0F : 1.0F, smoothStep(radius, radius + 0.12F, distance), 0.0F, 0.0F};
    };
}

/// Pyramids of a grip.
PatternFunction makeKnurled(PatternParameters &parameters)
{
    const auto [countU, countV] = parameters.count("count", {32, 32});
    return [countU = countU, countV = countV](float u, float v) {
        const float x = u * static_cast<float>(countU);
        const float y = v * static_cast<float>(countV);
        const float a = std::abs(fraction(x + y) - 0.5F);
        const float b = std::abs(fraction(x - y) - 0.5F);
        const float height = 1.0F - std::max(a, b) * 2.0F;
        return Place{clamped(height * 2.0F), height, 0.0F, 0.0F};
    };
}

/// Bands along v: "share" of each has tone 1.
PatternFunction makeStripes(PatternParameters &parameters)
{
    const int count = parameters.integer("stripes", 8, 1, 512);
    const float share = parameters.number("share", 0.5F, 0.0F, 1.0F);
    const float softness = parameters.number("softness", 0.01F, 0.001F, 0.5F);
    return [=](float u, float) {
        const float toMiddle = std::abs(fraction(u * static_cast<float>(count)) - 0.5F);
        const float tone = 1.0F - smoothStep(0.5F * share - softness, 0.5F * share + softness, toMiddle);
        return Place{tone, tone, 0.0F, 0.0F};
    };
}

} // namespace

const std::map<std::string, PatternMaker> &patternMakers()
{
    static const std::map<std::string, PatternMaker> makers = {
        {"brushed", makeBrushed}, {"chips", makeChips},     {"flakes", makeFlakes},   {"hammered", makeHammered},
        {"holes", makeHoles},     {"knurled", makeKnurled}, {"leather", makeLeather}, {"marble", makeMarble},
        {"noise", makeNoise},     {"stripes", makeStripes}, {"tiles", makeTiles},     {"weave", makeWeave},
        {"wood", makeWood},
    };
    return makers;
}

} // namespace kxAssetSessionInternal
