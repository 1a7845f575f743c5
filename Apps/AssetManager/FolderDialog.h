// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDialog>
#include <QStringList>

class FolderModel;
class QPushButton;
class QTreeView;

/// Has a person choose a folder of the open libraries.
class FolderDialog final : public QDialog
{
    Q_OBJECT

public:
    /// The model has to live longer. \a folder is chosen at first. The folders \a moved cannot be chosen, nor what is in them.
    FolderDialog(FolderModel &folders, const QString &folder, const QStringList &moved, QWidget *parent);

    /// "" where none is chosen that will do.
    QString folder() const;

private:
    const QStringList _moved;
    QTreeView *_tree;
    QPushButton *_choose;
};
