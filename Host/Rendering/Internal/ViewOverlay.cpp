// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/ViewOverlay.h"

#include <QPainter>
#include <QPalette>

#include <algorithm>

namespace kxRender {

namespace {

constexpr double ProgressHeight = 2.0;
constexpr double LabelMargin = 8.0;

} // namespace

ViewOverlay::ViewOverlay(QPainter &painter, const QRectF &area, const QPalette &palette)
    : _painter(painter), _area(area), _palette(palette)
{
    _painter.setRenderHint(QPainter::Antialiasing);
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
