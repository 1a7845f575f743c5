// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/FolderTree.h"

#include "AssetManager/DragData.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/ItemDrag.h"

#include <QDragMoveEvent>
#include <QHeaderView>
#include <QMimeData>

namespace {

constexpr int LeastLetters = 24; // a narrow window takes room from others

} // namespace

FolderTree::FolderTree(FolderModel &model, QWidget *parent) : QTreeView(parent)
{
    setObjectName(QStringLiteral("folderTree"));
    setAccessibleName(tr("Libraries and folders"));
    setModel(&model);
    header()->hide();
    setUniformRowHeights(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::EditKeyPressed);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDropIndicatorShown(true);
    setDragDropMode(QAbstractItemView::DragDrop);
    setDefaultDropAction(Qt::MoveAction);
    setDragDropOverwriteMode(true); // into folders, never between them: their order is that of their names
    setAutoExpandDelay(600);
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QWidget::customContextMenuRequested, this,
            [this](const QPoint &position) { emit menuRequested(viewport()->mapToGlobal(position)); });
    setFrameShape(QFrame::NoFrame);
    setMinimumWidth(LeastLetters * fontMetrics().averageCharWidth());
    connect(&model, &QAbstractItemModel::rowsRemoved, this, [this] {
        _isRemoving = false;
        if (!selectionModel()->hasSelection() && currentIndex().isValid())
            choose(currentIndex()); // what is shown is to be seen
    });
}

QString FolderTree::folder() const
{
    return currentIndex().data(FolderModel::PathRole).toString();
}

void FolderTree::setFolder(const QString &path)
{
    const QModelIndex index = static_cast<const FolderModel *>(model())->indexOf(path);
    if (index.isValid())
        choose(index);
    _awaited = index.isValid() ? QString() : path;
}

/// Whatever keys are held down meanwhile.
void FolderTree::choose(const QModelIndex &index)
{
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    scrollTo(index);
}

QString FolderTree::wantedFolder() const
{
    return _awaited.isEmpty() ? folder() : _awaited;
}

void FolderTree::rowsInserted(const QModelIndex &parent, int first, int last)
{
    QTreeView::rowsInserted(parent, first, last);
    // A library shows its folders at once.
    for (int row = first; !parent.isValid() && row <= last; ++row)
        expand(model()->index(row, 0));
    if (!_awaited.isEmpty() && static_cast<const FolderModel *>(model())->indexOf(_awaited).isValid())
        setFolder(_awaited);
}

void FolderTree::rowsAboutToBeRemoved(const QModelIndex &parent, int first, int last)
{
    _isRemoving = true;
    for (QModelIndex index = currentIndex(); index.isValid(); index = index.parent())
        if (index.parent() == parent && index.row() >= first && index.row() <= last && _awaited.isEmpty())
            _awaited = folder();
    QTreeView::rowsAboutToBeRemoved(parent, first, last);
}

QStringList FolderTree::selectedFolders() const
{
    return FolderModel::movable(selectedIndexes());
}

void FolderTree::editName()
{
    if (currentIndex().isValid())
        edit(currentIndex());
}

void FolderTree::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTreeView::currentChanged(current, previous);
    if (!_isRemoving)
        _awaited.clear();
    emit folderChanged(current.data(FolderModel::PathRole).toString());
}

void FolderTree::startDrag(Qt::DropActions actions)
{
    ItemDrag::exec(*this, actions);
}

void FolderTree::dragMoveEvent(QDragMoveEvent *event)
{
    QTreeView::dragMoveEvent(event);
    // Assets and folders go, files from outside are read and stay.
    if (event->isAccepted() && event->mimeData()->hasUrls() && DragData::folders(*event->mimeData()).isEmpty())
        event->setDropAction(Qt::CopyAction);
}

void FolderTree::dropEvent(QDropEvent *event)
{
    const bool isTaken =
        model()->canDropMimeData(event->mimeData(), event->dropAction(), -1, -1, indexAt(event->pos()));
    QTreeView::dropEvent(event);
    if (!isTaken)
        return;
    // Whoever dragged hears that it was taken; as a copy, so that no view removes rows: they follow the disk.
    event->setDropAction(Qt::CopyAction);
    event->accept();
}
