// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/NodeTreePanel.h"

#include "AssetManager/DragView.h"
#include "AssetManager/OwnKeys.h"
#include "AssetManager/SceneActions.h"
#include "AssetManager/SceneNodes.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "Kernel/kxSelectionManager.h"

#include <QAction>
#include <QEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QScopedValueRollback>
#include <QSortFilterProxyModel>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int TypeWidth = 12; // letters: the names are what people look for
constexpr int LeastNameWidth = 20;
constexpr int Indentation = 2; // letters, too: imported models are deep

} // namespace

NodeTreePanel::NodeTreePanel(SceneActions &actions, NodeTreeModel *model, QWidget *parent)
    : QWidget(parent), _actions(actions), _model(model), _mover(actions, *model),
      _filtered(new QSortFilterProxyModel(this)), _view(new DragView<QTreeView>(this)), _filterLine(new QLineEdit(this))
{
    _model->setParent(this);
    _filtered->setRecursiveFilteringEnabled(true);
    _filtered->setFilterCaseSensitivity(Qt::CaseInsensitive);
    _filtered->setSourceModel(_model);
    _view->setModel(_filtered);
    _view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    _view->setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked);
    _view->setDragEnabled(true);
    _view->setAcceptDrops(true);
    _view->setDropIndicatorShown(true);
    _view->setDragDropMode(QAbstractItemView::DragDrop);
    _view->setDefaultDropAction(Qt::MoveAction);
    _view->setUniformRowHeights(true);
    _view->setIndentation(Indentation * fontMetrics().averageCharWidth());
    _view->viewport()->installEventFilter(this);
    _view->setContextMenuPolicy(Qt::CustomContextMenu);
    _view->header()->setStretchLastSection(false);
    _view->header()->setMinimumSectionSize(fontMetrics().averageCharWidth());
    _view->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    _view->header()->setSectionResizeMode(NodeTreeModel::NameColumn, QHeaderView::Stretch);
    _view->header()->setSectionResizeMode(NodeTreeModel::TypeColumn, QHeaderView::Interactive);
    _view->header()->resizeSection(NodeTreeModel::TypeColumn, TypeWidth * fontMetrics().averageCharWidth());
    _filterLine->setObjectName("filter");
    _filterLine->setPlaceholderText(tr("Filter by name"));
    _filterLine->setAccessibleName(tr("Filter by name"));
    _filterLine->setClearButtonEnabled(true);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(_filterLine);
    layout->addWidget(_view);
    addActions();
    new OwnKeys(*_view);

    connect(_filterLine, &QLineEdit::textChanged, this, &NodeTreePanel::filter);
    connect(_view, &QTreeView::customContextMenuRequested, this, &NodeTreePanel::showMenu);
    connect(_view, &QTreeView::expanded, this, [this](const QModelIndex &index) {
        _expanded.insert(_model->nodeAt(_filtered->mapToSource(index)).getFieldContainerId());
    });
    connect(_view, &QTreeView::collapsed, this, [this](const QModelIndex &index) {
        _expanded.erase(_model->nodeAt(_filtered->mapToSource(index)).getFieldContainerId());
    });
    connect(_view->selectionModel(), &QItemSelectionModel::selectionChanged, this, &NodeTreePanel::selectionToScene);
    connect(&kxScenegraph::notifier(), &kxScenegraphNotifier::selectionChanged, this,
            &NodeTreePanel::selectionFromScene);
    connect(_model, &NodeTreeModel::updating, this, [this] { _isFollowing = true; });
    connect(_model, &NodeTreeModel::updated, this, [this] {
        _isFollowing = false;
        selectionFromScene();
    });
    connect(_filtered, &QAbstractItemModel::rowsInserted, this, &NodeTreePanel::restoreExpansion);
    selectionFromScene();
}

NodeTreePanel::~NodeTreePanel() = default;

/// Where there is not enough room for names, types have none.
void NodeTreePanel::layOutColumns()
{
    int room = _view->viewport()->width() - TypeWidth * fontMetrics().averageCharWidth();
    for (int column = NodeTreeModel::AssetColumn; column < _filtered->columnCount(); ++column)
        room -= _view->header()->sectionSizeHint(column);
    _view->setColumnHidden(NodeTreeModel::TypeColumn, room < LeastNameWidth * fontMetrics().averageCharWidth());
}

bool NodeTreePanel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == _view->viewport() && event->type() == QEvent::Resize)
        layOutColumns();
    return QWidget::eventFilter(watched, event);
}

QModelIndex NodeTreePanel::viewIndexOf(std::uint32_t nodeId) const
{
    return _filtered->mapFromSource(_model->indexOf(nodeId));
}

void NodeTreePanel::addActions()
{
    addAction(tr("Frame in View"), "frame", Qt::Key_F, [this] { frameSelected(); });
    addAction(tr("Rename"), "rename", Qt::Key_F2, [this] { renameCurrent(); });
    addAction(tr("Group"), "group", QKeySequence(QStringLiteral("Ctrl+G")), [this] { groupSelected(); });
    addMoves();
    addAction(tr("Delete"), "delete", QKeySequence::Delete, [this] { deleteSelected(); });
}

/// What dragging does, by keys.
void NodeTreePanel::addMoves()
{
    addAction(tr("Move Up"), "moveUp", QKeySequence(QStringLiteral("Alt+Up")),
              [this] { _mover.move(viewSelection(), -1); });
    addAction(tr("Move Down"), "moveDown", QKeySequence(QStringLiteral("Alt+Down")),
              [this] { _mover.move(viewSelection(), 1); });
    addAction(tr("Move Out of Its Parent"), "moveOut", QKeySequence(QStringLiteral("Alt+Left")),
              [this] { _mover.moveOut(viewSelection()); });
    addAction(tr("Cut"), "cut", QKeySequence::Cut, [this] { _mover.cut(viewSelection()); });
    addAction(tr("Paste Below"), "paste", QKeySequence::Paste, [this] { paste(); });
}

QAction *NodeTreePanel::addAction(const QString &text, const char *name, const QKeySequence &shortcut,
                                  const std::function<void()> &action)
{
    auto *added = new QAction(text, this);
    added->setObjectName(name);
    added->setShortcut(shortcut);
    added->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(added, &QAction::triggered, this, action);
    _view->addAction(added);
    return added;
}

void NodeTreePanel::showMenu(const QPoint &place)
{
    enableActions();
    QMenu menu(this);
    menu.addActions(_view->actions());
    menu.exec(_view->viewport()->mapToGlobal(place));
}

void NodeTreePanel::renameCurrent()
{
    const QModelIndex current = _view->currentIndex();
    if (current.isValid())
        _view->edit(current.siblingAtColumn(NodeTreeModel::NameColumn));
}

void NodeTreePanel::groupSelected()
{
    const osg::NodePtr group = _actions.group(viewSelection());
    if (!group)
        return;
    kxSelectionManager::clear();
    kxSelectionManager::selectNodes({group});
}

void NodeTreePanel::deleteSelected()
{
    _actions.removeNodes(viewSelection());
}

/// What was pasted is selected, so that it is seen where it went.
void NodeTreePanel::paste()
{
    const std::vector<osg::NodePtr> chosen = viewSelection();
    const std::vector<osg::NodePtr> moved = _mover.paste(chosen.empty() ? osg::NodePtr() : chosen.front());
    if (moved.empty())
        return;
    _model->refresh();
    kxSelectionManager::clear();
    kxSelectionManager::selectNodes(moved);
}

void NodeTreePanel::frameSelected()
{
    if (!viewSelection().empty())
        Q_EMIT frameRequested();
}

void NodeTreePanel::filter(const QString &text)
{
    {
        const QScopedValueRollback following(_isFollowing, true);
        _filtered->setFilterFixedString(text);
        if (!text.isEmpty())
            _view->expandAll();
    }
    selectionFromScene();
}

void NodeTreePanel::enableActions()
{
    const std::vector<osg::NodePtr> selected = viewSelection();
    for (QAction *action : _view->actions())
        action->setEnabled(!selected.empty());
    findChild<QAction *>("moveUp")->setEnabled(_mover.canMove(selected, -1));
    findChild<QAction *>("moveDown")->setEnabled(_mover.canMove(selected, 1));
    findChild<QAction *>("moveOut")->setEnabled(_mover.canMoveOut(selected));
    findChild<QAction *>("paste")->setEnabled(_mover.canPaste());
    const QModelIndex current = _view->currentIndex().siblingAtColumn(NodeTreeModel::NameColumn);
    findChild<QAction *>("rename")->setEnabled((_filtered->flags(current) & Qt::ItemIsEditable) != 0);
}

void NodeTreePanel::selectionToScene()
{
    enableActions();
    if (_isFollowing)
        return;
    const QScopedValueRollback following(_isFollowing, true);
    const std::vector<osg::NodePtr> wanted = viewSelection();
    std::vector<osg::NodePtr> dropped = kxSelectionManager::getSelectedNodes();
    std::erase_if(dropped, [&wanted](const osg::NodePtr &node) {
        return std::find(wanted.begin(), wanted.end(), node) != wanted.end();
    });
    kxSelectionManager::selectNodes(dropped, false);
    kxSelectionManager::selectNodes(wanted);
}

void NodeTreePanel::selectionFromScene()
{
    if (_isFollowing)
        return;
    const QScopedValueRollback following(_isFollowing, true);
    QItemSelection selection;
    QModelIndex last;
    for (const osg::NodePtr &node : kxSelectionManager::getSelectedNodes())
        if (const QModelIndex index = viewIndexOf(node.getFieldContainerId()); index.isValid()) {
            selection.select(index, index);
            last = index;
        }
    const bool isNew = last.isValid() && !_view->selectionModel()->isSelected(last);
    _view->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    if (!isNew)
        return;
    _view->selectionModel()->setCurrentIndex(last, QItemSelectionModel::NoUpdate);
    _view->scrollTo(last);
}

void NodeTreePanel::restoreExpansion(const QModelIndex &parent)
{
    for (const std::uint32_t id : std::set<std::uint32_t>(_expanded))
        if (const QModelIndex index = viewIndexOf(id); index.isValid() && !_view->isExpanded(index))
            _view->setExpanded(index, true);
    if (!_filterLine->text().isEmpty())
        _view->expand(parent);
}

std::vector<osg::NodePtr> NodeTreePanel::viewSelection() const
{
    std::vector<osg::NodePtr> nodes;
    for (const QModelIndex &index : _view->selectionModel()->selectedRows())
        if (const osg::NodePtr node = _model->nodeAt(_filtered->mapToSource(index)))
            nodes.push_back(node);
    return nodes;
}
