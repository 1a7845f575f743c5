// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetTable.h"

#include "AssetManager/AssetDrag.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/AssetStates.h"
#include "AssetManager/PreviewCache.h"
#include "AssetManager/StateMark.h"
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"

#include <QHeaderView>
#include <QPainter>
#include <QStyledItemDelegate>

#include <algorithm>

namespace {

constexpr int RowHeight = 40;
constexpr int MarkSize = 13;

} // namespace

/// Shows the preview, with the marks of the asset's state, before the name.
class AssetTable::NameDelegate final : public QStyledItemDelegate
{
public:
    NameDelegate(const PreviewCache &previews, QObject *parent) : QStyledItemDelegate(parent), _previews(previews) {}

    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->features |= QStyleOptionViewItem::HasDecoration;
        option->decorationSize = {RowHeight - 4, RowHeight - 4};
        const qreal ratio = option->widget ? option->widget->devicePixelRatioF() : 1.0;
        QPixmap preview = previewOf(index.data(AssetModel::UuidRole).toString(), option->decorationSize * ratio);
        preview.setDevicePixelRatio(ratio);
        paintMarks(preview, index);
        option->icon = QIcon(preview);
        option->icon.addPixmap(preview, QIcon::Selected); // else it would be tinted
        if ((index.data(AssetModel::StateRole).toUInt() & AssetStates::InScene) != 0)
            option->font.setBold(true);
    }

private:
    /// With what the item puts over it; empty where there is none, since marks have their place there too.
    QPixmap previewOf(const QString &uuid, const QSize &size) const
    {
        QPixmap preview = _previews.find(uuid);
        if (preview.isNull()) {
            preview = QPixmap(size);
            preview.fill(Qt::transparent);
            return preview;
        }
        preview = preview.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        if (kxAssetItem *item = kxAssetItemFactory::the().findItem(uuid.toStdString()))
            item->addOverlayIcon(preview);
        return preview;
    }
    static void paintMarks(QPixmap &preview, const QModelIndex &index)
    {
        const auto marks = StateMark::of(index.data(AssetModel::StateRole).toUInt());
        QPainter painter(&preview);
        const double right = preview.width() / preview.devicePixelRatio() - 2;
        for (std::size_t i = 0; i < marks.size(); ++i)
            StateMark::paint(
                painter, QRectF(right - MarkSize, 2 + (MarkSize + 3.0) * static_cast<double>(i), MarkSize, MarkSize),
                marks[i]);
        if (index.data(AssetModel::FavouriteRole).toBool())
            StateMark::paint(painter, QRectF(2, 2, MarkSize, MarkSize), StateMark::Kind::Favourite);
    }

    const PreviewCache &_previews;
};

AssetTable::AssetTable(PreviewCache &previews, QWidget *parent) : QTableView(parent), _previews(previews)
{
    setObjectName(QStringLiteral("assetTable"));
    setAccessibleName(tr("Assets as a list"));
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::EditKeyPressed);
    setTabKeyNavigation(false); // which leads to the next control, as everywhere
    setDragEnabled(true);
    setDragDropMode(QAbstractItemView::DragOnly);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setShowGrid(false);
    setAlternatingRowColors(true);
    setWordWrap(false);
    setTextElideMode(Qt::ElideMiddle); // the ends of folders tell more than their beginnings
    setFrameShape(QFrame::NoFrame);
    setItemDelegateForColumn(0, new NameDelegate(previews, this));
    // Heights of their own would have each of a hundred thousand lines asked for.
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(RowHeight);
    verticalHeader()->hide();
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setSortIndicator(0, Qt::AscendingOrder);
    setSortingEnabled(true);
    for (const int letters : {31, 17, 24, 24})
        _widths.append(letters * fontMetrics().averageCharWidth());
    connect(horizontalHeader(), &QHeaderView::sectionResized, this,
            [this](int column, int /*former*/, int width) { keepWidth(column, width); });
}

AssetTable::~AssetTable() = default;

void AssetTable::setModel(QAbstractItemModel *model)
{
    QTableView::setModel(model);
    if (!model)
        return;
    connect(model, &QAbstractItemModel::modelReset, this, &AssetTable::layOutColumns, Qt::UniqueConnection);
    layOutColumns();
}

void AssetTable::layOutColumns()
{
    for (int column = 0; column < _widths.size() && model() && column < model()->columnCount(); ++column)
        setColumnWidth(column, _widths[column]);
}

void AssetTable::setColumnWidths(const QList<int> &widths)
{
    for (int column = 0; column < std::min(widths.size(), _widths.size()); ++column)
        if (widths[column] >= horizontalHeader()->minimumSectionSize())
            _widths[column] = widths[column];
    layOutColumns();
}

/// The last column takes the room that is left, which nobody has chosen.
void AssetTable::keepWidth(int column, int width)
{
    if (column < _widths.size() && column < horizontalHeader()->count() - 1)
        _widths[column] = width;
}

void AssetTable::startDrag(Qt::DropActions /*actions*/)
{
    AssetDrag::exec(*this, _previews);
}
