// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Rendering/Internal/NodeMap.h"

#include <QColor>
#include <QImage>
#include <QSize>

#include <cstdint>
#include <unordered_set>
#include <vector>

namespace kxRender {

/// The line around what is seen of some nodes, all of them together: where they touch each other there is none, and none
/// along the edges of the picture.
class SelectionOutline
{
public:
    /// For a picture of this size. A map that is coarser gives a rougher line.
    SelectionOutline(const NodeMap &map, const std::unordered_set<std::uint32_t> &ids, const QSize &size);

    /// Transparent but for the line, which lies outside of what it surrounds. The width is in pixels.
    QImage drawn(double width, const QColor &color) const;

private:
    bool isInside(int x, int y) const;
    bool isBorder(int x, int y) const;

    QSize _size;
    std::vector<bool> _inside; ///< of each pixel, rows from the top down
};

} // namespace kxRender
