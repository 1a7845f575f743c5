// SPDX-License-Identifier: Apache-2.0
#pragma once

#if !defined(Q_MOC_RUN)
#include "AssetManager/AssetState.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/SceneListener.h"
#endif

#include <QAbstractItemModel>

#include <memory>
#include <set>
#include <unordered_map>
#include <vector>

class QTimer;
class SceneActions;

/// The nodes below a root as a tree: name, type, and how they stand to their assets.
///
/// Follows the scene's changes on the next pass of the event loop, row by row, so that views keep what is expanded. Knows
/// nodes by id and asks for them at each use. Main thread only.
class NodeTreeModel : public QAbstractItemModel, private osg::SceneListener
{
    Q_OBJECT

public:
    enum Column { NameColumn, TypeColumn, AssetColumn, ColumnCount };

    ~NodeTreeModel() override;

    /// Null for an invalid index, and for a node that is gone.
    osg::NodePtr nodeAt(const QModelIndex &index) const;
    QModelIndex indexOf(std::uint32_t nodeId, int column = NameColumn) const;
    virtual osg::NodePtr rootNode() const = 0;

    /// Brings everything up to date now.
    void refresh();
    /// By id, those that are to go elsewhere, which are shown faintly.
    void setCut(const std::vector<std::uint32_t> &nodeIds);
    const std::vector<std::uint32_t> &cut() const { return _cut; }
    /// Looks again at how the nodes stand to their assets.
    void refreshAssetStates();

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    Qt::DropActions supportedDropActions() const override { return Qt::CopyAction | Qt::MoveAction; }
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

Q_SIGNALS:
    /// Around changes of rows that come from the scene.
    void updating();
    void updated();

protected:
    explicit NodeTreeModel(SceneActions &actions, QObject *parent);

    SceneActions &actions() const { return _actions; }

    /// Whether a child of the root is a row.
    virtual bool isListed(const osg::NodePtr &node) const;
    virtual QVariant nodeData(const osg::NodePtr &node, int column, int role) const;
    /// What is taken besides nodes: whether these may be dropped on the node, and dropping them.
    virtual bool takes(const QMimeData &data, const osg::NodePtr &target, bool isOnNode) const = 0;
    virtual void take(const QMimeData &data, const osg::NodePtr &target, bool isOnNode) = 0;
    /// Has the row of the node painted again; nothing happens for a node without one.
    void announce(std::uint32_t nodeId);
    /// Called for every container that changed.
    virtual void noticeChange(osg::FieldContainer &container);
    /// Call first in the constructor of what is complete.
    void build();

private:
    struct Item;

    void containerChanged(osg::FieldContainer &container, osg::FieldMask fields) override;
    void reset();
    void update();
    void removeGone(std::uint32_t id);
    void addMissing(std::uint32_t id);
    std::vector<std::uint32_t> wantedChildren(const Item &item) const;
    Item *addItem(std::uint32_t id, Item *parent, std::size_t row);
    void fill(Item &top);
    void forget(Item *item);
    void learnAttachments(Item &item);
    Item *itemAt(const QModelIndex &index) const;
    QModelIndex indexOf(const Item &item, int column = NameColumn) const;
    int childIndex(const osg::NodePtr &target, int row, const QModelIndex &parent) const;
    const AssetState &stateOf(const osg::NodePtr &node) const;

    SceneActions &_actions;
    std::unordered_map<std::uint32_t, std::unique_ptr<Item>> _items;
    Item *_root = nullptr;
    std::unordered_map<std::uint32_t, std::uint32_t> _ownerOf; ///< of names and asset attachments: the node
    std::set<std::uint32_t> _changed;                          ///< nodes whose children are to be looked at
    std::vector<std::uint32_t> _cut;
    QTimer *_timer;
    mutable std::unordered_map<std::uint32_t, AssetState> _states; ///< by node; asking costs a look at the disk
};
