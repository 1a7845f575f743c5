// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStyledItemDelegate>

class PreviewCache;

/// Paints an asset as a tile: its preview, its name, marks for its state and one for favourites.
class AssetDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// The cache has to live longer.
    AssetDelegate(const PreviewCache &previews, QObject *parent);

    /// The edge of the square that previews are fitted into, in pixels.
    void setTileSize(int size) { _tileSize = size; }
    int tileSize() const { return _tileSize; }
    /// No tile becomes narrower than the text and previews need.
    void setTileWidth(int width) { _tileWidth = width; }
    QSize leastSize(const QStyleOptionViewItem &option) const;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;

private:
    QRect nameRect(const QStyleOptionViewItem &option) const;
    void paintPreview(QPainter &painter, const QRect &frame, const QStyleOptionViewItem &option,
                      const QModelIndex &index) const;
    static void paintMarks(QPainter &painter, const QRect &frame, const QModelIndex &index);

    const PreviewCache &_previews;
    int _tileSize = 128;
    int _tileWidth = 0;
};
