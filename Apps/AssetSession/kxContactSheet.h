// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetSession/AssetSessionExport.h"

#include <QImage>
#include <QString>

#include <vector>

/// One picture that shows the previews of many assets with their names. Needs a QGuiApplication for its fonts.
class KX_ASSETSESSION_EXPORT kxContactSheet
{
public:
    struct Tile
    {
        QString name;
        QString detail; ///< small text below the name
        QImage preview; ///< fills the tile, cut where it is not square; a null image leaves the tile empty
    };

    explicit kxContactSheet(const QString &title) : _title(title) {}

    void addTile(const Tile &tile) { _tiles.push_back(tile); }
    /// 0: as many as make the sheet a little wider than high.
    void setColumns(int columns) { _columns = columns; }
    /// The width of one preview in pixels.
    void setTileSize(int size) { _tileSize = size; }

    QImage paint() const;

private:
    QString _title;
    std::vector<Tile> _tiles;
    int _columns = 0;
    int _tileSize = 220;
};
