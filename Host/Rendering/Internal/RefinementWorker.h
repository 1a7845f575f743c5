// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/Internal/Cores.h"
#include "Rendering/Internal/SceneSnapshot.h"

#include <QImage>

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace kxRender {

/// Renders pictures that get better and better on a thread of its own: a coarse one, so that there is something to see at
/// once, finer ones where the full resolution takes long, and that with more and more samples.
///
/// A newer job ends an older one, but for its coarse picture: who keeps on turning the camera sees the scene turn. The coarse
/// picture uses all cores, the refinement leaves one to others where there are many; the thread itself gives way to others.
/// Nothing here touches the scene graph.
class RefinementWorker
{
public:
    struct Job
    {
        std::shared_ptr<const SceneSnapshot> scene;
        Camera camera;
        int width = 0; ///< pixels
        int height = 0;
        int samples = 0;
    };
    struct Result
    {
        std::uint64_t job = 0;
        QImage picture;                       ///< of the job's size, also the coarse one
        int samples = 0;                      ///< of the full resolution; 0: a coarse picture
        std::shared_ptr<const NodeMap> nodes; ///< that are seen; of a coarse picture as coarse as that
        bool isComplete = false;
    };

    /// \a deliver is called on the worker's thread, and never again once the worker is gone.
    explicit RefinementWorker(std::function<void(Result)> deliver);
    /// Waits for the tiles that are being rendered.
    ~RefinementWorker();
    RefinementWorker(const RefinementWorker &) = delete;
    RefinementWorker &operator=(const RefinementWorker &) = delete;

    /// Answers the number of the job; later ones have higher numbers.
    std::uint64_t start(Job job);
    /// Nothing more of the jobs that were started is begun; what is on its way may still be delivered. Answers the number that
    /// later jobs exceed.
    std::uint64_t cancel();
    /// While it is paused, no job goes beyond its next picture of the full resolution; afterwards it goes on from there.
    void setPaused(bool paused);

private:
    void run();
    std::optional<Job> nextJob();
    void refine(const Job &job);
    bool renderCoarse(const Job &job, int divisor, const std::function<bool()> &isStopped);
    void renderFull(const Job &job);
    void waitWhilePaused();
    bool isSuperseded() const { return _running != _newest; }
    bool isCancelled() const { return _running < _oldestWanted; }

    std::function<void(Result)> _deliver;
    std::mutex _mutex;
    std::condition_variable _hasWork;
    std::optional<Job> _next;
    bool _isStopping = false;
    std::atomic<bool> _isPaused = false;
    std::atomic<std::uint64_t> _newest = 0;       ///< job
    std::atomic<std::uint64_t> _oldestWanted = 1; ///< older jobs were cancelled
    std::atomic<std::uint64_t> _running = 0;
    double _pathsPerSecond = 0.0; ///< of the last coarse picture; 0: not known yet
    Cores _allCores{Cores::Share::All};
    Cores _mostCores{Cores::Share::Most};
    std::thread _thread; ///< begins when everything else is there
};

} // namespace kxRender
