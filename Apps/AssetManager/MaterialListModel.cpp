// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/MaterialListModel.h"

#include "AssetManager/AssetState.h"
#include "AssetManager/DragData.h"
#include "AssetManager/SceneActions.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "Kernel/kxUberMaterialUtils.h"
#include "SceneGraph/FieldContainerFactory.h"

#include <QIcon>
#include <QMimeData>
#include <QTimer>

#include <algorithm>
#include <set>

namespace {

osg::MaterialPtr materialOf(std::uint32_t id)
{
    return osg::MaterialPtr::dcast(osg::FieldContainerFactory::the().getContainer(id));
}

/// Environments have a list of their own.
std::vector<std::uint32_t> sceneMaterials()
{
    std::set<osg::MaterialPtr> materials;
    kxMaterials::getMaterialsAndOverrideMaterials(kxScenegraph::getRoot(), materials, false);
    for (const std::uint32_t id : kxMaterials::getMaterialPoolMaterialIds())
        materials.insert(materialOf(id));
    std::vector<std::pair<std::string, std::uint32_t>> named;
    for (const osg::MaterialPtr &material : materials)
        if (material && !kxUberMaterialUtils::isEnvironmentMaterial(material))
            named.emplace_back(kxMaterials::getName(material), material.getFieldContainerId());
    std::sort(named.begin(), named.end());
    std::vector<std::uint32_t> ids;
    ids.reserve(named.size());
    for (const auto &[name, id] : named)
        ids.push_back(id);
    return ids;
}

/// A surface for the time until the picture is there.
QIcon typeIcon(const osg::MaterialPtr &material)
{
    return kxScenegraph::getMaterialTypeIcon(&material->getType(), MaterialPreviews::Size);
}

} // namespace

MaterialListModel::MaterialListModel(SceneActions &actions, QObject *parent)
    : QAbstractListModel(parent), _actions(actions), _previews(new MaterialPreviews(this)), _timer(new QTimer(this)),
      _ids(sceneMaterials())
{
    _timer->setSingleShot(true);
    _timer->setInterval(0);
    connect(_timer, &QTimer::timeout, this, &MaterialListModel::refresh);
    connect(_previews, &MaterialPreviews::previewChanged, this, &MaterialListModel::announce);
    const auto &notifier = kxScenegraph::notifier();
    connect(&notifier, &kxScenegraphNotifier::documentChanged, this, &MaterialListModel::refresh);
    connect(&notifier, &kxScenegraphNotifier::updateRequested, _timer, qOverload<>(&QTimer::start));
    connect(&notifier, &kxScenegraphNotifier::nameChanged, _timer, qOverload<>(&QTimer::start));
    osg::FieldContainerFactory::the().addListener(*this);
}

MaterialListModel::~MaterialListModel()
{
    osg::FieldContainerFactory::the().removeListener(*this);
}

std::uint32_t MaterialListModel::materialIdAt(const QModelIndex &index) const
{
    return index.isValid() ? _ids[static_cast<std::size_t>(index.row())] : 0;
}

QModelIndex MaterialListModel::indexOf(std::uint32_t materialId) const
{
    const auto found = std::find(_ids.begin(), _ids.end(), materialId);
    return found == _ids.end() ? QModelIndex() : index(static_cast<int>(found - _ids.begin()));
}

void MaterialListModel::refresh()
{
    const std::vector<std::uint32_t> wanted = sceneMaterials();
    const std::set<std::uint32_t> all(wanted.begin(), wanted.end());
    for (int row = rowCount() - 1; row >= 0; --row) {
        if (all.count(_ids[static_cast<std::size_t>(row)]) != 0)
            continue;
        beginRemoveRows({}, row, row);
        _ids.erase(_ids.begin() + row);
        endRemoveRows();
    }
    for (int row = 0; row < static_cast<int>(wanted.size()); ++row) {
        const std::uint32_t id = wanted[static_cast<std::size_t>(row)];
        if (row < rowCount() && _ids[static_cast<std::size_t>(row)] == id)
            continue;
        const auto from = std::find(_ids.begin(), _ids.end(), id);
        if (from == _ids.end()) {
            beginInsertRows({}, row, row);
            _ids.insert(_ids.begin() + row, id);
            endInsertRows();
        } else {
            const int old = static_cast<int>(from - _ids.begin());
            beginMoveRows({}, old, old, {}, row);
            std::rotate(_ids.begin() + row, from, from + 1);
            endMoveRows();
        }
    }
    if (!_ids.empty())
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), {Qt::DisplayRole, Qt::ToolTipRole});
}

int MaterialListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(_ids.size());
}

QVariant MaterialListModel::data(const QModelIndex &index, int role) const
{
    const osg::MaterialPtr material = materialOf(materialIdAt(index));
    if (!material)
        return {};
    const QString name = QString::fromStdString(kxMaterials::getName(material));
    if (role == Qt::EditRole)
        return name;
    if (role == Qt::DisplayRole)
        return name.isEmpty() ? tr("unnamed") : name;
    if (role == Qt::DecorationRole) {
        const QPixmap picture = _previews->preview(material);
        if (picture.isNull())
            return typeIcon(material);
        QIcon icon(picture);
        icon.addPixmap(picture, QIcon::Selected); // else it would be tinted, and colours matter
        return icon;
    }
    if (role == Qt::ToolTipRole) {
        const QString state = AssetState(material).text();
        return state.isEmpty() ? name : name + '\n' + state;
    }
    return {};
}

bool MaterialListModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !materialOf(materialIdAt(index)))
        return false;
    _actions.rename(materialIdAt(index), value.toString().toStdString());
    return true;
}

Qt::ItemFlags MaterialListModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled | Qt::ItemIsDropEnabled |
           Qt::ItemIsEditable;
}

QStringList MaterialListModel::mimeTypes() const
{
    return {DragData::mimeTypeOf(Material)};
}

QMimeData *MaterialListModel::mimeData(const QModelIndexList &indexes) const
{
    std::vector<std::uint32_t> ids;
    for (const QModelIndex &index : indexes)
        ids.push_back(materialIdAt(index));
    auto *data = new QMimeData;
    DragData::setMaterials(*data, ids);
    return data;
}

bool MaterialListModel::canDropMimeData(const QMimeData *data, Qt::DropAction /*action*/, int /*row*/, int /*column*/,
                                        const QModelIndex & /*parent*/) const
{
    return data && !DragData::assets(*data, Material).empty();
}

bool MaterialListModel::dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                                     const QModelIndex &parent)
{
    if (!canDropMimeData(data, action, row, column, parent))
        return false;
    _actions.loadMaterials(DragData::assets(*data, Material));
    return true;
}

void MaterialListModel::containerChanged(osg::FieldContainer &container, osg::FieldMask fields)
{
    const osg::FieldContainerType &type = container.getType();
    const osg::FieldInfo *held = type.findField("Material"); // of cores and of what covers them
    if (!held)
        held = type.findField("Materials"); // of the pool and of composites
    if (&type == &osg::Node::getClassType() || (held && (fields & held->mask) != 0))
        _timer->start();
}

void MaterialListModel::containerDestroyed(osg::FieldContainer &container)
{
    if (container.getType().isDerivedFrom(osg::Material::getClassType()))
        _timer->start();
}

void MaterialListModel::announce(std::uint32_t materialId)
{
    const QModelIndex index = indexOf(materialId);
    if (index.isValid())
        Q_EMIT dataChanged(index, index);
}
