// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/Internal/RenderScene.h"
#include "Rendering/Internal/Sampler.h"

#include <array>

namespace kxRender {

class Bsdf;

/// Paths that are followed in step, so that those that have not ended fill packets of rays.
///
/// Each is followed backwards from the camera: at each surface towards the environment and on in a direction of the
/// surface's choosing, the two weighted against each other. Lights without size are never met by chance: each surface asks
/// for all of them, or where there are more than MaxLights for so many, spread evenly over their list from a random start.
/// Paths do not influence each other.
class PathWave
{
public:
    struct Path
    {
        V3 origin;
        V3 direction;
        Sampler sampler;
        int x = 0; ///< the pixel
        int y = 0;
        V3 color;
        float alpha = 1.0F; ///< 0 where nothing but the background was seen
        V3 throughput{1.0F, 1.0F, 1.0F};
        float lastPdf = 0.0F; ///< of the direction; 0 where the environment was not looked for before
        int bounce = 0;
        int cutOuts = 0;
    };

    /// The surface that a path meets, as its next step needs it.
    struct Encounter;

    explicit PathWave(const RenderScene &scene, bool isBackgroundVisible)
        : _scene(scene), _isBackgroundVisible(isBackgroundVisible)
    {}

    bool isFull() const { return _count == Size; }
    /// A path to be filled in. Expects that there is room.
    Path &add() { return _paths[_count++] = Path(); }
    /// Follows all paths to their ends, calls \a use with each in its order, and is empty again.
    template <class Use> void finish(Use use)
    {
        follow();
        for (std::size_t i = 0; i < _count; ++i)
            use(_paths[i]);
        _count = 0;
    }

private:
    static constexpr std::size_t Size = 128;
    static constexpr std::size_t MaxLights = 4;

    /// The random numbers of a step: of the light, of the direction, and of the lobe and the survival.
    enum Pair : std::size_t { LightPair, DirectionPair, ChoicePair };

    /// A ray towards a light, and what arrives where it meets nothing.
    struct Shadow
    {
        V3 origin;
        V3 direction;
        float length = 0.0F;
        V3 light;
        std::size_t path = 0;
        int bounce = 0;
    };

    void follow();
    /// Moves the paths that go on to the front, and answers how many they are.
    std::size_t stepPacket(std::uint8_t *paths, std::size_t count, bool isCoherent);
    /// False where the path ends.
    bool step(std::size_t index, std::size_t lane, const std::optional<Hit> &hit);
    void askEnvironment(std::size_t index, std::size_t lane, const Encounter &encounter, const Bsdf &bsdf);
    void askLights(std::size_t index, const Encounter &encounter, const Bsdf &bsdf);
    void askLight(std::size_t index, const DeltaLight &light, float weight, const Encounter &encounter,
                  const Bsdf &bsdf);
    void addLight();

    const RenderScene &_scene;
    bool _isBackgroundVisible;
    std::size_t _count = 0;
    std::array<Path, Size> _paths;
    Sampler::Numbers _first;
    Sampler::Numbers _second;
    std::size_t _shadowCount = 0;
    std::array<Shadow, Size *(1 + MaxLights)> _shadows;
};

} // namespace kxRender
