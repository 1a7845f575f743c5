// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/kxLoadImage.h"

#include "Assets/Internal/HandOver.h"
#include "Assets/kxUrlManager.h"
#include "SceneGraph/ExternalThread.h"

kxLoadImage::kxLoadImage(const QUrl &directory, QImage *image) : _directory(directory), _image(image) {}

void kxLoadImage::run()
{
    kxAssetsInternal::takeOver(this);
    if (const kxUrlManager *manager = kxUrlManager::getUrlManager(_directory)) {
        const osg::KnownThread known;
        manager->loadImageFromDir(_directory, _image);
    }
    kxAssetsInternal::handOver(_image);
    emit finished(_directory, _image);
}
