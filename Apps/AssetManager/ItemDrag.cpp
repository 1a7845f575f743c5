// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ItemDrag.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDrag>
#include <QIcon>
#include <QMimeData>
#include <QPainter>
#include <QPixmap>

#include <algorithm>

namespace {

constexpr int Edge = 72; // pixels, as all below
constexpr int Shift = 10;
constexpr int CardShift = 4;
constexpr int CardMargin = 8;
constexpr int MaxCardWidth = 240;
constexpr int BadgeRoom = 8;
constexpr QSize Badge(26, 20);

QPixmap canvas(const QSize &size)
{
    const qreal ratio = qApp->devicePixelRatio();
    QPixmap picture(size * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    return picture;
}

void paintGround(QPainter &painter, const QRect &place)
{
    painter.setOpacity(0.9);
    painter.fillRect(place, QApplication::palette().base());
    painter.setOpacity(1.0);
}

void paintFrame(QPainter &painter, const QRect &place)
{
    painter.setPen(QApplication::palette().color(QPalette::Mid));
    painter.drawRect(place.adjusted(0, 0, -1, -1));
}

/// In the lower right corner of a picture of that size.
void paintCount(QPainter &painter, const QSize &size, int count)
{
    if (count < 2)
        return;
    const QRect badge(QPoint(size.width() - Badge.width(), size.height() - Badge.height()), Badge);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QApplication::palette().highlight());
    painter.drawRoundedRect(badge, 9, 9);
    painter.setPen(QApplication::palette().color(QPalette::HighlightedText));
    painter.drawText(badge, Qt::AlignCenter, QString::number(count));
}

} // namespace

QModelIndexList ItemDrag::dragged(const QAbstractItemView &view)
{
    QModelIndexList indexes;
    for (const QModelIndex &index : view.selectionModel()->selectedIndexes())
        if (index.column() == 0 && (index.flags() & Qt::ItemIsDragEnabled) != 0)
            indexes.append(index);
    return indexes;
}

void ItemDrag::exec(QAbstractItemView &view, const QModelIndexList &indexes, Qt::DropActions actions,
                    const QPixmap &picture)
{
    QMimeData *data = indexes.isEmpty() ? nullptr : view.model()->mimeData(indexes);
    if (!data)
        return;
    const Qt::DropAction usual = view.defaultDropAction();
    auto *drag = new QDrag(&view);
    drag->setMimeData(data);
    drag->setPixmap(picture);
    const QSize size = picture.size() / picture.devicePixelRatio();
    drag->setHotSpot({std::min(Edge, size.width()) / 2, std::min(Edge, size.height()) / 2});
    drag->exec(actions, (usual & actions) != 0 ? usual : Qt::CopyAction);
}

void ItemDrag::exec(QAbstractItemView &view, Qt::DropActions actions)
{
    const QModelIndexList indexes = dragged(view);
    if (indexes.isEmpty())
        return;
    std::vector<QPixmap> previews;
    for (int i = 0; i < std::min(indexes.size(), MaxShown); ++i) {
        const auto icon = indexes[i].data(Qt::DecorationRole).value<QIcon>();
        if (view.iconSize().height() >= Edge / 2) // smaller ones are no pictures of what is dragged
            previews.push_back(icon.pixmap(Edge));
    }
    exec(view, indexes, actions,
         previews.empty() ? card(indexes.first().data().toString(), indexes.size()) : fan(previews, indexes.size()));
}

QPixmap ItemDrag::fan(const std::vector<QPixmap> &previews, int count)
{
    const int shown = std::min(static_cast<int>(previews.size()), MaxShown);
    const int edge = Edge + Shift * (shown - 1) + BadgeRoom;
    QPixmap picture = canvas({edge, edge});
    QPainter painter(&picture);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    for (int i = shown - 1; i >= 0; --i) {
        const QRect place(Shift * i, Shift * i, Edge, Edge);
        const QPixmap &preview = previews[static_cast<std::size_t>(i)];
        paintGround(painter, place);
        if (!preview.isNull()) {
            const int side = std::min(preview.width(), preview.height());
            painter.setOpacity(0.9);
            painter.drawPixmap(place, preview,
                               QRect((preview.width() - side) / 2, (preview.height() - side) / 2, side, side));
            painter.setOpacity(1.0);
        }
        paintFrame(painter, place);
    }
    paintCount(painter, {edge, edge}, count);
    return picture;
}

QPixmap ItemDrag::card(const QString &text, int count)
{
    const int shown = std::min(count, MaxShown);
    const QFontMetrics metrics(QApplication::font());
    const QString name = metrics.elidedText(text, Qt::ElideMiddle, MaxCardWidth);
    const QSize front(metrics.horizontalAdvance(name) + 2 * CardMargin, metrics.height() + 2 * CardMargin);
    const int spread = CardShift * (shown - 1);
    const int badge = count > 1 ? Badge.width() / 2 : 0;
    const QSize size(front.width() + spread + badge, front.height() + spread + (count > 1 ? BadgeRoom : 0));
    QPixmap picture = canvas(size);
    QPainter painter(&picture);
    for (int i = shown - 1; i >= 0; --i) {
        const QRect place(QPoint(CardShift * i, CardShift * i), front);
        paintGround(painter, place);
        paintFrame(painter, place);
    }
    painter.setPen(QApplication::palette().color(QPalette::Text));
    painter.drawText(QRect(QPoint(0, 0), front), Qt::AlignCenter, name);
    paintCount(painter, size, count);
    return picture;
}
