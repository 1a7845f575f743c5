// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QModelIndex>

#include <vector>

class QAbstractItemView;
class QPixmap;
class QString;

/// Drags rows of views, with a picture of them under the pointer that says how many they are.
class ItemDrag
{
public:
    ItemDrag() = delete;

    /// The selected rows that may be dragged, by their first column.
    static QModelIndexList dragged(const QAbstractItemView &view);
    /// Drags these rows of a view; returns when the drag has ended. What is moved is not taken out of the view: its model
    /// follows what becomes of it.
    static void exec(QAbstractItemView &view, const QModelIndexList &indexes, Qt::DropActions actions,
                     const QPixmap &picture);
    /// The selected rows, with what they show: pictures as a fan, else the name of the first one.
    static void exec(QAbstractItemView &view, Qt::DropActions actions);

    /// The first of \a previews as a fan, and \a count when that is more than one.
    static QPixmap fan(const std::vector<QPixmap> &previews, int count);
    /// A card with \a text, on top of others and with \a count when that is more than one.
    static QPixmap card(const QString &text, int count);

    static constexpr int MaxShown = 3; ///< previews of a fan, or cards
};
