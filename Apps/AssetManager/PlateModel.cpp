// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/PlateModel.h"

#include "AssetManager/DragData.h"
#include "AssetManager/SceneActions.h"
#include "AssetManager/SceneNodes.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/Sceneplate.h"

#include <algorithm>
#include <cmath>

namespace {

osg::SceneplatePtr plateOf(const osg::NodePtr &node)
{
    return node ? osg::SceneplatePtr::dcast(node->getCore()) : osg::SceneplatePtr();
}

} // namespace

PlateModel::PlateModel(SceneActions &actions, QObject *parent) : NodeTreeModel(actions, parent)
{
    build();
}

PlateModel::~PlateModel() = default;

osg::NodePtr PlateModel::rootNode() const
{
    return kxScenegraph::getSceneplateRoot();
}

int PlateModel::columnCount(const QModelIndex & /*parent*/) const
{
    return OpacityColumn + 1;
}

QVariant PlateModel::nodeData(const osg::NodePtr &node, int column, int role) const
{
    const osg::SceneplatePtr plate = plateOf(node);
    if (plate && column == NameColumn && role == Qt::CheckStateRole)
        return plate->getIsVisible() ? Qt::Checked : Qt::Unchecked;
    if (column != OpacityColumn)
        return NodeTreeModel::nodeData(node, column, role);
    if (!plate)
        return {};
    const int percent = static_cast<int>(std::lround(100.0 * std::clamp(plate->getOpacity(), 0.0F, 1.0F)));
    if (role == Qt::DisplayRole)
        return tr("%1 %").arg(percent);
    if (role == Qt::EditRole)
        return percent;
    return role == Qt::ToolTipRole ? QVariant(tr("Opacity: 0 is invisible, 100 hides what is behind")) : QVariant();
}

bool PlateModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    const osg::NodePtr node = nodeAt(index);
    const osg::SceneplatePtr plate = plateOf(node);
    if (plate && index.column() == NameColumn && role == Qt::CheckStateRole) {
        actions().setVisible(SceneNodes::meantBy(node), value.toInt() == Qt::Checked);
        return true;
    }
    if (plate && index.column() == OpacityColumn && role == Qt::EditRole) {
        const float share = static_cast<float>(std::clamp(value.toInt(), 0, 100)) / 100.0F;
        std::vector<std::uint32_t> meant;
        for (const osg::NodePtr &other : SceneNodes::meantBy(node))
            if (const osg::SceneplatePtr its = plateOf(other))
                meant.push_back(its.getFieldContainerId());
        actions().setField(meant, "Opacity", share, tr("Opacity"));
        return true;
    }
    return NodeTreeModel::setData(index, value, role);
}

QVariant PlateModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (section == OpacityColumn && orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return tr("Opacity");
    return NodeTreeModel::headerData(section, orientation, role);
}

Qt::ItemFlags PlateModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = NodeTreeModel::flags(index);
    if (!plateOf(nodeAt(index)))
        return flags;
    if (index.column() == NameColumn)
        return flags | Qt::ItemIsUserCheckable;
    return index.column() == OpacityColumn ? flags | Qt::ItemIsEditable : flags;
}

QStringList PlateModel::mimeTypes() const
{
    return NodeTreeModel::mimeTypes() << DragData::mimeTypeOf(Sceneplate);
}

bool PlateModel::takes(const QMimeData &data, const osg::NodePtr & /*target*/, bool /*isOnNode*/) const
{
    return !DragData::assets(data, Sceneplate).empty();
}

void PlateModel::take(const QMimeData &data, const osg::NodePtr &target, bool /*isOnNode*/)
{
    actions().loadPlates(DragData::assets(data, Sceneplate), target);
}

void PlateModel::noticeChange(osg::FieldContainer &container)
{
    if (&container.getType() != &osg::Sceneplate::getClassType())
        return;
    std::vector<QModelIndex> waiting{QModelIndex()};
    while (!waiting.empty()) {
        const QModelIndex parent = waiting.back();
        waiting.pop_back();
        for (int row = 0; row < rowCount(parent); ++row) {
            const QModelIndex index = this->index(row, 0, parent);
            waiting.push_back(index);
            const osg::SceneplatePtr plate = plateOf(nodeAt(index));
            if (plate && plate.get() == &container)
                announce(nodeAt(index).getFieldContainerId());
        }
    }
}
