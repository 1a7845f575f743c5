// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetDrag.h"

#include "AssetManager/AssetModel.h"
#include "AssetManager/PreviewCache.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int Edge = 72;
constexpr int Shift = 10;
constexpr int MaxShown = 3;

} // namespace

QPixmap AssetDrag::picture(const QStringList &uuids, const PreviewCache &previews)
{
    const int shown = std::min(static_cast<int>(uuids.size()), MaxShown);
    QPixmap picture(Edge + Shift * (shown - 1) + 8, Edge + Shift * (shown - 1) + 8);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int i = shown - 1; i >= 0; --i) {
        const QRect place(Shift * i, Shift * i, Edge, Edge);
        const QPixmap preview = previews.find(uuids[i]);
        painter.setOpacity(0.9);
        painter.fillRect(place, QApplication::palette().base());
        if (!preview.isNull())
            painter.drawPixmap(place,
                               preview.scaled(Edge, Edge, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation),
                               QRect(0, 0, Edge, Edge));
        painter.setOpacity(1.0);
        painter.setPen(QApplication::palette().color(QPalette::Mid));
        painter.drawRect(place.adjusted(0, 0, -1, -1));
    }
    if (uuids.size() > 1) {
        const QRect badge(picture.width() - 26, picture.height() - 20, 26, 20);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QApplication::palette().highlight());
        painter.drawRoundedRect(badge, 9, 9);
        painter.setPen(QApplication::palette().color(QPalette::HighlightedText));
        painter.drawText(badge, Qt::AlignCenter, QString::number(uuids.size()));
    }
    return picture;
}

void AssetDrag::exec(QAbstractItemView &view, const PreviewCache &previews)
{
    QStringList uuids;
    QModelIndexList indexes;
    for (const QModelIndex &index : view.selectionModel()->selectedIndexes())
        if (index.column() == 0) {
            indexes.append(index);
            uuids.append(index.data(AssetModel::UuidRole).toString());
        }
    if (indexes.isEmpty())
        return;
    auto *drag = new QDrag(&view);
    drag->setMimeData(view.model()->mimeData(indexes));
    drag->setPixmap(picture(uuids, previews));
    drag->setHotSpot({Edge / 2, Edge / 2});
    drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::CopyAction);
}
