// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxContactSheet.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace {

const QColor Background(30, 31, 34);
const QColor TileBackground(43, 45, 49);
const QColor TitleColor(240, 240, 242);
const QColor NameColor(222, 223, 226);
const QColor DetailColor(146, 149, 156);

constexpr int Gap = 18;
constexpr int Margin = 32;
constexpr int HeaderHeight = 56;
constexpr int LabelHeight = 52;
constexpr int Radius = 10;

QFont fontOf(int pixels, QFont::Weight weight)
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(pixels);
    font.setWeight(weight);
    return font;
}

void drawText(QPainter &painter, const QRect &rect, const QFont &font, const QColor &color, const QString &text)
{
    painter.setFont(font);
    painter.setPen(color);
    painter.drawText(rect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     QFontMetrics(font).elidedText(text, Qt::ElideMiddle, rect.width()));
}

void drawPreview(QPainter &painter, const QRect &rect, const kxContactSheet::Tile &tile)
{
    if (tile.preview.isNull()) {
        painter.setFont(fontOf(12, QFont::Normal));
        painter.setPen(DetailColor);
        painter.drawText(rect, Qt::AlignCenter, QStringLiteral("no preview"));
        return;
    }
    const QImage scaled = tile.preview.scaled(rect.size(), Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    const QRect middle((scaled.width() - rect.width()) / 2, (scaled.height() - rect.height()) / 2, rect.width(),
                       rect.height());
    painter.drawImage(rect, scaled, middle);
}

void drawTile(QPainter &painter, const QRect &rect, int previewSize, const kxContactSheet::Tile &tile)
{
    QPainterPath outline;
    outline.addRoundedRect(rect, Radius, Radius);
    painter.save();
    painter.setClipPath(outline);
    painter.fillPath(outline, TileBackground);
    drawPreview(painter, QRect(rect.topLeft(), QSize(previewSize, previewSize)), tile);
    painter.restore();
    const QRect label = rect.adjusted(12, previewSize + 6, -12, -6);
    drawText(painter, QRect(label.topLeft(), QSize(label.width(), 22)), fontOf(13, QFont::DemiBold), NameColor,
             tile.name);
    drawText(painter, QRect(label.left(), label.top() + 21, label.width(), 18), fontOf(11, QFont::Normal), DetailColor,
             tile.detail);
}

} // namespace

QImage kxContactSheet::paint() const
{
    const int count = std::max(1, static_cast<int>(_tiles.size()));
    const int columns = std::min(count, _columns > 0 ? _columns : static_cast<int>(std::ceil(std::sqrt(count * 1.5))));
    const int rows = (count + columns - 1) / columns;
    const int tileHeight = _tileSize + LabelHeight;
    QImage sheet(2 * Margin + columns * _tileSize + (columns - 1) * Gap,
                 2 * Margin + HeaderHeight + rows * tileHeight + (rows - 1) * Gap, QImage::Format_RGB32);
    if (sheet.isNull())
        return sheet;
    sheet.fill(Background);

    QPainter painter(&sheet);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
    const QRect header(Margin, Margin - 8, sheet.width() - 2 * Margin, HeaderHeight);
    drawText(painter, header.adjusted(0, 0, 0, -22), fontOf(22, QFont::Bold), TitleColor, _title);
    drawText(painter, header.adjusted(0, 32, 0, 0), fontOf(12, QFont::Normal), DetailColor,
             _tiles.size() == 1 ? QStringLiteral("1 asset") : QStringLiteral("%1 assets").arg(_tiles.size()));
    for (int i = 0; i < static_cast<int>(_tiles.size()); ++i)
        drawTile(painter,
                 QRect(Margin + (i % columns) * (_tileSize + Gap),
                       Margin + HeaderHeight + (i / columns) * (tileHeight + Gap), _tileSize, tileHeight),
                 _tileSize, _tiles[static_cast<std::size_t>(i)]);
    return sheet;
}
