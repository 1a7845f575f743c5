// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDialog>

class LibraryActions;
class QPushButton;
class QTreeWidget;

/// Shows what was deleted, brings it back, or removes it for good; without libraries whose drive does not answer.
class TrashDialog final : public QDialog
{
    Q_OBJECT

public:
    TrashDialog(LibraryActions &actions, const QStringList &libraries, QWidget *parent);

    /// Asks first. False where nothing was removed.
    static bool empty(const QStringList &all, QWidget *parent);

private:
    void fill();
    void restore();

    LibraryActions &_actions;
    QStringList _libraries;
    QTreeWidget *_list;
    QPushButton *_restore;
    QPushButton *_empty;
};
