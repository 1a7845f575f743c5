// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QListView>

class AssetDelegate;
class PreviewCache;

/// Assets as tiles in rows that fill the width. Main thread only.
class AssetGrid final : public QListView
{
    Q_OBJECT

public:
    AssetGrid(PreviewCache &previews, QWidget *parent = nullptr);

    /// In pixels, from MinTile to MaxTile.
    void setTileSize(int size);
    int tileSize() const;

    static constexpr int MinTile = 64;
    static constexpr int MaxTile = 288;

Q_SIGNALS:
    /// Control and the wheel were used.
    void tileSizeChanged(int size);

protected:
    void startDrag(Qt::DropActions actions) override;
    void wheelEvent(QWheelEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void fit();

    PreviewCache &_previews;
    AssetDelegate *_delegate;
};
