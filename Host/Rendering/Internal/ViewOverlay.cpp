// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/ViewOverlay.h"

#include <QPainter>
#include <QPalette>

#include <algorithm>

namespace kxRender {

namespace {

constexpr double ProgressHeight = 2.0;
constexpr double LabelMargin = 8.0;

osg::Vec3d cornerOf(const osg::Volume &box, unsigned corner)
{
    return {(corner & 1U) != 0 ? box.max()[0] : box.min()[0], (corner & 2U) != 0 ? box.max()[1] : box.min()[1],
            (corner & 4U) != 0 ? box.max()[2] : box.min()[2]};
}

} // namespace

ViewOverlay::ViewOverlay(QPainter &painter, const QRectF &area, const QPalette &palette)
    : _painter(painter), _area(area), _palette(palette)
{
    _painter.setRenderHint(QPainter::Antialiasing);
}

void ViewOverlay::drawBox(const CameraView &view, const osg::Volume &box)
{
    if (box.isEmpty())
        return;
    QVector<QLineF> lines;
    for (unsigned corner = 0; corner < 8; ++corner)
        for (unsigned axis = 1; axis < 8; axis *= 2)
            if ((corner & axis) == 0)
                if (const auto line = view.seen(cornerOf(box, corner), cornerOf(box, corner | axis), _area.size()))
                    lines.append(line->translated(_area.topLeft()));
    // Twice: the wide dark line shows the other one also where the picture has the same colour.
    QColor shade = _palette.color(QPalette::Shadow);
    shade.setAlphaF(0.45);
    _painter.setPen(QPen(shade, 3.5, Qt::SolidLine, Qt::RoundCap));
    _painter.drawLines(lines);
    _painter.setPen(QPen(_palette.color(QPalette::Highlight), 1.5, Qt::SolidLine, Qt::RoundCap));
    _painter.drawLines(lines);
}

void ViewOverlay::drawProgress(double share)
{
    const QRectF line(_area.left(), _area.bottom() - ProgressHeight, _area.width() * std::clamp(share, 0.0, 1.0),
                      ProgressHeight);
    _painter.fillRect(line, _palette.color(QPalette::Highlight));
}

void ViewOverlay::drawLabel(const QString &text)
{
    const QRectF words = _painter.fontMetrics().boundingRect(text);
    const QRectF plate(_area.topLeft() + QPointF(LabelMargin, LabelMargin),
                       QSizeF(words.width() + 2.0 * LabelMargin, words.height() + LabelMargin));
    QColor ground = _palette.color(QPalette::ToolTipBase);
    ground.setAlphaF(0.85);
    _painter.setPen(Qt::NoPen);
    _painter.setBrush(ground);
    _painter.drawRoundedRect(plate, LabelMargin / 2.0, LabelMargin / 2.0);
    _painter.setPen(_palette.color(QPalette::ToolTipText));
    _painter.drawText(plate, Qt::AlignCenter, text);
}

void ViewOverlay::drawFocus()
{
    _painter.setBrush(Qt::NoBrush);
    _painter.setPen(QPen(_palette.color(QPalette::Highlight), 2.0));
    _painter.drawRect(_area.adjusted(1.0, 1.0, -1.0, -1.0));
}

} // namespace kxRender
