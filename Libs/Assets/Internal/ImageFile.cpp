// SPDX-License-Identifier: Apache-2.0
#include "Assets/Internal/ImageFile.h"

#include "Rendering/kxImageRenderWidget.h"
#include "SceneGraph/Image.h"

#include <QFileInfo>
#include <QImage>

namespace kxAssetsInternal {

bool isAmong(const QList<QByteArray> &formats, const QString &path)
{
    return formats.contains(QFileInfo(path).suffix().toLower().toUtf8());
}

QImage readWithHost(const QString &path)
{
    const osg::FCRef<osg::Image> image(osg::Image::create());
    return image->read(path.toStdString()) ? kxImageRenderWidget::convertToQImage(image) : QImage();
}

} // namespace kxAssetsInternal
