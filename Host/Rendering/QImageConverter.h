// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/RenderingExport.h"
#include "SceneGraph/Image.h"

#include <QImage>

/// Pictures between Qt and the scene graph, whose rows run from the bottom up. The two directions undo each other.
///
/// Values are taken as they stand; nothing is tone-mapped. Safe on any thread known to the scene graph.
class KX_RENDERING_EXPORT QImageConverter
{
public:
    QImageConverter() = delete;

    /// A copy of the picture, whatever its channels and type; half and float values are clamped to 0..1 and keep 16 bits.
    /// A null image for null and for an image that is empty or damaged.
    static QImage convertToQImage(const osg::ImagePtr &image);

    /// Fills \a image with the picture: 8 bits a channel, or float where the format has more. Any QImage format.
    /// False, and nothing changes, for a null image on either side.
    static bool convertToOSGImage(const QImage &source, const osg::ImagePtr &image);
};
