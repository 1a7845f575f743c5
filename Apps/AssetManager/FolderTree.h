// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QTreeView>

class FolderModel;

/// The libraries and their folders as a tree, in which one is chosen, and others may be selected with it.
class FolderTree final : public QTreeView
{
    Q_OBJECT

public:
    explicit FolderTree(FolderModel &model, QWidget *parent = nullptr);

    /// "" for all libraries.
    QString folder() const;
    /// One that is not shown is chosen as soon as it is, unless a person chose another one meanwhile. The same happens to the
    /// chosen one when it goes and comes back, as those on a drive do.
    void setFolder(const QString &path);
    /// The chosen one, or that which is to be chosen as soon as it is shown.
    QString wantedFolder() const;
    /// Those that are selected and can go elsewhere.
    QStringList selectedFolders() const;
    void editName();

Q_SIGNALS:
    void folderChanged(const QString &path);
    void menuRequested(const QPoint &globalPosition);

private:
    void choose(const QModelIndex &index);
    void rowsInserted(const QModelIndex &parent, int first, int last) override;
    void rowsAboutToBeRemoved(const QModelIndex &parent, int first, int last) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void startDrag(Qt::DropActions actions) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

    QString _awaited; ///< "" for none
    bool _isRemoving = false;
};
