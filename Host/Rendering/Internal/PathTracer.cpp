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

} // namespace

PathTracer::Radiance PathTracer::trace(V3 origin, V3 direction, Sampler &sampler) const
{
    const EnvironmentLight *light = _scene.environment();
    const SurfaceLibrary &surfaces = _scene.surfaces();
    V3 result;
    V3 throughput{1.0F, 1.0F, 1.0F};
    float lastPdf = 0.0F; // 0: the camera
    int cutOuts = 0;
    const auto add = [&](V3 contribution, int bounce) {
        result += bounce == 0 ? contribution : clamped(contribution, MaxIndirect);
    };

    for (int bounce = 0; bounce < MaxBounces;) {
        const std::optional<Hit> hit = _scene.intersect(origin, direction);
        if (!hit) {
            if (bounce == 0 && !_isBackgroundVisible)
                return {result, 0.0F};
            if (light != nullptr) {
                const float weight = lastPdf > 0.0F ? powerWeight(lastPdf, light->pdf(direction)) : 1.0F;
                add(throughput * light->radiance(direction) * weight, bounce);
            }
            break;
        }
        SurfacePoint point{};
        const Surface *surface = chooseLayer(surfaces, *hit, sampler.next1D(), point);
        const bool isBack = dot(hit->geometricNormal, direction) > 0.0F;
        const bool isBody = point.transparency * (1.0F - point.metalness) > 0.0F;
        if (surface == nullptr || (isBack && !surface->isTwoSided && !isBody)) {
            if (++cutOuts > MaxCutOuts)
                break;
            origin = beyond(hit->position, direction);
            continue;
        }
        if (!isBack || !isBody)
            add(throughput * point.emission, bounce);

        const V3 toViewer = -direction;
        const V3 side = isBack ? -hit->geometricNormal : hit->geometricNormal;
        const Frame frame = shadingFrame(surfaces, *surface, *hit, toViewer, isBack);
        const Bsdf bsdf(point, frame.toLocal(toViewer), isBack && isBody);

        const auto [lu, lv] = sampler.next2D();
        if (light != nullptr) {
            const EnvironmentLight::Sample sample = light->sample(lu, lv);
            // Light from behind reaches the surface only through a boundary, which the path itself follows better.
            if (sample.pdf > 0.0F && dot(sample.direction, side) > 0.0F) {
                const auto [value, pdf] = bsdf.evaluate(frame.toLocal(sample.direction));
                if (maxOf(value) > 0.0F) {
                    const float through =
                        _scene.transmittance(beyond(hit->position, side), sample.direction);
                    add(throughput * value * sample.radiance *
                            (through * powerWeight(sample.pdf, pdf) / sample.pdf), bounce + 1);
                }
            }
        }

        const float lobe = sampler.next1D();
        const auto [u, v] = sampler.next2D();
        const Bsdf::Sample next = bsdf.sample(lobe, u, v);
        if (next.pdf <= 0.0F)
            break;
        direction = normalize(frame.toWorld(next.direction));
        const bool goesThrough = dot(direction, side) < 0.0F;
        // A bent normal may send a reflection into the surface, or a refraction out of it.
        if (goesThrough != (next.direction.z < 0.0F))
            break;
        throughput *= next.weight;
        // Found by chance alone where the light was not looked for.
        lastPdf = goesThrough ? 0.0F : next.pdf;
        origin = beyond(hit->position, goesThrough ? -side : side);
        if (++bounce >= FirstRoulette) {
            const float survival = std::min(0.9F, maxOf(throughput));
            if (sampler.next1D() >= survival)
                break;
            throughput *= 1.0F / survival;
        }
    }
    return {result, 1.0F};
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
