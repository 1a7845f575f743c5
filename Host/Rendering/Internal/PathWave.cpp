// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/PathWave.h"

#include "Rendering/Internal/Bsdf.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace kxRender {

struct PathWave::Encounter
{
    const SurfacePoint *point = nullptr;
    Frame frame;
    V3 position;
    V3 side; ///< the geometric normal on the viewer's side
    std::uint32_t lightGroup = 0;
    bool isWithin = false;
};

namespace {

constexpr int MaxBounces = 16;
constexpr int FirstRoulette = 3;
constexpr int MaxCutOuts = 64;
constexpr float RelativeOffset = 1e-4F;
/// After the first surface single samples are kept below this, against specks that no sample count removes.
constexpr float MaxIndirect = 20.0F;

V3 beyond(V3 position, V3 direction)
{
    return position + direction * (RelativeOffset * (1.0F + length(position)));
}

float powerWeight(float a, float b)
{
    const float a2 = a * a;
    const float sum = a2 + b * b;
    return sum > 0.0F ? a2 / sum : 0.0F;
}

/// The layer that a path meets, from the top, each as likely as it is opaque; null: it passes all of them.
/// \a point is what was met; \a scratch has room for it.
const Surface *chooseLayer(const SurfaceLibrary &surfaces, const Hit &hit, Sampler &sampler, const SurfacePoint *&point,
                           SurfacePoint &scratch)
{
    const Surface &top = surfaces.surface(hit.layers->first + hit.layers->count - 1);
    point = &surfaces.lookUp(top, hit.u, hit.v, scratch);
    if (point->opacity >= 1.0F)
        return &top;
    float random = sampler.next1D();
    for (std::uint32_t i = hit.layers->count; i-- > 0;) {
        const Surface &surface = surfaces.surface(hit.layers->first + i);
        point = &surfaces.lookUp(surface, hit.u, hit.v, scratch);
        if (random < point->opacity)
            return &surface;
        random = point->opacity < 1.0F ? (random - point->opacity) / (1.0F - point->opacity) : 0.0F;
    }
    return nullptr;
}

/// On the viewer's side: a normal that the viewer cannot see would scatter nothing.
V3 facing(V3 normal, V3 toViewer, bool flips)
{
    constexpr float MinCosine = 0.02F;
    const V3 n = flips ? -normal : normal;
    const float cosine = dot(n, toViewer);
    return cosine < MinCosine ? normalize(n + toViewer * (MinCosine - cosine)) : n;
}

/// The frame to scatter in, its normal bent by relief maps and turned to the viewer's side.
Frame shadingFrame(const SurfaceLibrary &surfaces, const Surface &surface, const Hit &hit, V3 toViewer, bool flips)
{
    V3 n = hit.normal;
    if (!surface.needsTangents)
        return frameAround(facing(n, toViewer, flips));
    const V3 t = normalize(hit.tangent - n * dot(n, hit.tangent));
    const V3 b = dot(cross(n, t), hit.bitangent) < 0.0F ? -cross(n, t) : cross(n, t);
    if (const TextureMap *map = surfaces.map(surface.normalMap)) {
        const auto texel = map->sample(hit.u, hit.v);
        const V3 local{(texel[0] * 2.0F - 1.0F) * surface.bump, (texel[1] * 2.0F - 1.0F) * surface.bump,
                       std::max(0.05F, texel[2] * 2.0F - 1.0F)};
        n = normalize(t * local.x + b * local.y + n * local.z);
    }
    if (const TextureMap *map = surfaces.map(surface.bumpMap)) {
        const auto [du, dv] = map->pixelStep();
        const float here = map->sample(hit.u, hit.v)[0];
        const float slopeU = (map->sample(hit.u + du, hit.v)[0] - here) * surface.bump;
        const float slopeV = (map->sample(hit.u, hit.v + dv)[0] - here) * surface.bump;
        n = normalize(n - t * slopeU - b * slopeV);
    }
    n = facing(n, toViewer, flips);
    const V3 x = hit.tangent - n * dot(n, hit.tangent);
    if (dot(x, x) < 1e-12F)
        return frameAround(n);
    const V3 tangent = normalize(x);
    return {tangent, cross(n, tangent), n};
}

V3 clamped(V3 c, float limit)
{
    const float peak = maxOf(c);
    return peak > limit ? c * (limit / peak) : c;
}

void add(PathWave::Path &path, V3 light, int surfaces)
{
    path.color += surfaces == 0 ? light : clamped(light, MaxIndirect);
}

enum class Meeting { Nothing, CutOut, Surface };

void addEnvironment(PathWave::Path &path, const EnvironmentLight *light)
{
    if (light == nullptr)
        return;
    const EnvironmentLight::Arrival arrival = light->lookUp(path.direction);
    const float weight = path.lastPdf > 0.0F ? powerWeight(path.lastPdf, arrival.pdf) : 1.0F;
    add(path, path.throughput * arrival.radiance * weight, path.bounce);
}

Meeting meet(const SurfaceLibrary &surfaces, PathWave::Path &path, const Hit &hit, PathWave::Encounter &encounter,
             SurfacePoint &scratch)
{
    const Surface *surface = chooseLayer(surfaces, hit, path.sampler, encounter.point, scratch);
    const bool isBack = dot(hit.geometricNormal, path.direction) > 0.0F;
    const bool isBody = encounter.point->transparency * (1.0F - encounter.point->metalness) > 0.0F;
    if (surface == nullptr || (isBack && !surface->isTwoSided && !isBody)) {
        path.origin = beyond(hit.position, path.direction);
        return Meeting::CutOut;
    }
    encounter.isWithin = isBack && isBody;
    encounter.lightGroup = hit.lightGroup;
    encounter.position = hit.position;
    encounter.side = isBack ? -hit.geometricNormal : hit.geometricNormal;
    encounter.frame = shadingFrame(surfaces, *surface, hit, -path.direction, isBack);
    return Meeting::Surface;
}

/// False where the path ends.
bool scatter(PathWave::Path &path, const PathWave::Encounter &encounter, const Bsdf::Sample &next)
{
    if (next.pdf <= 0.0F)
        return false;
    path.direction = encounter.frame.toWorld(next.direction);
    const bool goesThrough = dot(path.direction, encounter.side) < 0.0F;
    // A bent normal may send a reflection into the surface, or a refraction out of it.
    if (goesThrough != (next.direction.z < 0.0F))
        return false;
    path.throughput *= next.weight;
    // Found by chance alone where the light was not looked for.
    path.lastPdf = goesThrough ? 0.0F : next.pdf;
    path.origin = beyond(encounter.position, goesThrough ? -encounter.side : encounter.side);
    return true;
}

bool survivesRoulette(PathWave::Path &path, float random)
{
    if (++path.bounce < FirstRoulette)
        return true;
    const float survival = std::min(0.9F, maxOf(path.throughput));
    if (random >= survival)
        return false;
    path.throughput *= 1.0F / survival;
    return true;
}

} // namespace

/// Light that the environment sends here directly. From behind it reaches a surface only through a boundary, which the
/// path itself follows better.
void PathWave::askEnvironment(std::size_t index, std::size_t lane, const Encounter &encounter, const Bsdf &bsdf)
{
    if (_scene.environment() == nullptr)
        return;
    const EnvironmentLight::Sample sample =
        _scene.environment()->sample(_first[LightPair][lane], _second[LightPair][lane]);
    if (sample.pdf <= 0.0F || dot(sample.direction, encounter.side) <= 0.0F)
        return;
    const auto [value, pdf] = bsdf.evaluate(encounter.frame.toLocal(sample.direction));
    if (maxOf(value) <= 0.0F)
        return;
    const Path &path = _paths[index];
    const V3 light = path.throughput * value * sample.radiance * (powerWeight(sample.pdf, pdf) / sample.pdf);
    _shadows[_shadowCount++] = {beyond(encounter.position, encounter.side),
                                sample.direction,
                                std::numeric_limits<float>::infinity(),
                                light,
                                index,
                                path.bounce + 1};
}

/// Numbers are drawn only where lights have to be chosen, so that those of other pictures stay what they are.
void PathWave::askLights(std::size_t index, const Encounter &encounter, const Bsdf &bsdf)
{
    const std::vector<std::uint32_t> &lights = _scene.lightGroup(encounter.lightGroup);
    if (lights.size() <= MaxLights) {
        for (const std::uint32_t light : lights)
            askLight(index, _scene.light(light), 1.0F, encounter, bsdf);
        return;
    }
    const float step = static_cast<float>(lights.size()) / static_cast<float>(MaxLights);
    const float start = _paths[index].sampler.next1D();
    for (std::size_t i = 0; i < MaxLights; ++i) {
        const auto chosen = static_cast<std::size_t>((static_cast<float>(i) + start) * step);
        askLight(index, _scene.light(lights[std::min(chosen, lights.size() - 1)]), step, encounter, bsdf);
    }
}

/// Light from behind is left out, as that of the environment is. The direct light of the first surface holds no specks, and
/// is not limited as that of later ones.
void PathWave::askLight(std::size_t index, const DeltaLight &light, float weight, const Encounter &encounter,
                        const Bsdf &bsdf)
{
    const DeltaLight::Arrival arrival = light.at(encounter.position);
    if (maxOf(arrival.irradiance) <= 0.0F || dot(arrival.direction, encounter.side) <= 0.0F)
        return;
    const V3 value = bsdf.evaluate(encounter.frame.toLocal(arrival.direction)).first;
    if (maxOf(value) <= 0.0F)
        return;
    const Path &path = _paths[index];
    Shadow shadow{beyond(encounter.position, encounter.side),
                  arrival.direction,
                  arrival.distance,
                  path.throughput * value * arrival.irradiance * weight,
                  index,
                  path.bounce};
    if (std::isfinite(arrival.distance)) {
        // Up to just before the light: what it touches does not hide it.
        const V3 end = encounter.position + arrival.direction * arrival.distance;
        const V3 way = beyond(end, -arrival.direction) - shadow.origin;
        shadow.direction = normalize(way);
        shadow.length = dot(way, arrival.direction) > 0.0F ? length(way) : 0.0F;
    }
    _shadows[_shadowCount++] = shadow;
}

void PathWave::addLight()
{
    RayPacket rays;
    std::array<float, RayPacket::Size> shares{};
    for (std::size_t first = 0; first < _shadowCount; first += RayPacket::Size) {
        const std::size_t count = std::min(RayPacket::Size, _shadowCount - first);
        for (std::size_t lane = 0; lane < RayPacket::Size; ++lane)
            rays.areInUse[lane] = lane < count;
        for (std::size_t lane = 0; lane < count; ++lane) {
            rays.origins[lane] = _shadows[first + lane].origin;
            rays.directions[lane] = _shadows[first + lane].direction;
            rays.lengths[lane] = _shadows[first + lane].length;
        }
        _scene.transmittance(rays, shares);
        for (std::size_t lane = 0; lane < count; ++lane) {
            const Shadow &shadow = _shadows[first + lane];
            if (shares[lane] > 0.0F)
                kxRender::add(_paths[shadow.path], shadow.light * shares[lane], shadow.bounce);
        }
    }
    _shadowCount = 0;
}

bool PathWave::step(std::size_t index, std::size_t lane, const std::optional<Hit> &hit)
{
    Path &path = _paths[index];
    if (!hit) {
        if (path.bounce == 0 && !_isBackgroundVisible)
            path.alpha = 0.0F;
        else
            addEnvironment(path, _scene.environment());
        return false;
    }
    Encounter encounter;
    SurfacePoint scratch; // filled where it is needed
    if (meet(_scene.surfaces(), path, *hit, encounter, scratch) == Meeting::CutOut)
        return ++path.cutOuts <= MaxCutOuts;
    if (!encounter.isWithin)
        kxRender::add(path, path.throughput * encounter.point->emission, path.bounce);

    const Bsdf bsdf(*encounter.point, encounter.frame.toLocal(-path.direction), encounter.isWithin);
    askEnvironment(index, lane, encounter, bsdf);
    askLights(index, encounter, bsdf);
    const Bsdf::Sample next =
        bsdf.sample(_first[ChoicePair][lane], _first[DirectionPair][lane], _second[DirectionPair][lane]);
    return scatter(path, encounter, next) && survivesRoulette(path, _second[ChoicePair][lane]) &&
           path.bounce < MaxBounces;
}

std::size_t PathWave::stepPacket(std::uint8_t *paths, std::size_t count, bool isCoherent)
{
    RayPacket rays;
    rays.isCoherent = isCoherent;
    std::array<Sampler *, RayPacket::Size> samplers{};
    Sampler unused;
    samplers.fill(&unused);
    for (std::size_t lane = 0; lane < count; ++lane) {
        Path &path = _paths[paths[lane]];
        rays.areInUse[lane] = true;
        rays.origins[lane] = path.origin;
        rays.directions[lane] = path.direction;
        samplers[lane] = &path.sampler;
    }
    Sampler::next2D(samplers, _first, _second);
    std::array<std::optional<Hit>, RayPacket::Size> hits;
    _scene.intersect(rays, hits);
    std::size_t kept = 0;
    for (std::size_t lane = 0; lane < count; ++lane)
        if (step(paths[lane], lane, hits[lane]))
            paths[kept++] = paths[lane];
    return kept;
}

void PathWave::follow()
{
    std::array<std::uint8_t, Size> paths{}; // those that have not ended come first
    std::iota(paths.begin(), paths.end(), std::uint8_t{0});
    std::size_t count = _count;
    bool isFirst = true; // from the camera, through neighbouring pixels
    while (count > 0) {
        std::size_t kept = 0;
        for (std::size_t first = 0; first < count; first += RayPacket::Size) {
            const std::size_t alive = stepPacket(&paths[first], std::min(RayPacket::Size, count - first), isFirst);
            std::copy_n(&paths[first], alive, &paths[kept]);
            kept += alive;
        }
        addLight();
        count = kept;
        isFirst = false;
    }
}

} // namespace kxRender
