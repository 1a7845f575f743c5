// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/EnvironmentPanel.h"

#include "AssetManager/EmptyHint.h"
#include "AssetManager/EnvironmentListModel.h"
#include "AssetManager/OwnKeys.h"
#include "AssetManager/SceneActions.h"
#include "Kernel/kxScenegraph.h"

#include <QAction>
#include <QListView>
#include <QVBoxLayout>

EnvironmentPanel::EnvironmentPanel(SceneActions &actions, QWidget *parent)
    : QWidget(parent), _actions(actions), _model(new EnvironmentListModel(actions, this)), _view(new QListView(this))
{
    setObjectName("environmentPanel");
    setAccessibleName(tr("Environments"));
    _view->setObjectName("environmentList");
    _view->setAccessibleName(tr("Environments that can light the scene"));
    _view->setModel(_model);
    _view->setEditTriggers(QAbstractItemView::EditKeyPressed);
    _view->setAcceptDrops(true);
    _view->setDragDropMode(QAbstractItemView::DropOnly);
    _view->setContextMenuPolicy(Qt::ActionsContextMenu);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(_view);
    new EmptyHint(tr("Drag an environment asset here to light the scene with it."), *_view,
                  [this] { return _model->rowCount() <= 1; });

    auto *rename = new QAction(tr("Rename"), this);
    rename->setObjectName("rename");
    connect(rename, &QAction::triggered, this, [this] { _view->edit(_view->currentIndex()); });
    auto *use = new QAction(tr("Light the Scene with It"), this);
    use->setObjectName("switchEnvironment");
    connect(use, &QAction::triggered, this, [this] { switchTo(_view->currentIndex()); });
    auto *remove = new QAction(tr("Remove from the Scene"), this);
    remove->setObjectName("delete");
    remove->setShortcut(QKeySequence::Delete);
    remove->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(remove, &QAction::triggered, this, &EnvironmentPanel::removeCurrent);
    _view->addActions({use, rename, remove});
    new OwnKeys(*_view);
    connect(_view, &QListView::activated, this, &EnvironmentPanel::switchTo);
}

EnvironmentPanel::~EnvironmentPanel() = default;

void EnvironmentPanel::switchTo(const QModelIndex &index)
{
    if (index.isValid())
        _actions.switchEnvironment(index.row());
}

void EnvironmentPanel::removeCurrent()
{
    const QModelIndex current = _view->currentIndex();
    const osg::NodePtr places = kxScenegraph::environmentGeometrySwitch();
    if (places && current.isValid())
        _actions.removeNodes({places->getChild(static_cast<std::size_t>(current.row()))});
}
