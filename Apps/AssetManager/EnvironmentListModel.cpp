// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/EnvironmentListModel.h"

#include "AssetManager/DragData.h"
#include "AssetManager/SceneActions.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/NameAttachment.h"

#include <QApplication>
#include <QFont>
#include <QMimeData>
#include <QPixmap>
#include <QStyle>
#include <QTimer>

#include <algorithm>
#include <iterator>

namespace {

/// As wide for those that are not current, so that the names stand below each other.
QPixmap marker(bool isCurrent)
{
    const int size = QApplication::style()->pixelMetric(QStyle::PM_SmallIconSize);
    if (isCurrent)
        return QApplication::style()->standardIcon(QStyle::SP_DialogApplyButton).pixmap(size);
    QPixmap nothing(size, size);
    nothing.fill(Qt::transparent);
    return nothing;
}

} // namespace

EnvironmentListModel::EnvironmentListModel(SceneActions &actions, QObject *parent)
    : QAbstractListModel(parent), _actions(actions), _timer(new QTimer(this)), _entries(environments()),
      _current(currentRow())
{
    _timer->setSingleShot(true);
    _timer->setInterval(0);
    connect(_timer, &QTimer::timeout, this, &EnvironmentListModel::refresh);
    const auto &notifier = kxScenegraph::notifier();
    connect(&notifier, &kxScenegraphNotifier::documentChanged, this, &EnvironmentListModel::refresh);
    connect(&notifier, &kxScenegraphNotifier::updateRequested, _timer, qOverload<>(&QTimer::start));
    connect(&notifier, &kxScenegraphNotifier::nameChanged, _timer, qOverload<>(&QTimer::start));
    osg::FieldContainerFactory::the().addListener(*this);
}

EnvironmentListModel::~EnvironmentListModel()
{
    osg::FieldContainerFactory::the().removeListener(*this);
}

void EnvironmentListModel::refresh()
{
    const std::vector<Entry> entries = environments();
    const int current = currentRow();
    const bool isSame = entries == _entries && current == _current;
    _current = current;
    replaceRows(entries);
    _entries = entries; // the names
    if (!isSame && !_entries.empty())
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
}

/// Only the rows between those that stay, so that a person stays where he is in the list.
void EnvironmentListModel::replaceRows(const std::vector<Entry> &entries)
{
    const auto isSameMaterial = [](const Entry &a, const Entry &b) { return a.materialId == b.materialId; };
    const auto front = std::mismatch(_entries.begin(), _entries.end(), entries.begin(), entries.end(), isSameMaterial);
    const auto back = std::mismatch(_entries.rbegin(), std::make_reverse_iterator(front.first), entries.rbegin(),
                                    std::make_reverse_iterator(front.second), isSameMaterial);
    const auto first = static_cast<int>(front.first - _entries.begin());
    const std::vector<Entry> added(front.second, back.second.base());
    const auto removed = static_cast<int>(back.first.base() - front.first);
    if (removed > 0) {
        beginRemoveRows({}, first, first + removed - 1);
        _entries.erase(front.first, back.first.base());
        endRemoveRows();
    }
    if (!added.empty()) {
        beginInsertRows({}, first, first + static_cast<int>(added.size()) - 1);
        _entries.insert(_entries.begin() + first, added.begin(), added.end());
        endInsertRows();
    }
}

int EnvironmentListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(_entries.size());
}

QVariant EnvironmentListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    const Entry &entry = _entries[static_cast<std::size_t>(index.row())];
    const QString name = entry.name.empty() ? tr("unnamed") : QString::fromStdString(entry.name);
    const bool isCurrent = index.row() == _current;
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return name;
    case Qt::AccessibleTextRole:
        return isCurrent ? tr("%1, lights the scene").arg(name) : name;
    case Qt::ToolTipRole:
        return isCurrent ? tr("Lights the scene") : tr("Double-click or press Enter to light the scene with it");
    case Qt::DecorationRole:
        return marker(isCurrent);
    case Qt::FontRole: {
        QFont font;
        font.setBold(isCurrent);
        return font;
    }
    default:
        return {};
    }
}

bool EnvironmentListModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || role != Qt::EditRole)
        return false;
    _actions.rename(_entries[static_cast<std::size_t>(index.row())].materialId, value.toString().toStdString());
    return true;
}

Qt::ItemFlags EnvironmentListModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDropEnabled | Qt::ItemIsEditable;
}

QStringList EnvironmentListModel::mimeTypes() const
{
    return {DragData::mimeTypeOf(Environment)};
}

bool EnvironmentListModel::canDropMimeData(const QMimeData *data, Qt::DropAction /*action*/, int /*row*/,
                                           int /*column*/, const QModelIndex & /*parent*/) const
{
    return data && !DragData::assets(*data, Environment).empty();
}

bool EnvironmentListModel::dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                                        const QModelIndex &parent)
{
    if (!canDropMimeData(data, action, row, column, parent))
        return false;
    _actions.loadEnvironment(DragData::assets(*data, Environment));
    return true;
}

std::vector<EnvironmentListModel::Entry> EnvironmentListModel::environments()
{
    std::vector<Entry> entries;
    if (const auto choices = kxDefaultEnvironment::getSwitch())
        for (const osg::MaterialPtr &material : choices->getMaterials())
            entries.push_back({material.getFieldContainerId(), osg::getName(material)});
    return entries;
}

int EnvironmentListModel::currentRow()
{
    const auto choices = kxDefaultEnvironment::getSwitch();
    return choices ? choices->getChoice() : -1;
}

void EnvironmentListModel::containerChanged(osg::FieldContainer &container, osg::FieldMask /*fields*/)
{
    if (container.getType().isDerivedFrom(osg::SwitchMaterial::getClassType()))
        _timer->start();
}
