// SPDX-License-Identifier: Apache-2.0
#include "Rendering/kxImageRenderWidget.h"

#include "Rendering/QImageConverter.h"

QImage kxImageRenderWidget::convertToQImage(const osg::ImagePtr &image)
{
    return QImageConverter::convertToQImage(image);
}
