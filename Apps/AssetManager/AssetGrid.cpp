// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetGrid.h"

#include "AssetManager/AssetDelegate.h"
#include "AssetManager/AssetDrag.h"

#include <QStyle>
#include <QWheelEvent>

#include <algorithm>

AssetGrid::AssetGrid(PreviewCache &previews, QWidget *parent)
    : QListView(parent), _previews(previews), _delegate(new AssetDelegate(previews, this))
{
    setObjectName(QStringLiteral("assetGrid"));
    setAccessibleName(tr("Assets as tiles"));
    // Not IconMode, which keeps a place for each item and asks each for its size: here one size and arithmetic do.
    setViewMode(QListView::ListMode);
    setFlow(QListView::LeftToRight);
    setWrapping(true);
    setUniformItemSizes(true);
    setResizeMode(QListView::Adjust);
    setLayoutMode(QListView::SinglePass);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::EditKeyPressed);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setDragEnabled(true);
    setDragDropMode(QAbstractItemView::DragOnly);
    setMouseTracking(true);
    setItemDelegate(_delegate);
    setFrameShape(QFrame::NoFrame);
}

int AssetGrid::tileSize() const
{
    return _delegate->tileSize();
}

void AssetGrid::setTileSize(int size)
{
    const int bounded = std::clamp(size, MinTile, MaxTile);
    if (bounded == tileSize())
        return;
    const QModelIndex first = indexAt({viewport()->width() / 2, 8});
    _delegate->setTileSize(bounded);
    fit();
    if (first.isValid())
        scrollTo(first, QAbstractItemView::PositionAtTop);
    emit tileSizeChanged(bounded);
}

/// Shares the width that is left over among the columns; a scroll bar that comes or goes moves none of them.
void AssetGrid::fit()
{
    const QStyleOptionViewItem option = viewOptions();
    const QSize hint = _delegate->leastSize(option);
    const int room = this->width() - style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this) - 1;
    const int width = std::max(room, hint.width());
    const int columns = std::max(1, width / hint.width());
    _delegate->setTileWidth(width / columns);
    setGridSize({width / columns, hint.height()});
}

void AssetGrid::resizeEvent(QResizeEvent *event)
{
    fit();
    QListView::resizeEvent(event);
}

void AssetGrid::startDrag(Qt::DropActions /*actions*/)
{
    AssetDrag::exec(*this, _previews);
}

void AssetGrid::wheelEvent(QWheelEvent *event)
{
    if ((event->modifiers() & Qt::ControlModifier) == 0) {
        QListView::wheelEvent(event);
        return;
    }
    setTileSize(tileSize() + (event->angleDelta().y() > 0 ? 16 : -16));
    event->accept();
}
