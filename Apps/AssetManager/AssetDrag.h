// SPDX-License-Identifier: Apache-2.0
#pragma once

class PreviewCache;
class QAbstractItemView;

/// Drags the selected assets of a view, with a picture of them under the pointer.
class AssetDrag
{
public:
    AssetDrag() = delete;

    /// Returns when the drag has ended.
    static void exec(QAbstractItemView &view, const PreviewCache &previews);
};
