// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/RenderingExport.h"
#include "SceneGraph/Image.h"

#include <QImage>

/// Pictures that the renderer makes, for Qt.
class KX_RENDERING_EXPORT kxImageRenderWidget
{
public:
    kxImageRenderWidget() = delete;

    /// The picture with its rows from the top down and its alpha kept; a null image for null. Safe on any thread known to
    /// the scene graph.
    static QImage convertToQImage(const osg::ImagePtr &image);
};
