// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/PathTracer.h"

#include "Rendering/Internal/Bsdf.h"
#include "Rendering/Internal/Sampler.h"

#include <tbb/blocked_range2d.h>
#include <tbb/parallel_for.h>

namespace kxRender {

namespace {

constexpr int MaxBounces = 16;
constexpr int FirstRoulette = 3;
constexpr int MaxCutOuts = 64;
constexpr float RelativeOffset = 1e-4F;
/// After the first surface single samples are kept below this, against specks that no sample count removes.
constexpr float MaxIndirect = 20.0F;
constexpr int TileSize = 16;

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
const Surface *chooseLayer(const SurfaceLibrary &surfaces, const Hit &hit, float random, SurfacePoint &point)
{
    for (std::uint32_t i = hit.layers->count; i-- > 0;) {
        const Surface &surface = surfaces.surface(hit.layers->first + i);
        point = surfaces.lookUp(surface, hit.u, hit.v);
        if (random < point.opacity)
            return &surface;
        random = point.opacity < 1.0F ? (random - point.opacity) / (1.0F - point.opacity) : 0.0F;
    }
    return nullptr;
}

/// The frame to scatter in, its normal bent by relief maps and turned to the viewer's side.
Frame shadingFrame(const SurfaceLibrary &surfaces, const Surface &surface, const Hit &hit, V3 toViewer, bool flips)
{
    V3 n = hit.normal;
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
    if (flips)
        n = -n;
    // A normal that the viewer cannot see would scatter nothing.
    if (dot(n, toViewer) < 0.02F)
        n = normalize(n + toViewer * (0.02F - dot(n, toViewer)));
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

/// A path on its way from the camera.
struct Path
{
    V3 origin;
    V3 direction;
    V3 throughput{1.0F, 1.0F, 1.0F};
    V3 result;
    float lastPdf = 0.0F; ///< of the direction; 0 where the environment was not looked for before
    int bounce = 0;

    void add(V3 light, int surfaces) { result += surfaces == 0 ? light : clamped(light, MaxIndirect); }
};

/// The surface that a path meets, as its next step needs it.
struct Encounter
{
    SurfacePoint point{};
    Frame frame;
    V3 position;
    V3 side; ///< the geometric normal on the viewer's side
    bool isWithin = false;
};

enum class Meeting { Nothing, CutOut, Surface };

void addEnvironment(Path &path, const EnvironmentLight *light)
{
    if (light == nullptr)
        return;
    const float weight = path.lastPdf > 0.0F ? powerWeight(path.lastPdf, light->pdf(path.direction)) : 1.0F;
    path.add(path.throughput * light->radiance(path.direction) * weight, path.bounce);
}

Meeting meet(const RenderScene &scene, Path &path, float random, Encounter &encounter)
{
    const std::optional<Hit> hit = scene.intersect(path.origin, path.direction);
    if (!hit)
        return Meeting::Nothing;
    const Surface *surface = chooseLayer(scene.surfaces(), *hit, random, encounter.point);
    const bool isBack = dot(hit->geometricNormal, path.direction) > 0.0F;
    const bool isBody = encounter.point.transparency * (1.0F - encounter.point.metalness) > 0.0F;
    if (surface == nullptr || (isBack && !surface->isTwoSided && !isBody)) {
        path.origin = beyond(hit->position, path.direction);
        return Meeting::CutOut;
    }
    encounter.isWithin = isBack && isBody;
    encounter.position = hit->position;
    encounter.side = isBack ? -hit->geometricNormal : hit->geometricNormal;
    encounter.frame = shadingFrame(scene.surfaces(), *surface, *hit, -path.direction, isBack);
    return Meeting::Surface;
}

/// Light that the environment sends here directly. From behind it reaches a surface only through a boundary, which the
/// path itself follows better.
void addDirectLight(const RenderScene &scene, Path &path, const Encounter &encounter, const Bsdf &bsdf, float u,
                    float v)
{
    if (scene.environment() == nullptr)
        return;
    const EnvironmentLight::Sample sample = scene.environment()->sample(u, v);
    if (sample.pdf <= 0.0F || dot(sample.direction, encounter.side) <= 0.0F)
        return;
    const auto [value, pdf] = bsdf.evaluate(encounter.frame.toLocal(sample.direction));
    if (maxOf(value) <= 0.0F)
        return;
    const float through = scene.transmittance(beyond(encounter.position, encounter.side), sample.direction);
    path.add(path.throughput * value * sample.radiance * (through * powerWeight(sample.pdf, pdf) / sample.pdf),
             path.bounce + 1);
}

/// False where the path ends.
bool scatter(Path &path, const Encounter &encounter, const Bsdf::Sample &next)
{
    if (next.pdf <= 0.0F)
        return false;
    path.direction = normalize(encounter.frame.toWorld(next.direction));
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

bool survivesRoulette(Path &path, Sampler &sampler)
{
    if (++path.bounce < FirstRoulette)
        return true;
    const float survival = std::min(0.9F, maxOf(path.throughput));
    if (sampler.next1D() >= survival)
        return false;
    path.throughput *= 1.0F / survival;
    return true;
}

} // namespace

PathTracer::Radiance PathTracer::trace(V3 origin, V3 direction, Sampler &sampler) const
{
    Path path;
    path.origin = origin;
    path.direction = direction;
    int cutOuts = 0;
    while (path.bounce < MaxBounces && cutOuts <= MaxCutOuts) {
        Encounter encounter;
        const Meeting meeting = meet(_scene, path, sampler.next1D(), encounter);
        if (meeting == Meeting::CutOut) {
            ++cutOuts;
            continue;
        }
        if (meeting == Meeting::Nothing) {
            if (path.bounce == 0 && !_isBackgroundVisible)
                return {path.result, 0.0F};
            addEnvironment(path, _scene.environment());
            break;
        }
        if (!encounter.isWithin)
            path.add(path.throughput * encounter.point.emission, path.bounce);

        const Bsdf bsdf(encounter.point, encounter.frame.toLocal(-path.direction), encounter.isWithin);
        const auto [lightU, lightV] = sampler.next2D();
        addDirectLight(_scene, path, encounter, bsdf, lightU, lightV);
        const float lobe = sampler.next1D();
        const auto [u, v] = sampler.next2D();
        if (!scatter(path, encounter, bsdf.sample(lobe, u, v)) || !survivesRoulette(path, sampler))
            break;
    }
    return {path.result, 1.0F};
}

bool PathTracer::render(const Camera &camera, Film &film, int samples, const std::function<bool()> &isCancelled) const
{
    const V3 forward = normalize(camera.at - camera.from);
    const V3 right = normalize(cross(forward, camera.up));
    const V3 up = cross(right, forward);
    const float scale = std::tan(camera.fieldOfView / 2.0F);
    const auto width = static_cast<float>(film.width());
    const auto height = static_cast<float>(film.height());
    std::atomic<bool> isStopped = false;

    const auto renderPixel = [&](int x, int y) {
        const int first = film.samples(x, y);
        for (int s = first; s < first + samples; ++s) {
            Sampler sampler(static_cast<std::uint32_t>(y * film.width() + x), static_cast<std::uint32_t>(s));
            const auto [jx, jy] = sampler.next2D();
            const float px = (2.0F * (static_cast<float>(x) + jx) - width) / height * scale;
            const float py = (2.0F * (static_cast<float>(y) + jy) - height) / height * scale;
            const Radiance seen = trace(camera.from, normalize(forward + right * px + up * py), sampler);
            film.add(x, y, seen.color, seen.alpha);
        }
    };
    tbb::parallel_for(tbb::blocked_range2d<int>(0, film.height(), TileSize, 0, film.width(), TileSize),
                      [&](const tbb::blocked_range2d<int> &tile) {
                          if (isStopped || (isCancelled && isCancelled())) {
                              isStopped = true;
                              return;
                          }
                          for (int y = tile.rows().begin(); y < tile.rows().end(); ++y)
                              for (int x = tile.cols().begin(); x < tile.cols().end(); ++x)
                                  renderPixel(x, y);
                      });
    return !isStopped;
}

} // namespace kxRender
