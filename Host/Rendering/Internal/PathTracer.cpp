// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/PathTracer.h"

#include "Rendering/Internal/PathWave.h"

#include <tbb/blocked_range2d.h>
#include <tbb/parallel_for.h>

#include <atomic>

namespace kxRender {

namespace {

constexpr int TileSize = 16;

} // namespace

CameraRays::CameraRays(const Camera &camera, float width, float height)
    : _origin(camera.from), _forward(normalize(camera.at - camera.from)), _right(normalize(cross(_forward, camera.up))),
      _up(cross(_right, _forward)), _scale(std::tan(camera.fieldOfView / 2.0F)), _width(width), _height(height)
{}

V3 CameraRays::direction(float x, float y) const
{
    const float px = (2.0F * x - _width) / _height * _scale;
    const float py = (2.0F * y - _height) / _height * _scale;
    return normalize(_forward + _right * px + _up * py);
}

bool PathTracer::render(const Camera &camera, Film &film, int samples, const std::function<bool()> &isCancelled) const
{
    const CameraRays rays(camera, static_cast<float>(film.width()), static_cast<float>(film.height()));
    std::atomic<bool> isStopped = false;

    const auto start = [&](PathWave::Path &path, int x, int y, int sample) {
        path.sampler = Sampler(static_cast<std::uint32_t>(y * film.width() + x), static_cast<std::uint32_t>(sample));
        const auto [jx, jy] = path.sampler.next2D();
        path.origin = rays.origin();
        path.direction = rays.direction(static_cast<float>(x) + jx, static_cast<float>(y) + jy);
        path.x = x;
        path.y = y;
    };
    const auto develop = [&film](const PathWave::Path &path) { film.add(path.x, path.y, path.color, path.alpha); };
    const auto renderTile = [&](const tbb::blocked_range2d<int> &tile) {
        PathWave wave(_scene, _isBackgroundVisible);
        for (int y = tile.rows().begin(); y < tile.rows().end(); ++y)
            for (int x = tile.cols().begin(); x < tile.cols().end(); ++x) {
                const int first = film.samples(x, y);
                for (int s = first; s < first + samples; ++s) {
                    start(wave.add(), x, y, s);
                    if (wave.isFull())
                        wave.finish(develop);
                }
            }
        wave.finish(develop);
    };
    // The simple partitioner's tiles depend on nothing but the picture's size, and with them which paths go together.
    tbb::parallel_for(
        tbb::blocked_range2d<int>(0, film.height(), TileSize, 0, film.width(), TileSize),
        [&](const tbb::blocked_range2d<int> &tile) {
            if (isStopped || (isCancelled && isCancelled()))
                isStopped = true;
            else
                renderTile(tile);
        },
        tbb::simple_partitioner());
    return !isStopped;
}

} // namespace kxRender
