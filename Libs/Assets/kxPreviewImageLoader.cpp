// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxPreviewImageLoader.h"

#include "Assets/Internal/HandOver.h"
#include "Assets/Internal/MainThread.h"
#include "Assets/Internal/kxLoadImage.h"

#include <QCoreApplication>
#include <QEvent>
#include <QImage>
#include <QMetaMethod>
#include <QThreadPool>

#include <memory>

namespace {

constexpr int NormalPriority = 0;

/// Tasks run code of this library, so none may be left when it is unloaded.
class DrainsPoolAtUnload
{
public:
    /// Has the pool made first: static objects go in reverse order, so it is still there when this one goes.
    DrainsPoolAtUnload() { QThreadPool::globalInstance(); }
    ~DrainsPoolAtUnload()
    {
        if (QThreadPool *pool = QThreadPool::globalInstance())
            pool->waitForDone();
    }
};

} // namespace

kxPreviewImageLoader::kxPreviewImageLoader(QObject *parent) : QObject(parent)
{
    static const DrainsPoolAtUnload drain;
}

kxPreviewImageLoader::~kxPreviewImageLoader()
{
    _pending.clear();
}

void kxPreviewImageLoader::deliverAll()
{
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
}

void kxPreviewImageLoader::loadImageFromDir(const QUrl &directory)
{
    Q_ASSERT(kxAssetsInternal::isOnMainThread());
    if (_pending.find(directory) != _pending.end())
        return;
    auto image = std::make_unique<QImage>();
    auto task = std::make_unique<kxLoadImage>(directory, image.get());
    connect(task.get(), &kxLoadImage::finished, this, &kxPreviewImageLoader::previewReady);
    _pending.emplace(directory, image.release());
    // The pool owns the task from here on.
    kxAssetsInternal::handOver(task.get());
    QThreadPool::globalInstance()->start(task.release(), NormalPriority);
}

void kxPreviewImageLoader::previewReady(const QUrl &directory, QImage *image)
{
    kxAssetsInternal::takeOver(image);
    // Forgotten only afterwards: while it is being announced, the directory still counts as loading.
    if (image) {
        // Without a receiver the image would be nobody's.
        if (image->isNull() || !isSignalConnected(QMetaMethod::fromSignal(&kxPreviewImageLoader::previewLoaded)))
            delete image;
        else
            emit previewLoaded(directory, image);
    }
    _pending.erase(directory);
}
