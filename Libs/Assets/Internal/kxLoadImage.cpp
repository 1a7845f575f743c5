// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/kxLoadImage.h"

#include "Assets/Internal/HandOver.h"
#include "Assets/kxUrlManager.h"
#include "SceneGraph/ExternalThread.h"

namespace {

/// The scene graph reads images only on threads that it knows.
class KnownThread
{
public:
    KnownThread() : _thread(osg::ExternalThread::get(nullptr)) { osg::ExternalThread::initialize(_thread, 0); }
    ~KnownThread() { _thread->subRef(); }
    KnownThread(const KnownThread &) = delete;
    KnownThread &operator=(const KnownThread &) = delete;

private:
    osg::ExternalThread *_thread;
};

} // namespace

kxLoadImage::kxLoadImage(const QUrl &directory, QImage *image) : _directory(directory), _image(image) {}

void kxLoadImage::run()
{
    kxAssetsInternal::takeOver(this);
    if (const kxUrlManager *manager = kxUrlManager::getUrlManager(_directory)) {
        const KnownThread known;
        manager->loadImageFromDir(_directory, _image);
    }
    kxAssetsInternal::handOver(_image);
    emit finished(_directory, _image);
}
