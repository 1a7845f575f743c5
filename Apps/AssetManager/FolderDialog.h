// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDialog>

class FolderModel;
class QPushButton;
class QTreeView;

/// Has a person choose a folder of the open libraries.
class FolderDialog final : public QDialog
{
    Q_OBJECT

public:
    /// The model has to live longer. \a folder is chosen at first.
    FolderDialog(FolderModel &folders, const QString &folder, QWidget *parent);

    /// "" where none is chosen.
    QString folder() const;

private:
    QTreeView *_tree;
    QPushButton *_choose;
};
