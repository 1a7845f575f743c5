// SPDX-License-Identifier: Apache-2.0
#pragma once

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
