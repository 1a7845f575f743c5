// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/SelectionOutline.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace kxRender {

namespace {

constexpr std::uint8_t Full = 255;

/// White where the nodes are seen.
QImage maskOf(const NodeMap &map, const std::unordered_set<std::uint32_t> &ids)
{
    QImage mask(map.width, map.height, QImage::Format_Grayscale8);
    auto id = map.ids.begin();
    std::uint32_t last = 0; // neighbours are mostly of the same node
    bool isLastOne = false;
    for (int y = 0; y < map.height; ++y) {
        std::uint8_t *line = mask.scanLine(y);
        for (int x = 0; x < map.width; ++x, ++id) {
            if (*id != last) {
                last = *id;
                isLastOne = last != 0 && ids.contains(last);
            }
            line[x] = isLastOne ? Full : 0;
        }
    }
    return mask;
}

/// A step away from the border, and how much of the pixel there the line covers.
struct Step
{
    int x;
    int y;
    int coverage;
};

std::vector<Step> stepsOf(double width)
{
    const int reach = static_cast<int>(std::ceil(width));
    std::vector<Step> steps;
    for (int y = -reach; y <= reach; ++y)
        for (int x = -reach; x <= reach; ++x) {
            const double share = std::clamp(width + 1.0 - std::hypot(x, y), 0.0, 1.0);
            if (const int coverage = static_cast<int>(std::lround(share * Full)); coverage > 0)
                steps.push_back({x, y, coverage});
        }
    return steps;
}

} // namespace

SelectionOutline::SelectionOutline(const NodeMap &map, const std::unordered_set<std::uint32_t> &ids, const QSize &size)
    : _size(size)
{
    QImage mask = maskOf(map, ids);
    if (mask.size() != size)
        mask = mask.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                   .convertToFormat(QImage::Format_Grayscale8);
    _inside.reserve(static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height()));
    for (int y = 0; y < size.height(); ++y) {
        const std::uint8_t *line = mask.constScanLine(y);
        std::transform(line, line + size.width(), std::back_inserter(_inside),
                       [](std::uint8_t share) { return share > Full / 2; });
    }
}

bool SelectionOutline::isInside(int x, int y) const
{
    return _inside[static_cast<std::size_t>(y) * static_cast<std::size_t>(_size.width()) + static_cast<std::size_t>(x)];
}

bool SelectionOutline::isBorder(int x, int y) const
{
    return isInside(x, y) && ((x > 0 && !isInside(x - 1, y)) || (x + 1 < _size.width() && !isInside(x + 1, y)) ||
                              (y > 0 && !isInside(x, y - 1)) || (y + 1 < _size.height() && !isInside(x, y + 1)));
}

QImage SelectionOutline::drawn(double width, const QColor &color) const
{
    const std::vector<Step> steps = stepsOf(width);
    QImage coverage(_size, QImage::Format_Alpha8);
    coverage.fill(0);
    const QRect area = coverage.rect();
    const auto surround = [&](int x, int y) {
        for (const Step &step : steps) {
            const QPoint place(x + step.x, y + step.y);
            if (!area.contains(place) || isInside(place.x(), place.y()))
                continue;
            std::uint8_t &pixel = coverage.scanLine(place.y())[place.x()];
            pixel = std::max(pixel, static_cast<std::uint8_t>(step.coverage));
        }
    };
    for (int y = 0; y < _size.height(); ++y)
        for (int x = 0; x < _size.width(); ++x)
            if (isBorder(x, y))
                surround(x, y);
    QImage line(_size, QImage::Format_ARGB32_Premultiplied);
    line.fill(color);
    QPainter painter(&line);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, coverage);
    painter.end();
    return line;
}

} // namespace kxRender
