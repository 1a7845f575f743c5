// SPDX-License-Identifier: Apache-2.0
#include "Rendering/kxProgressiveRendering.h"

#include "Rendering/Internal/RefinementWorker.h"

#include <mutex>
#include <optional>
#include <utility>

struct kxProgressiveRendering::Private
{
    std::shared_ptr<const kxRender::SceneSnapshot> scene;
    std::shared_ptr<const kxRender::NodeMap> nodes; ///< of the newest picture
    std::uint64_t current = 0;                      ///< the last job; 0: it ended
    std::uint64_t oldest = 1;                       ///< whose pictures are wanted
    std::mutex mutex;
    std::optional<kxRender::RefinementWorker::Result> newest; ///< not delivered yet
    std::optional<kxRender::RefinementWorker> worker;         ///< always there but for beginning and end
};

kxProgressiveRendering::kxProgressiveRendering(QObject *parent) : QObject(parent), _private(std::make_unique<Private>())
{
    // One picture waits at most, however busy the main thread is.
    _private->worker.emplace([this](kxRender::RefinementWorker::Result result) {
        const std::lock_guard lock(_private->mutex);
        const bool isWaiting = std::exchange(_private->newest, std::move(result)).has_value();
        if (!isWaiting)
            QMetaObject::invokeMethod(
                this, [this] { deliver(); }, Qt::QueuedConnection);
    });
}

kxProgressiveRendering::~kxProgressiveRendering()
{
    _private->worker.reset(); // while everything that it delivers to is still there
}

void kxProgressiveRendering::setScene(const std::vector<osg::NodePtr> &roots, bool isBackgroundVisible)
{
    _private->scene = kxRender::SceneSnapshot::take(roots, isBackgroundVisible);
}

void kxProgressiveRendering::clearScene()
{
    cancel();
    _private->scene.reset();
    _private->nodes.reset();
}

quint64 kxProgressiveRendering::start(const osg::UberCameraPtr &camera, const QSize &size, int samples)
{
    if (!_private->scene || !camera || size.isEmpty() || samples < 1) {
        cancel();
        return 0;
    }
    _private->current =
        _private->worker->start({_private->scene, kxRender::cameraOf(*camera), size.width(), size.height(), samples});
    return _private->current;
}

void kxProgressiveRendering::cancel()
{
    _private->oldest = _private->worker->cancel();
    _private->current = 0;
}

void kxProgressiveRendering::setPaused(bool paused)
{
    _private->worker->setPaused(paused);
}

bool kxProgressiveRendering::isRunning() const
{
    return _private->current != 0;
}

quint32 kxProgressiveRendering::nodeAt(const osg::UberCameraPtr &camera, const QSizeF &size, const QPointF &place) const
{
    if (!_private->scene || !camera || size.isEmpty())
        return 0;
    const kxRender::CameraRays rays(kxRender::cameraOf(*camera), static_cast<float>(size.width()),
                                    static_cast<float>(size.height()));
    return _private->scene->nodeAt(rays, static_cast<float>(place.x()), static_cast<float>(size.height() - place.y()));
}

std::shared_ptr<const kxRender::NodeMap> kxProgressiveRendering::nodes() const
{
    return _private->nodes;
}

void kxProgressiveRendering::deliver()
{
    std::optional<kxRender::RefinementWorker::Result> result;
    {
        const std::lock_guard lock(_private->mutex);
        result = std::exchange(_private->newest, std::nullopt);
    }
    if (!result || result->job < _private->oldest || result->picture.isNull())
        return;
    const bool isLast = result->isComplete && result->job == _private->current;
    if (isLast)
        _private->current = 0;
    _private->nodes = result->nodes;
    emit pictureReady(result->picture, result->samples, result->job);
    if (isLast)
        emit finished();
}
