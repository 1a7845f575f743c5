// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/NodeTreeModel.h"

#include "AssetManager/DragData.h"
#include "AssetManager/SceneActions.h"
#include "AssetManager/SceneNodes.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/NameAttachment.h"

#include <QGuiApplication>
#include <QMimeData>
#include <QPalette>
#include <QTimer>

#include <algorithm>

struct NodeTreeModel::Item
{
    std::uint32_t id = 0;
    Item *parent = nullptr;
    std::vector<Item *> children;
    mutable std::size_t row = 0; ///< where it was last found
};

NodeTreeModel::NodeTreeModel(SceneActions &actions, QObject *parent)
    : QAbstractItemModel(parent), _actions(actions), _timer(new QTimer(this))
{
    _timer->setSingleShot(true);
    _timer->setInterval(0);
    connect(_timer, &QTimer::timeout, this, &NodeTreeModel::update);
    connect(&kxScenegraph::notifier(), &kxScenegraphNotifier::documentChanged, this, &NodeTreeModel::reset);
    connect(&kxScenegraph::notifier(), &kxScenegraphNotifier::nameChanged, this, &NodeTreeModel::announce);
    osg::FieldContainerFactory::the().addListener(*this);
}

NodeTreeModel::~NodeTreeModel()
{
    osg::FieldContainerFactory::the().removeListener(*this);
}

void NodeTreeModel::build()
{
    reset();
}

osg::NodePtr NodeTreeModel::nodeAt(const QModelIndex &index) const
{
    return index.isValid() ? kxNodeUtils::getNodeFromId(itemAt(index)->id) : osg::NodePtr();
}

QModelIndex NodeTreeModel::indexOf(std::uint32_t nodeId, int column) const
{
    const auto found = _items.find(nodeId);
    return found == _items.end() ? QModelIndex() : indexOf(*found->second, column);
}

void NodeTreeModel::refresh()
{
    for (const auto &[id, item] : _items)
        _changed.insert(id);
    refreshAssetStates();
    update();
}

void NodeTreeModel::setCut(const std::vector<std::uint32_t> &nodeIds)
{
    const std::vector<std::uint32_t> before = std::exchange(_cut, nodeIds);
    for (const auto &ids : {before, _cut})
        for (const std::uint32_t id : ids)
            announce(id);
}

void NodeTreeModel::refreshAssetStates()
{
    std::vector<std::uint32_t> known;
    for (const auto &[id, state] : _states)
        known.push_back(id);
    _states.clear();
    for (const std::uint32_t id : known)
        announce(id);
}

QModelIndex NodeTreeModel::index(int row, int column, const QModelIndex &parent) const
{
    const Item *item = itemAt(parent);
    if (!item || row < 0 || column < 0 || column >= columnCount(parent) ||
        static_cast<std::size_t>(row) >= item->children.size())
        return {};
    return createIndex(row, column, item->children[static_cast<std::size_t>(row)]);
}

QModelIndex NodeTreeModel::parent(const QModelIndex &index) const
{
    const Item *item = index.isValid() ? itemAt(index) : nullptr;
    return item && item->parent ? indexOf(*item->parent) : QModelIndex();
}

int NodeTreeModel::rowCount(const QModelIndex &parent) const
{
    const Item *item = parent.column() > 0 ? nullptr : itemAt(parent);
    return item ? static_cast<int>(item->children.size()) : 0;
}

int NodeTreeModel::columnCount(const QModelIndex & /*parent*/) const
{
    return ColumnCount;
}

QVariant NodeTreeModel::data(const QModelIndex &index, int role) const
{
    const osg::NodePtr node = nodeAt(index);
    if (node && role == Qt::ForegroundRole && std::count(_cut.begin(), _cut.end(), node.getFieldContainerId()) != 0)
        return QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Text);
    return node ? nodeData(node, index.column(), role) : QVariant();
}

QVariant NodeTreeModel::nodeData(const osg::NodePtr &node, int column, int role) const
{
    if (column == NameColumn && role == Qt::DisplayRole)
        return SceneNodes::label(node);
    if (column == NameColumn && role == Qt::ToolTipRole)
        return QString(SceneNodes::label(node) + '\n' + SceneNodes::typeLabel(node)); // which a narrow panel leaves out
    if (column == NameColumn && role == Qt::EditRole)
        return QString::fromStdString(kxNodeUtils::getName(node));
    if (column == TypeColumn && (role == Qt::DisplayRole || role == Qt::ToolTipRole))
        return SceneNodes::typeLabel(node);
    if (column == AssetColumn && role == Qt::DecorationRole)
        return stateOf(node).icon();
    if (column == AssetColumn && (role == Qt::ToolTipRole || role == Qt::AccessibleTextRole))
        return stateOf(node).text();
    return {};
}

bool NodeTreeModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const osg::NodePtr node = nodeAt(index);
    if (!node || role != Qt::EditRole || index.column() != NameColumn)
        return false;
    _actions.renameNode(node, value.toString().toStdString());
    return true;
}

QVariant NodeTreeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case NameColumn:
        return tr("Name");
    case TypeColumn:
        return tr("Type");
    case AssetColumn:
        return tr("Asset");
    default:
        return {};
    }
}

Qt::ItemFlags NodeTreeModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDropEnabled;
    const osg::NodePtr node = nodeAt(index);
    if (!node || SceneNodes::isFixed(node))
        return flags;
    flags |= Qt::ItemIsDragEnabled;
    return index.column() == NameColumn ? flags | Qt::ItemIsEditable : flags;
}

QStringList NodeTreeModel::mimeTypes() const
{
    return {DragData::nodeMimeType()};
}

QMimeData *NodeTreeModel::mimeData(const QModelIndexList &indexes) const
{
    std::vector<std::uint32_t> ids;
    for (const QModelIndex &index : indexes)
        if (index.column() == NameColumn)
            ids.push_back(itemAt(index)->id);
    auto *data = new QMimeData;
    DragData::setNodes(*data, ids);
    return data;
}

bool NodeTreeModel::canDropMimeData(const QMimeData *data, Qt::DropAction /*action*/, int row, int /*column*/,
                                    const QModelIndex &parent) const
{
    const osg::NodePtr target = parent.isValid() ? nodeAt(parent) : rootNode();
    if (!data || !target)
        return false;
    const std::vector<osg::NodePtr> nodes = SceneNodes::fromIds(DragData::nodes(*data));
    if (nodes.empty())
        return takes(*data, target, parent.isValid() && row < 0);
    return std::all_of(nodes.begin(), nodes.end(), [&](const osg::NodePtr &node) {
        return SceneNodes::isAtOrBelow(node, rootNode()) && !SceneNodes::isAtOrBelow(target, node);
    });
}

bool NodeTreeModel::dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                                 const QModelIndex &parent)
{
    if (!canDropMimeData(data, action, row, column, parent))
        return false;
    const osg::NodePtr target = parent.isValid() ? nodeAt(parent) : rootNode();
    const std::vector<osg::NodePtr> nodes = SceneNodes::fromIds(DragData::nodes(*data));
    if (nodes.empty())
        take(*data, target, parent.isValid() && row < 0);
    else
        _actions.moveNodes(nodes, target, childIndex(target, row, parent));
    return true;
}

bool NodeTreeModel::isListed(const osg::NodePtr & /*node*/) const
{
    return true;
}

void NodeTreeModel::announce(std::uint32_t nodeId)
{
    const auto found = _items.find(nodeId);
    if (found != _items.end() && found->second->parent)
        Q_EMIT dataChanged(indexOf(*found->second), indexOf(*found->second, columnCount() - 1));
}

void NodeTreeModel::noticeChange(osg::FieldContainer & /*container*/) {}

void NodeTreeModel::containerChanged(osg::FieldContainer &container, osg::FieldMask fields)
{
    const std::uint32_t id = container.getFieldContainerId();
    if (const auto owner = _ownerOf.find(id); owner != _ownerOf.end()) {
        _states.erase(owner->second);
        announce(owner->second);
    }
    noticeChange(container);
    const auto found = _items.find(id);
    if (found == _items.end())
        return;
    if ((fields & (osg::Node::ChildrenFieldMask)) != 0) {
        _changed.insert(id);
        _timer->start();
    }
    if ((fields & ~osg::Node::ChildrenFieldMask) != 0) {
        learnAttachments(*found->second);
        _states.erase(id);
        announce(id);
    }
}

void NodeTreeModel::reset()
{
    Q_EMIT updating();
    beginResetModel();
    _items.clear();
    _ownerOf.clear();
    _changed.clear();
    _states.clear();
    _cut.clear();
    const osg::NodePtr node = rootNode();
    _root = node ? addItem(node.getFieldContainerId(), nullptr, 0) : nullptr;
    if (_root)
        fill(*_root);
    endResetModel();
    Q_EMIT updated();
}

void NodeTreeModel::update()
{
    _timer->stop();
    const std::set<std::uint32_t> changed = std::exchange(_changed, {});
    if (changed.empty())
        return;
    Q_EMIT updating();
    // A node that went from one parent to another is in both lists for a moment: first it has to go.
    for (const std::uint32_t id : changed)
        removeGone(id);
    for (const std::uint32_t id : changed)
        addMissing(id);
    Q_EMIT updated();
}

void NodeTreeModel::removeGone(std::uint32_t id)
{
    const auto found = _items.find(id);
    if (found == _items.end())
        return;
    Item &item = *found->second;
    const std::vector<std::uint32_t> ordered = wantedChildren(item);
    const std::set<std::uint32_t> wanted(ordered.begin(), ordered.end());
    for (std::size_t row = item.children.size(); row-- > 0;) {
        if (wanted.count(item.children[row]->id) != 0)
            continue;
        const int place = static_cast<int>(row);
        beginRemoveRows(indexOf(item), place, place);
        Item *gone = item.children[row];
        item.children.erase(item.children.begin() + static_cast<std::ptrdiff_t>(row));
        forget(gone);
        endRemoveRows();
    }
}

void NodeTreeModel::addMissing(std::uint32_t id)
{
    const auto found = _items.find(id);
    if (found == _items.end())
        return;
    Item &item = *found->second;
    const std::vector<std::uint32_t> wanted = wantedChildren(item);
    for (std::size_t row = 0; row < wanted.size(); ++row) {
        if (row < item.children.size() && item.children[row]->id == wanted[row])
            continue;
        const auto isWanted = [&](const Item *child) { return child->id == wanted[row]; };
        const auto from = std::find_if(item.children.begin(), item.children.end(), isWanted);
        const int place = static_cast<int>(row);
        if (from == item.children.end()) {
            beginInsertRows(indexOf(item), place, place);
            fill(*addItem(wanted[row], &item, row));
            endInsertRows();
        } else {
            const int old = static_cast<int>(from - item.children.begin());
            beginMoveRows(indexOf(item), old, old, indexOf(item), place);
            std::rotate(item.children.begin() + place, from, from + 1);
            endMoveRows();
        }
    }
}

std::vector<std::uint32_t> NodeTreeModel::wantedChildren(const Item &item) const
{
    std::vector<std::uint32_t> ids;
    const osg::NodePtr node = kxNodeUtils::getNodeFromId(item.id);
    for (std::size_t i = 0; node && i < node->getNChildren(); ++i)
        if (const osg::NodePtr child = node->getChild(i); child && (item.parent || isListed(child)))
            ids.push_back(child.getFieldContainerId());
    return ids;
}

NodeTreeModel::Item *NodeTreeModel::addItem(std::uint32_t id, Item *parent, std::size_t row)
{
    auto item = std::make_unique<Item>();
    Item *added = item.get();
    added->id = id;
    added->parent = parent;
    added->row = row;
    if (parent)
        parent->children.insert(parent->children.begin() + static_cast<std::ptrdiff_t>(row), added);
    _items[id] = std::move(item);
    learnAttachments(*added);
    return added;
}

/// Without recursion: trees may be deeper than the stack.
void NodeTreeModel::fill(Item &top)
{
    std::vector<Item *> waiting{&top};
    while (!waiting.empty()) {
        Item *item = waiting.back();
        waiting.pop_back();
        for (const std::uint32_t id : wantedChildren(*item))
            waiting.push_back(addItem(id, item, item->children.size()));
    }
}

void NodeTreeModel::forget(Item *item)
{
    std::vector<Item *> waiting{item};
    while (!waiting.empty()) {
        const Item *gone = waiting.back();
        waiting.pop_back();
        waiting.insert(waiting.end(), gone->children.begin(), gone->children.end());
        _states.erase(gone->id);
        _items.erase(gone->id);
    }
}

void NodeTreeModel::learnAttachments(Item &item)
{
    const osg::NodePtr node = kxNodeUtils::getNodeFromId(item.id);
    if (const auto name = osg::findAttachment<osg::NameAttachment>(node))
        _ownerOf[name.getFieldContainerId()] = item.id;
    if (const auto asset = osg::AssetAttachment::getAssetAttachment(node))
        _ownerOf[asset.getFieldContainerId()] = item.id;
}

NodeTreeModel::Item *NodeTreeModel::itemAt(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<Item *>(index.internalPointer()) : _root;
}

QModelIndex NodeTreeModel::indexOf(const Item &item, int column) const
{
    if (!item.parent)
        return {};
    const auto &siblings = item.parent->children;
    if (item.row >= siblings.size() || siblings[item.row] != &item)
        item.row = static_cast<std::size_t>(std::find(siblings.begin(), siblings.end(), &item) - siblings.begin());
    return createIndex(static_cast<int>(item.row), column, const_cast<Item *>(&item));
}

/// Rows may leave out children, so that the place is that of the node whose row it is.
int NodeTreeModel::childIndex(const osg::NodePtr &target, int row, const QModelIndex &parent) const
{
    const osg::NodePtr next = row < 0 ? osg::NodePtr() : nodeAt(index(row, 0, parent));
    return next ? target->findChild(next) : -1;
}

const AssetState &NodeTreeModel::stateOf(const osg::NodePtr &node) const
{
    const std::uint32_t id = node.getFieldContainerId();
    const auto found = _states.find(id);
    return found != _states.end() ? found->second : _states.emplace(id, AssetState(node)).first->second;
}
