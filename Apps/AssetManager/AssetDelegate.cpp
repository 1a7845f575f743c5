// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetDelegate.h"

#include "AssetManager/AssetModel.h"
#include "AssetManager/PreviewCache.h"
#include "AssetManager/StateMark.h"
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace {

constexpr int Margin = 6;
constexpr int Corner = 5;
constexpr int MarkSize = 18;
constexpr int MarkGap = 4;

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
    QRect place(frame.right() - MarkSize - MarkGap, frame.top() + MarkGap, MarkSize, MarkSize);
    for (const StateMark::Kind mark : StateMark::of(index.data(AssetModel::StateRole).toUInt())) {
        StateMark::paint(painter, place, mark);
        place.translate(-MarkSize - 2 * MarkGap, 0);
    }
    if (index.data(AssetModel::FavouriteRole).toBool()) {
        place.moveLeft(frame.left() + MarkGap);
        StateMark::paint(painter, place, StateMark::Kind::Favourite);
    }
}

void AssetDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                         const QModelIndex & /*index*/) const
{
    editor->setGeometry(nameRect(option));
}
