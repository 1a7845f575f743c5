// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/TrashDialog.h"

#include "AssetManager/EmptyHint.h"
#include "AssetManager/LibraryActions.h"
#include "AssetManager/SilentDrives.h"
#include "AssetManager/Trash.h"
#include "Assets/kxAssetCategory.h"
#include "Kernel/kxModalQuestion.h"

#include <QDialogButtonBox>
#include <QFileInfo>
#include <QLocale>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {

enum Role { PathRole = Qt::UserRole, OriginRole };

/// As the asset or the folder is called, without what the directories of assets begin with.
QString nameOf(const QString &path)
{
    QString name = QFileInfo(path).fileName();
    for (const kxAssetCategoryType category : kxAssetCategory::getAllCategories())
        if (const QString prefix = kxAssetCategory::getItemFolderName(category, {}); name.startsWith(prefix))
            return name.mid(prefix.size());
    return name;
}

/// Without those whose drive does not answer just now: the window would stand still.
QStringList answering(QStringList libraries)
{
    libraries.erase(std::remove_if(libraries.begin(), libraries.end(),
                                   [](const QString &library) { return SilentDrives::the().hold(library); }),
                    libraries.end());
    return libraries;
}

} // namespace

TrashDialog::TrashDialog(LibraryActions &actions, const QStringList &libraries, QWidget *parent)
    : QDialog(parent), _actions(actions), _libraries(libraries)
{
    setObjectName(QStringLiteral("trashDialog"));
    setWindowTitle(tr("Deleted assets and folders"));
    resize(640, 360);
    _list = new QTreeWidget(this);
    _list->setObjectName(QStringLiteral("deleted"));
    _list->setAccessibleName(windowTitle());
    _list->setHeaderLabels({tr("Name"), tr("Was in"), tr("Deleted on")});
    _list->setRootIsDecorated(false);
    _list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    _restore = buttons->addButton(tr("Put &back"), QDialogButtonBox::ActionRole);
    _restore->setObjectName(QStringLiteral("restore"));
    _empty = buttons->addButton(tr("&Remove everything for good..."), QDialogButtonBox::DestructiveRole);
    _empty->setObjectName(QStringLiteral("empty"));
    _empty->setToolTip(tr("Also removes the former versions that Undo would bring back."));
    _empty->setAutoDefault(false); // no key that was pressed too much begins this
    connect(_list, &QTreeWidget::itemSelectionChanged, this,
            [this] { _restore->setEnabled(!_list->selectedItems().isEmpty()); });
    connect(_restore, &QPushButton::clicked, this, &TrashDialog::restore);
    connect(_empty, &QPushButton::clicked, this, [this] {
        if (empty(_libraries, this))
            fill();
    });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(_list);
    layout->addWidget(buttons);
    new EmptyHint(tr("Nothing was deleted."), *_list, [this] { return _list->topLevelItemCount() == 0; });
    fill();
}

void TrashDialog::fill()
{
    _list->clear(); // of which the selection says nothing
    _restore->setEnabled(false);
    for (const QString &library : answering(_libraries))
        for (const Trash::Entry &entry : Trash(library).entries()) {
            auto *item = new QTreeWidgetItem(_list);
            item->setText(0, nameOf(entry.path));
            item->setText(1, entry.origin);
            item->setText(2, QLocale().toString(entry.deleted, QLocale::ShortFormat));
            item->setData(0, PathRole, entry.path);
            item->setData(0, OriginRole, entry.origin);
        }
    for (int column = 0; column < 3; ++column) {
        _list->resizeColumnToContents(column);
        _list->setColumnWidth(column, _list->columnWidth(column) + 2 * fontMetrics().averageCharWidth());
    }
    _empty->setEnabled(_list->topLevelItemCount() > 0);
}

void TrashDialog::restore()
{
    std::vector<Trash::Entry> entries;
    for (const QTreeWidgetItem *item : _list->selectedItems())
        entries.push_back({item->data(0, PathRole).toString(), item->data(0, OriginRole).toString(), {}});
    _actions.restore(entries);
    fill();
}

bool TrashDialog::empty(const QStringList &all, QWidget *parent)
{
    const QStringList libraries = answering(all); // and no others, whatever answers later
    int count = 0;
    for (const QString &library : libraries)
        count += static_cast<int>(Trash(library).entries().size());
    if (count == 0)
        return false;
    const auto answer = kxModalQuestion::warning(
        parent, tr("Asset Manager"),
        tr("%n deleted asset(s) and folder(s) will be removed from the disk for good.\nThis cannot be undone.", nullptr,
           count) +
            "\n\n" +
            tr("What Undo keeps of assets that were saved over, and of previews and tags that were changed, goes as "
               "well."),
        QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
    if (answer != QMessageBox::Ok)
        return false;
    bool isEmpty = true;
    for (const QString &library : answering(libraries))
        isEmpty = Trash(library).empty() && isEmpty;
    if (!isEmpty)
        kxModalQuestion::warning(parent, tr("Asset Manager"),
                                 tr("Not everything could be removed. May the library be written?"));
    return true;
}
