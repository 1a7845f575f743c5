// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/Internal/CameraView.h"
#include "SceneGraph/Volume.h"

#include <QRectF>
#include <QString>

class QPainter;
class QPalette;

namespace kxRender {

/// Draws what a view shows over its picture, in the colours of the palette.
class ViewOverlay
{
public:
    ViewOverlay(QPainter &painter, const QRectF &area, const QPalette &palette);

    /// The edges of a box; nothing for an empty one.
    void drawBox(const CameraView &view, const osg::Volume &box);
    /// A thin line along the lower edge; \a share from 0 to 1.
    void drawProgress(double share);
    /// In the upper left corner.
    void drawLabel(const QString &text);
    void drawFocus();

private:
    QPainter &_painter;
    QRectF _area;
    const QPalette &_palette;
};

} // namespace kxRender
