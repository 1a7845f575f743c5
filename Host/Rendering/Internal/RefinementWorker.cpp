// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/RefinementWorker.h"

#include "Rendering/Internal/FilmPicture.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace kxRender {

namespace {

using Clock = std::chrono::steady_clock;

constexpr double CoarseSeconds = 0.04;   // 25 pictures each second while the camera moves
constexpr double BatchSeconds = 0.1;     // of samples that are asked for at once
constexpr double DeliverySeconds = 0.25; // between two pictures that refine
constexpr int MaxBatch = 8;              // so that no tile takes long to end
constexpr int FirstDivisor = 4;          // of the resolution, while it is not known how fast rendering is
constexpr int MaxDivisor = 8;

double secondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

/// How much coarser than the job a picture has to be that is there in time.
int divisorFor(int width, int height, double pathsPerSecond)
{
    if (pathsPerSecond <= 0.0)
        return FirstDivisor;
    const double affordable = pathsPerSecond * CoarseSeconds;
    int divisor = 1;
    while (divisor<MaxDivisor &&static_cast<double>(width) * height> affordable * divisor * divisor)
        ++divisor;
    return divisor;
}

} // namespace

RefinementWorker::RefinementWorker(std::function<void(Result)> deliver)
    : _deliver(std::move(deliver)), _thread([this] { run(); })
{}

RefinementWorker::~RefinementWorker()
{
    cancel();
    {
        const std::lock_guard lock(_mutex);
        _isStopping = true;
    }
    _hasWork.notify_one();
    _thread.join();
}

std::uint64_t RefinementWorker::start(Job job)
{
    std::uint64_t number = 0;
    std::optional<Job> replaced(std::move(job)); // what it holds then, perhaps a whole scene, goes outside of the lock
    {
        const std::lock_guard lock(_mutex);
        std::swap(_next, replaced);
        number = ++_newest;
    }
    _hasWork.notify_one();
    return number;
}

std::uint64_t RefinementWorker::cancel()
{
    const std::lock_guard lock(_mutex);
    _next.reset();
    _oldestWanted = ++_newest;
    _hasWork.notify_one(); // it may be waiting in the middle of a job
    return _newest;
}

void RefinementWorker::setPaused(bool paused)
{
    const std::lock_guard lock(_mutex);
    _isPaused = paused;
    _hasWork.notify_one();
}

void RefinementWorker::run()
{
    Cores::lowerPriority();
    while (const std::optional<Job> job = nextJob())
        refine(*job);
}

std::optional<RefinementWorker::Job> RefinementWorker::nextJob()
{
    std::unique_lock lock(_mutex);
    _hasWork.wait(lock, [this] { return _next || _isStopping; });
    if (_isStopping)
        return std::nullopt;
    _running = _newest.load();
    return std::exchange(_next, std::nullopt);
}

void RefinementWorker::refine(const Job &job)
{
    int divisor = divisorFor(job.width, job.height, _pathsPerSecond);
    bool isWanted = false;
    _allCores.run([&] { isWanted = renderCoarse(job, divisor, [this] { return isCancelled(); }); });
    if (!isWanted)
        return;
    _mostCores.run([&] {
        const bool isSlow = job.width * static_cast<double>(job.height) > _pathsPerSecond * DeliverySeconds;
        for (divisor /= 2; isSlow && divisor > 1; divisor /= 2)
            if (!renderCoarse(job, divisor, [this] { return isSuperseded(); }))
                return;
        renderFull(job);
    });
}

bool RefinementWorker::renderCoarse(const Job &job, int divisor, const std::function<bool()> &isStopped)
{
    const PathTracer tracer = job.scene->tracer();
    Film film(std::max(1, job.width / divisor), std::max(1, job.height / divisor));
    const Clock::time_point begin = Clock::now();
    if (!tracer.render(job.camera, film, 1, isStopped))
        return false;
    _pathsPerSecond = film.width() * film.height() / std::max(1e-6, secondsSince(begin));
    const QImage picture = pictureOf(film, SceneSnapshot::Exposure);
    auto nodes = job.scene->nodes(job.camera, film.width(), film.height(), isStopped);
    if (!nodes)
        return false;
    _deliver({_running, picture.scaled(job.width, job.height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation), 0,
              std::move(nodes), false});
    return true;
}

void RefinementWorker::renderFull(const Job &job)
{
    const PathTracer tracer = job.scene->tracer();
    const auto isStopped = [this] { return isSuperseded(); };
    const auto nodes = job.scene->nodes(job.camera, job.width, job.height, isStopped);
    if (!nodes)
        return;
    Film film(job.width, job.height);
    Clock::time_point delivered = Clock::now();
    int batch = 1;
    for (int done = 0; done < job.samples;) {
        const int count = std::min(batch, job.samples - done);
        const Clock::time_point begin = Clock::now();
        if (!tracer.render(job.camera, film, count, isStopped))
            return;
        done += count;
        batch = static_cast<int>(
            std::clamp(count * BatchSeconds / std::max(1e-6, secondsSince(begin)), 1.0, static_cast<double>(MaxBatch)));
        const bool isComplete = done == job.samples;
        if (!isComplete && !_isPaused && secondsSince(delivered) < DeliverySeconds)
            continue;
        _deliver({_running, pictureOf(film, SceneSnapshot::Exposure), done, nodes, isComplete});
        waitWhilePaused();
        delivered = Clock::now();
    }
}

void RefinementWorker::waitWhilePaused()
{
    std::unique_lock lock(_mutex);
    _hasWork.wait(lock, [this] { return !_isPaused || isSuperseded() || _isStopping; });
}

} // namespace kxRender
