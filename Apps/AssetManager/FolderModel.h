// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QIcon>
#include <QStandardItemModel>

#include <cstdint>
#include <vector>

/// Libraries and the folders in them. Main thread only.
///
/// It shows what it is told, and asks for what a person wants: nothing changes on the disk here.
class FolderModel final : public QStandardItemModel
{
    Q_OBJECT

public:
    enum Role { PathRole = Qt::UserRole + 1, LibraryRole, ProblemRole, AwaitedRole };

    explicit FolderModel(QObject *parent = nullptr);

    void addLibrary(const QString &path);
    void removeLibrary(const QString &path);
    QStringList libraries() const;
    /// The library that the path lies in, "" for none.
    QString libraryOf(const QString &path) const;
    /// Marks a library as unreadable, with the reason as its tool tip; "" takes that back.
    void setProblem(const QString &library, const QString &reason);
    /// Marks a library whose drive has not answered yet, until it does.
    void setAwaited(const QString &library, bool isAwaited);
    /// The reason, "" where it can be read.
    QString problemOf(const QString &library) const;

    /// Shows a folder in one that is shown.
    void addFolder(const QString &parent, const QString &folder);
    /// Shows exactly these folders in a folder that is shown; others, and what is below them, go.
    void setSubFolders(const QString &path, const QStringList &subFolders);
    /// The folders among these that can go elsewhere, each once: no libraries, and none that goes with another one.
    static QStringList movable(const QModelIndexList &indexes);
    /// Invalid for what is not shown. The empty path is that of all libraries together.
    QModelIndex indexOf(const QString &path) const;

    Qt::DropActions supportedDropActions() const override { return Qt::CopyAction | Qt::MoveAction; }
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

Q_SIGNALS:
    void renameRequested(const QString &path, const QString &name);
    void assetsDropped(const QStringList &uuids, const QString &folder);
    void foldersDropped(const QStringList &paths, const QString &folder);
    void nodesDropped(const std::vector<std::uint32_t> &ids, const QString &folder);
    void materialsDropped(const std::vector<std::uint32_t> &ids, const QString &folder);
    void filesDropped(const QStringList &files, const QString &folder);

private:
    QStandardItem *makeItem(const QString &path, const QString &name) const;
    QStandardItem *itemOf(const QString &path) const;
    static void showState(QStandardItem &library);

    /// One for all: each that a style hands out has pixmaps of its own.
    const QIcon _folderIcon;
};
