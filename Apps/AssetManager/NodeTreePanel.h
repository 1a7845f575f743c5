// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/NodeTreeModel.h"
#if !defined(Q_MOC_RUN)
#include "AssetManager/NodeMover.h"
#endif

#include <QWidget>

#include <functional>
#include <set>

class QAction;
class QLineEdit;
class QMenu;
class QSortFilterProxyModel;
class QTreeView;
class SceneActions;

/// A tree of nodes whose selection is the program's: renaming, grouping, moving, deleting, framing, and a line that filters.
class NodeTreePanel : public QWidget
{
    Q_OBJECT

public:
    ~NodeTreePanel() override;

    NodeTreeModel &model() const { return *_model; }
    QTreeView &view() const { return *_view; }
    /// The index in the view; invalid where the filter hides the node.
    QModelIndex viewIndexOf(std::uint32_t nodeId) const;

Q_SIGNALS:
    /// The view of the scene is to show the selected nodes.
    void frameRequested();

protected:
    NodeTreePanel(SceneActions &actions, NodeTreeModel *model, QWidget *parent);

    SceneActions &actions() const { return _actions; }
    /// One of the tree's menu, with a key that works while the tree has the focus.
    QAction *addAction(const QString &text, const char *name, const QKeySequence &shortcut,
                       const std::function<void()> &action);

private:
    void layOutColumns();
    bool eventFilter(QObject *watched, QEvent *event) override;
    void addActions();
    void addMoves();
    void showMenu(const QPoint &place);
    void renameCurrent();
    void groupSelected();
    void deleteSelected();
    void paste();
    void frameSelected();
    void filter(const QString &text);
    void enableActions();
    void selectionToScene();
    void selectionFromScene();
    void restoreExpansion(const QModelIndex &parent);
    std::vector<osg::NodePtr> viewSelection() const;

    SceneActions &_actions;
    NodeTreeModel *_model;
    NodeMover _mover;
    QSortFilterProxyModel *_filtered;
    QTreeView *_view;
    QLineEdit *_filterLine;
    std::set<std::uint32_t> _expanded; ///< by id, so that a node that comes back is as it was
    bool _isFollowing = false;         ///< while the view changes because of the scene
};
