// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/FolderDialog.h"

#include "AssetManager/AssetFilter.h"
#include "AssetManager/FolderModel.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>

FolderDialog::FolderDialog(FolderModel &folders, const QString &folder, const QStringList &moved, QWidget *parent)
    : QDialog(parent), _moved(moved), _tree(new QTreeView(this))
{
    setObjectName(QStringLiteral("folderDialog"));
    setWindowTitle(tr("Move to folder"));
    resize(360, 420);
    _tree->setObjectName(QStringLiteral("folders"));
    _tree->setAccessibleName(tr("Libraries and folders"));
    _tree->setModel(&folders);
    _tree->setHeaderHidden(true);
    _tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    _choose = buttons->button(QDialogButtonBox::Ok);
    _choose->setText(tr("Move"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(_tree->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this] { _choose->setEnabled(!this->folder().isEmpty()); });
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(_tree);
    layout->addWidget(buttons);
    _tree->setRowHidden(0, {}, true); // all libraries, where nothing can go
    _tree->expandToDepth(0);          // a library shows its folders at once
    _tree->setCurrentIndex(folders.indexOf(folder));
    _tree->scrollTo(_tree->currentIndex());
    _choose->setEnabled(!this->folder().isEmpty());
}

QString FolderDialog::folder() const
{
    QString chosen = _tree->currentIndex().data(FolderModel::PathRole).toString();
    const bool isMoved =
        std::any_of(_moved.begin(), _moved.end(), [&](const QString &path) { return AssetFilter::isIn(chosen, path); });
    return isMoved ? QString() : chosen;
}
