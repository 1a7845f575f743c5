// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/StateMark.h"

#include "AssetManager/AssetStates.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>

#include <cmath>

namespace {

constexpr double Line = 0.1; // of the edge of a mark, as all below
constexpr QColor Hollow(0x50, 0x50, 0x50);

QPainterPath polygon(const QVector<QPointF> &corners)
{
    QPainterPath path;
    path.addPolygon(QPolygonF(corners));
    path.closeSubpath();
    return path;
}

QPainterPath lines(const QVector<QPointF> &points)
{
    QPainterPath path;
    path.addPolygon(QPolygonF(points));
    return path;
}

QPainterPath star()
{
    constexpr int Points = 5;
    constexpr double Inner = 0.46;
    QVector<QPointF> corners;
    for (int i = 0; i < 2 * Points; ++i) {
        const double angle = M_PI * i / Points;
        const double radius = 0.5 * (i % 2 == 0 ? 1 : Inner);
        corners.append({0.5 + radius * std::sin(angle), 0.53 - radius * std::cos(angle)});
    }
    return polygon(corners);
}

QPainterPath shapeOf(StateMark::Kind kind)
{
    QPainterPath path;
    switch (kind) {
    case StateMark::Kind::InScene:
    case StateMark::Kind::NotFound:
        path.addEllipse(QRectF(0.04, 0.04, 0.92, 0.92));
        break;
    case StateMark::Kind::Edited:
        path.addRoundedRect(QRectF(0.06, 0.06, 0.88, 0.88), 0.12, 0.12);
        break;
    case StateMark::Kind::Newer:
        return polygon({{0.5, -0.04}, {1.04, 0.5}, {0.5, 1.04}, {-0.04, 0.5}});
    case StateMark::Kind::Broken:
        return polygon({{0.5, 0.0}, {1.03, 0.96}, {-0.03, 0.96}});
    case StateMark::Kind::Favourite:
        return star();
    }
    return path;
}

/// Drawn, not written: which letters there are depends on the fonts of the desktop.
QPainterPath signOf(StateMark::Kind kind)
{
    QPainterPath path;
    switch (kind) {
    case StateMark::Kind::InScene:
        return lines({{0.28, 0.52}, {0.44, 0.68}, {0.72, 0.34}});
    case StateMark::Kind::Edited: // a pencil
        path = polygon({{0.24, 0.76}, {0.29, 0.57}, {0.62, 0.24}, {0.76, 0.38}, {0.43, 0.71}});
        break;
    case StateMark::Kind::Newer:
        path = lines({{0.5, 0.24}, {0.5, 0.74}});
        path.addPath(lines({{0.3, 0.55}, {0.5, 0.75}, {0.7, 0.55}}));
        break;
    case StateMark::Kind::Broken:
        path = lines({{0.5, 0.38}, {0.5, 0.62}});
        path.addPath(lines({{0.5, 0.8}, {0.5, 0.81}}));
        break;
    case StateMark::Kind::NotFound:
        path.moveTo(0.35, 0.38);
        path.cubicTo({0.35, 0.16}, {0.67, 0.16}, {0.65, 0.4});
        path.cubicTo({0.64, 0.5}, {0.5, 0.48}, {0.5, 0.62});
        path.addPath(lines({{0.5, 0.79}, {0.5, 0.8}}));
        break;
    case StateMark::Kind::Favourite:
        break;
    }
    return path;
}

QColor colorOf(StateMark::Kind kind)
{
    switch (kind) {
    case StateMark::Kind::InScene:
        return {0x2A, 0x7D, 0x38};
    case StateMark::Kind::Edited:
        return {0x1B, 0x66, 0xC9};
    case StateMark::Kind::Newer:
        return {0xB8, 0x56, 0x00};
    case StateMark::Kind::Broken:
        return {0xC6, 0x28, 0x28};
    case StateMark::Kind::NotFound:
        return Qt::white;
    case StateMark::Kind::Favourite:
        break;
    }
    return {0xF2, 0xB1, 0x0E};
}

QPixmap drawn(StateMark::Kind kind, int size, int ratio)
{
    QPixmap pixmap(size * ratio, size * ratio);
    pixmap.fill(Qt::transparent);
    pixmap.setDevicePixelRatio(ratio);
    QPainter painter(&pixmap);
    const double margin = size * Line;
    StateMark::paint(painter, QRectF(margin, margin, size - 2 * margin, size - 2 * margin), kind);
    return pixmap;
}

} // namespace

std::vector<StateMark::Kind> StateMark::of(unsigned states)
{
    std::vector<Kind> kinds;
    if ((states & AssetStates::Broken) != 0)
        kinds.push_back(Kind::Broken);
    if ((states & AssetStates::StoredNewer) != 0)
        kinds.push_back(Kind::Newer);
    if ((states & AssetStates::EditedInScene) != 0)
        kinds.push_back(Kind::Edited);
    if (kinds.empty() && (states & AssetStates::InScene) != 0)
        kinds.push_back(Kind::InScene);
    return kinds;
}

void StateMark::paint(QPainter &painter, const QRectF &place, Kind kind)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(place.topLeft());
    painter.scale(place.width(), place.height());
    const QPainterPath shape = shapeOf(kind);
    const auto outline = [&](const QColor &color, double width) {
        painter.strokePath(shape, QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    };
    outline(QColor(0, 0, 0, 110), 3 * Line); // around white: what is below may be white too
    outline(Qt::white, 2 * Line);
    painter.fillPath(shape, colorOf(kind));
    const bool isHollow = kind == Kind::NotFound;
    if (isHollow)
        outline(Hollow, Line);
    const QPainterPath sign = signOf(kind);
    if (kind == Kind::Edited)
        painter.fillPath(sign, Qt::white);
    else
        painter.strokePath(sign,
                           QPen(isHollow ? Hollow : Qt::white, 1.2 * Line, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.restore();
}

QIcon StateMark::icon(Kind kind)
{
    const int size = QApplication::style()->pixelMetric(QStyle::PM_SmallIconSize);
    QIcon icon;
    for (const int ratio : {1, 2}) {
        const QPixmap pixmap = drawn(kind, size, ratio);
        icon.addPixmap(pixmap);
        icon.addPixmap(pixmap, QIcon::Selected); // else it would be tinted
    }
    return icon;
}
