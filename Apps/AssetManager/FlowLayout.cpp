// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/FlowLayout.h"

#include <algorithm>

FlowLayout::FlowLayout(QWidget *parent) : QLayout(parent)
{
    setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout() = default;

void FlowLayout::addItem(QLayoutItem *item)
{
    _items.emplace_back(item);
}

QLayoutItem *FlowLayout::itemAt(int index) const
{
    return index < 0 || index >= count() ? nullptr : _items[static_cast<std::size_t>(index)].get();
}

QLayoutItem *FlowLayout::takeAt(int index)
{
    if (!itemAt(index))
        return nullptr;
    QLayoutItem *item = _items[static_cast<std::size_t>(index)].release();
    _items.erase(_items.begin() + index);
    return item;
}

int FlowLayout::count() const
{
    return static_cast<int>(_items.size());
}

int FlowLayout::heightForWidth(int width) const
{
    return arrange({0, 0, width, 0}, [](QLayoutItem &, const QRect &) {});
}

QSize FlowLayout::minimumSize() const
{
    QSize size;
    for (const auto &item : _items)
        size = size.expandedTo(item->minimumSize());
    return size;
}

void FlowLayout::setGeometry(const QRect &place)
{
    QLayout::setGeometry(place);
    arrange(place, [](QLayoutItem &item, const QRect &room) { item.setGeometry(room); });
}

template <class Place> int FlowLayout::arrange(const QRect &room, const Place &place) const
{
    const int gap = std::max(0, spacing());
    QPoint corner = room.topLeft();
    int bottom = room.top();
    for (const auto &item : _items) {
        const QSize size = item->sizeHint();
        if (corner.x() > room.left() && corner.x() + size.width() > room.left() + room.width())
            corner = {room.left(), bottom + gap};
        place(*item, QRect(corner, size.boundedTo({room.width(), size.height()})));
        corner.rx() += size.width() + gap;
        bottom = std::max(bottom, corner.y() + size.height());
    }
    return bottom - room.top();
}
