// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QTreeView>

class FolderModel;

/// The libraries and their folders as a tree, in which one is chosen.
class FolderTree final : public QTreeView
{
    Q_OBJECT

public:
    explicit FolderTree(FolderModel &model, QWidget *parent = nullptr);

    /// "" for all libraries.
    QString folder() const;
    void setFolder(const QString &path);
    void editName();

Q_SIGNALS:
    void folderChanged(const QString &path);
    void menuRequested(const QPoint &globalPosition);

private:
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void startDrag(Qt::DropActions actions) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
};
