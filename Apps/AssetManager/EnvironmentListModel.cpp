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

/// The list is short: it is set anew, but only where something is different.
void EnvironmentListModel::refresh()
{
    const int current = currentRow();
    std::vector<Entry> entries = environments();
    if (entries != _entries) {
        beginResetModel();
        _entries = std::move(entries);
        _current = current;
        endResetModel();
    } else if (current != _current) {
        _current = current;
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
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
