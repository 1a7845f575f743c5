// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <Qt>

class PreviewCache;
class QAbstractItemView;
class QPixmap;
class QStringList;

/// Drags the selected assets of a view, with a picture of them under the pointer.
class AssetDrag
{
public:
    AssetDrag() = delete;

    /// Returns when the drag has ended.
    static void exec(QAbstractItemView &view, const PreviewCache &previews);
    /// The first previews as a fan, and how many assets there are when that is more than one.
    static QPixmap picture(const QStringList &uuids, const PreviewCache &previews);
};
