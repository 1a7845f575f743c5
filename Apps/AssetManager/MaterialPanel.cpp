// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/MaterialPanel.h"

#include "AssetManager/DragView.h"
#include "AssetManager/EmptyHint.h"
#include "AssetManager/MaterialListModel.h"
#include "AssetManager/OwnKeys.h"
#include "AssetManager/SceneActions.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSelectionManager.h"
#include "SceneGraph/FieldContainerFactory.h"

#include <QAction>
#include <QListView>
#include <QMenu>
#include <QVBoxLayout>

MaterialPanel::MaterialPanel(SceneActions &actions, QWidget *parent)
    : QWidget(parent), _actions(actions), _model(new MaterialListModel(actions, this)),
      _view(new DragView<QListView>(this))
{
    setObjectName("materialPanel");
    setAccessibleName(tr("Materials"));
    _view->setObjectName("materialList");
    _view->setAccessibleName(tr("Materials of the scene"));
    _view->setModel(_model);
    _view->setViewMode(QListView::IconMode);
    _view->setMovement(QListView::Static);
    _view->setResizeMode(QListView::Adjust);
    _view->setIconSize({MaterialPreviews::Size, MaterialPreviews::Size});
    _view->setGridSize({MaterialPreviews::Size + 24, MaterialPreviews::Size + 2 * fontMetrics().height() + 12});
    _view->setWordWrap(true);
    _view->setTextElideMode(Qt::ElideRight);
    _view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    _view->setEditTriggers(QAbstractItemView::EditKeyPressed);
    _view->setDragEnabled(true);
    _view->setAcceptDrops(true);
    _view->setDragDropMode(QAbstractItemView::DragDrop);
    _view->viewport()->setAcceptDrops(true); // which items that cannot be moved about have switched off
    _view->setDefaultDropAction(Qt::CopyAction);
    _view->setContextMenuPolicy(Qt::CustomContextMenu);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(_view);
    new EmptyHint(tr("Drag a material asset here, or onto an object of the scene."), *_view,
                  [this] { return _model->rowCount() == 0; });

    addActions();
    connect(_view, &QListView::customContextMenuRequested, this, &MaterialPanel::showMenu);
    connect(_view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { Q_EMIT materialsSelected(selectedMaterials()); });
}

MaterialPanel::~MaterialPanel() = default;

void MaterialPanel::addActions()
{
    auto *assign = new QAction(tr("Assign to the Selected Objects"), this);
    assign->setObjectName("assign");
    assign->setShortcut(QKeySequence(QStringLiteral("Ctrl+Return"))); // as assets are loaded
    assign->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(assign, &QAction::triggered, this, &MaterialPanel::assignToSelection);
    auto *users = new QAction(tr("Select Users"), this);
    users->setObjectName("selectUsers");
    users->setToolTip(tr("Selects the objects that have the selected materials"));
    connect(users, &QAction::triggered, this, &MaterialPanel::selectUsers);
    auto *rename = new QAction(tr("Rename"), this);
    rename->setObjectName("rename");
    rename->setShortcut(Qt::Key_F2);
    rename->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(rename, &QAction::triggered, this, [this] { _view->edit(_view->currentIndex()); });
    _view->addActions({assign, users, rename});
    new OwnKeys(*_view);
}

QVector<quint32> MaterialPanel::selectedMaterials() const
{
    QVector<quint32> ids;
    for (const QModelIndex &index : _view->selectionModel()->selectedIndexes())
        ids.append(_model->materialIdAt(index));
    return ids;
}

void MaterialPanel::assignToSelection()
{
    const std::vector<osg::NodePtr> objects = kxSelectionManager::getSelectedNodes();
    const std::uint32_t material = _model->materialIdAt(_view->currentIndex());
    if (objects.empty())
        Q_EMIT _actions.failed({tr("No object is selected that could take the material.")});
    else if (material != 0)
        _actions.assignMaterial(material, objects);
}

void MaterialPanel::selectUsers()
{
    std::vector<osg::NodePtr> users;
    for (const quint32 id : selectedMaterials()) {
        const auto material = osg::MaterialPtr::dcast(osg::FieldContainerFactory::the().getContainer(id));
        const auto some = kxMaterials::getNodesWithMaterial(material, kxScenegraph::getRoot());
        users.insert(users.end(), some.begin(), some.end());
    }
    kxSelectionManager::clear();
    kxSelectionManager::selectNodes(users);
}

void MaterialPanel::showMenu(const QPoint &place)
{
    for (QAction *action : _view->actions())
        action->setEnabled(_view->selectionModel()->hasSelection());
    QMenu menu(this);
    menu.addActions(_view->actions());
    menu.exec(_view->viewport()->mapToGlobal(place));
    for (QAction *action : _view->actions())
        action->setEnabled(true); // for their keys
}
