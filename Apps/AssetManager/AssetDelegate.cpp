// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetDelegate.h"

#include "AssetManager/AssetModel.h"
#include "AssetManager/AssetStates.h"
#include "AssetManager/PreviewCache.h"
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace {

constexpr int Margin = 6;
constexpr int Corner = 5;
constexpr int MarkSize = 16;

struct Mark
{
    unsigned state;
    QColor color;
    QChar sign;
};

/// The worst state first: there is room for one mark.
const std::array<Mark, 4> &marks()
{
    static const std::array<Mark, 4> all = {Mark{AssetStates::Broken, QColor(0xC6, 0x28, 0x28), '!'},
                                            Mark{AssetStates::StoredNewer, QColor(0xE6, 0x7A, 0x00), QChar(0x2193)},
                                            Mark{AssetStates::EditedInScene, QColor(0x1E, 0x6F, 0xD9), QChar(0x2260)},
                                            Mark{AssetStates::InScene, QColor(0x2E, 0x8B, 0x3D), QChar(0x2713)}};
    return all;
}

void paintMark(QPainter &painter, const QRect &place, const QColor &color, QChar sign)
{
    painter.setPen(QPen(Qt::white, 1.5));
    painter.setBrush(color);
    painter.drawEllipse(place);
    QFont font = painter.font();
    font.setPixelSize(MarkSize - 5);
    font.setBold(true);
    painter.setFont(font);
    painter.drawText(place, Qt::AlignCenter, sign);
}

} // namespace

AssetDelegate::AssetDelegate(const PreviewCache &previews, QObject *parent)
    : QStyledItemDelegate(parent), _previews(previews)
{}

QSize AssetDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex & /*index*/) const
{
    const QSize least = leastSize(option);
    return {std::max(_tileWidth, least.width()), least.height()};
}

QSize AssetDelegate::leastSize(const QStyleOptionViewItem &option) const
{
    return {_tileSize + 2 * Margin, _tileSize + 3 * Margin + option.fontMetrics.height()};
}

QRect AssetDelegate::nameRect(const QStyleOptionViewItem &option) const
{
    const int height = option.fontMetrics.height() + 2;
    return {option.rect.left() + Margin / 2, option.rect.top() + 2 * Margin + _tileSize, option.rect.width() - Margin,
            height};
}

void AssetDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    painter->save();
    painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const bool isSelected = (option.state & QStyle::State_Selected) != 0;
    const bool isPointedAt = (option.state & QStyle::State_MouseOver) != 0;
    if (isSelected || isPointedAt) {
        QColor background = option.palette.color(QPalette::Highlight);
        background.setAlpha(isSelected ? 255 : 50);
        painter->setPen(Qt::NoPen);
        painter->setBrush(background);
        painter->drawRoundedRect(option.rect.adjusted(1, 1, -1, -1), Corner, Corner);
    }
    const QRect frame(option.rect.left() + (option.rect.width() - _tileSize) / 2, option.rect.top() + Margin, _tileSize,
                      _tileSize);
    paintPreview(*painter, frame, option, index);
    paintMarks(*painter, frame, index);

    painter->setPen(option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text));
    painter->setFont(option.font);
    const QRect place = nameRect(option);
    painter->drawText(
        place, Qt::AlignCenter,
        option.fontMetrics.elidedText(index.data(Qt::EditRole).toString(), Qt::ElideMiddle, place.width()));
    if ((option.state & QStyle::State_HasFocus) != 0) {
        painter->setPen(QPen(option.palette.color(QPalette::Text), 1, Qt::DotLine));
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(option.rect.adjusted(2, 2, -2, -2), Corner, Corner);
    }
    painter->restore();
}

void AssetDelegate::paintPreview(QPainter &painter, const QRect &frame, const QStyleOptionViewItem &option,
                                 const QModelIndex &index) const
{
    const QString uuid = index.data(AssetModel::UuidRole).toString();
    QPixmap preview = _previews.find(uuid);
    if (preview.isNull()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(option.palette.color(QPalette::AlternateBase));
        painter.drawRoundedRect(frame, Corner, Corner);
        if (_previews.isMissing(uuid)) {
            painter.setPen(option.palette.color(QPalette::Disabled, QPalette::Text));
            painter.drawText(frame, Qt::AlignCenter | Qt::TextWordWrap, AssetDelegate::tr("No preview"));
        }
        return;
    }
    const QSize size = preview.size().scaled(frame.size(), Qt::KeepAspectRatio);
    const qreal ratio = painter.device()->devicePixelRatioF();
    preview = preview.scaled(size * ratio, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    if (kxAssetItem *item = kxAssetItemFactory::the().findItem(uuid.toStdString()))
        item->addOverlayIcon(preview);
    const QRect place(frame.left() + (frame.width() - size.width()) / 2,
                      frame.top() + (frame.height() - size.height()) / 2, size.width(), size.height());
    QPainterPath outline;
    outline.addRoundedRect(place, Corner, Corner);
    painter.save();
    painter.setClipPath(outline);
    painter.drawPixmap(place, preview);
    painter.restore();
}

void AssetDelegate::paintMarks(QPainter &painter, const QRect &frame, const QModelIndex &index)
{
    const unsigned state = index.data(AssetModel::StateRole).toUInt();
    const auto mark = std::find_if(marks().begin(), marks().end(),
                                   [state](const Mark &candidate) { return (state & candidate.state) != 0; });
    const QSize size(MarkSize, MarkSize);
    if (mark != marks().end())
        paintMark(painter, QRect(frame.topRight() - QPoint(MarkSize + 2, -3), size), mark->color, mark->sign);
    if (index.data(AssetModel::FavouriteRole).toBool())
        paintMark(painter, QRect(frame.topLeft() + QPoint(3, 3), size), QColor(0xB8, 0x86, 0x0B), QChar(0x2605));
}

void AssetDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                         const QModelIndex & /*index*/) const
{
    editor->setGeometry(nameRect(option));
}
