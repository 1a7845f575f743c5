// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetDrag.h"

#include "AssetManager/AssetModel.h"
#include "AssetManager/ItemDrag.h"
#include "AssetManager/PreviewCache.h"

#include <QAbstractItemView>

#include <algorithm>

void AssetDrag::exec(QAbstractItemView &view, const PreviewCache &previews)
{
    const QModelIndexList indexes = ItemDrag::dragged(view);
    std::vector<QPixmap> shown;
    for (int i = 0; i < std::min(indexes.size(), ItemDrag::MaxShown); ++i)
        shown.push_back(previews.find(indexes[i].data(AssetModel::UuidRole).toString()));
    ItemDrag::exec(view, indexes, Qt::CopyAction | Qt::MoveAction, ItemDrag::fan(shown, indexes.size()));
}
