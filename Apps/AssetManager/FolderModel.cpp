// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/FolderModel.h"

#include "AssetManager/AssetFilter.h"
#include "AssetManager/DragData.h"
#include "AssetManager/NaturalOrder.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QMimeData>
#include <QStyle>
#include <QUrl>

#include <algorithm>
#include <memory>

namespace {

QStringList filesOf(const QMimeData &data)
{
    QStringList files;
    for (const QUrl &url : data.urls())
        if (url.isLocalFile())
            files.append(url.toLocalFile());
    return files;
}

/// The row in which a folder of this name has its place.
int rowFor(const QStandardItem &parent, const QString &name)
{
    const QCollator collator = NaturalOrder::collator();
    int row = 0;
    while (row < parent.rowCount() && collator.compare(parent.child(row)->text(), name) < 0)
        ++row;
    return row;
}

} // namespace

FolderModel::FolderModel(QObject *parent)
    : QStandardItemModel(parent), _folderIcon(QApplication::style()->standardIcon(QStyle::SP_DirIcon))
{
    QStandardItem *all = makeItem({}, tr("All libraries"));
    all->setEditable(false);
    all->setDragEnabled(false);
    all->setDropEnabled(false);
    all->setIcon(QApplication::style()->standardIcon(QStyle::SP_DirHomeIcon));
    appendRow(all);
}

QStandardItem *FolderModel::makeItem(const QString &path, const QString &name) const
{
    auto *item = new QStandardItem(_folderIcon, name);
    item->setData(path, PathRole);
    item->setToolTip(QDir::toNativeSeparators(path));
    return item;
}

void FolderModel::addLibrary(const QString &path)
{
    if (itemOf(path))
        return;
    QStandardItem *item = makeItem(path, QFileInfo(path).fileName());
    item->setIcon(QApplication::style()->standardIcon(QStyle::SP_DriveHDIcon));
    item->setData(true, LibraryRole);
    item->setEditable(false);
    item->setDragEnabled(false);
    appendRow(item);
}

void FolderModel::removeLibrary(const QString &path)
{
    if (const QStandardItem *item = itemOf(path); item && item->data(LibraryRole).toBool())
        removeRow(item->row());
}

QStringList FolderModel::libraries() const
{
    QStringList paths;
    for (int row = 1; row < rowCount(); ++row)
        paths.append(item(row)->data(PathRole).toString());
    return paths;
}

QString FolderModel::libraryOf(const QString &path) const
{
    const QStringList all = libraries();
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const QString &library) { return AssetFilter::isIn(path, library); });
    return found == all.end() ? QString() : *found;
}

void FolderModel::setProblem(const QString &library, const QString &reason)
{
    QStandardItem *item = itemOf(library);
    if (!item || !item->data(LibraryRole).toBool() || item->data(ProblemRole).toString() == reason)
        return;
    item->setData(reason, ProblemRole);
    showState(*item);
}

void FolderModel::setAwaited(const QString &library, bool isAwaited)
{
    QStandardItem *item = itemOf(library);
    if (!item || !item->data(LibraryRole).toBool() || item->data(AwaitedRole).toBool() == isAwaited)
        return;
    item->setData(isAwaited, AwaitedRole);
    showState(*item);
}

void FolderModel::showState(QStandardItem &library)
{
    const QString problem = library.data(ProblemRole).toString();
    const QString path = QDir::toNativeSeparators(library.data(PathRole).toString());
    if (!problem.isEmpty()) {
        library.setIcon(QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning));
        library.setToolTip(problem);
    } else if (library.data(AwaitedRole).toBool()) {
        library.setIcon(QApplication::style()->standardIcon(QStyle::SP_BrowserReload));
        library.setToolTip(tr("Waiting for \"%1\" to answer").arg(path));
    } else {
        library.setIcon(QApplication::style()->standardIcon(QStyle::SP_DriveHDIcon));
        library.setToolTip(path);
    }
}

QString FolderModel::problemOf(const QString &library) const
{
    return indexOf(library).data(ProblemRole).toString();
}

/// From the library down: folders are shown before what they hold.
QStandardItem *FolderModel::itemOf(const QString &path) const
{
    if (path.isEmpty())
        return item(0);
    QStandardItem *found = nullptr;
    for (int row = 1; row < rowCount() && !found; ++row)
        if (AssetFilter::isIn(path, item(row)->data(PathRole).toString()))
            found = item(row);
    while (found && found->data(PathRole).toString() != path) {
        QStandardItem *next = nullptr;
        for (int row = 0; row < found->rowCount() && !next; ++row)
            if (AssetFilter::isIn(path, found->child(row)->data(PathRole).toString()))
                next = found->child(row);
        found = next;
    }
    return found;
}

QModelIndex FolderModel::indexOf(const QString &path) const
{
    const QStandardItem *found = itemOf(path);
    return found ? found->index() : QModelIndex();
}

void FolderModel::setSubFolders(const QString &path, const QStringList &subFolders)
{
    QStandardItem *parent = itemOf(path);
    if (!parent || path.isEmpty())
        return;
    for (int row = parent->rowCount() - 1; row >= 0; --row)
        if (!subFolders.contains(parent->child(row)->data(PathRole).toString()))
            parent->removeRow(row);
    for (const QString &folder : subFolders)
        addFolder(path, folder);
}

void FolderModel::addFolder(const QString &parent, const QString &folder)
{
    QStandardItem *item = itemOf(parent);
    if (!item || parent.isEmpty() || itemOf(folder))
        return;
    const QString name = QFileInfo(folder).fileName();
    item->insertRow(rowFor(*item, name), makeItem(folder, name));
}

QStringList FolderModel::mimeTypes() const
{
    QStringList types{DragData::folderMimeType(), DragData::nodeMimeType(), DragData::materialMimeType(),
                      QStringLiteral("text/uri-list")};
    for (const kxAssetCategoryType category : kxAssetCategory::getAllCategories())
        types.append(DragData::mimeTypeOf(category));
    return types;
}

QStringList FolderModel::movable(const QModelIndexList &indexes)
{
    QStringList paths;
    for (const QModelIndex &index : indexes)
        if (index.parent().isValid()) // all libraries, and each of them, are at the top
            paths.append(index.data(PathRole).toString());
    QStringList outer;
    for (const QString &path : paths) {
        const bool goesWithOther = std::any_of(paths.begin(), paths.end(), [&](const QString &other) {
            return other != path && AssetFilter::isIn(path, other);
        });
        if (!goesWithOther && !outer.contains(path))
            outer.append(path);
    }
    return outer;
}

QMimeData *FolderModel::mimeData(const QModelIndexList &indexes) const
{
    auto data = std::make_unique<QMimeData>();
    DragData::setFolders(*data, movable(indexes));
    return data.release(); // the caller's
}

bool FolderModel::canDropMimeData(const QMimeData *data, Qt::DropAction /*action*/, int /*row*/, int /*column*/,
                                  const QModelIndex &parent) const
{
    const QString target = parent.data(PathRole).toString();
    if (target.isEmpty())
        return false;
    const QStringList dragged = DragData::folders(*data);
    const bool isIntoItself = std::any_of(dragged.begin(), dragged.end(),
                                          [&](const QString &path) { return AssetFilter::isIn(target, path); });
    const QStringList types = mimeTypes();
    return !isIntoItself &&
           std::any_of(types.begin(), types.end(), [&](const QString &type) { return data->hasFormat(type); });
}

/// The rows are never moved by the view: they follow what happened on the disk.
bool FolderModel::dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                               const QModelIndex &parent)
{
    if (!canDropMimeData(data, action, row, column, parent))
        return false;
    const QString folder = parent.data(PathRole).toString();
    if (const QStringList folders = DragData::folders(*data); !folders.isEmpty())
        emit foldersDropped(folders, folder);
    else if (DragData::hasAssets(*data)) {
        QStringList uuids;
        for (const DragData::Asset &asset : DragData::assets(*data))
            uuids.append(QString::fromStdString(asset.uuid));
        emit assetsDropped(uuids, folder);
    } else if (const auto nodes = DragData::nodes(*data); !nodes.empty())
        emit nodesDropped(nodes, folder);
    else if (const auto materials = DragData::materials(*data); !materials.empty())
        emit materialsDropped(materials, folder);
    else if (const QStringList files = filesOf(*data); !files.isEmpty())
        emit filesDropped(files, folder);
    return false;
}

bool FolderModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole)
        return QStandardItemModel::setData(index, value, role);
    const QString name = value.toString().trimmed();
    if (!name.isEmpty() && name != index.data().toString())
        emit renameRequested(index.data(PathRole).toString(), name);
    return false;
}
