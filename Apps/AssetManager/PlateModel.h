// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/NodeTreeModel.h"

/// The sceneplates, with a check box for what is shown, and the opacity in percent. Plate assets can be dropped on it.
class PlateModel final : public NodeTreeModel
{
    Q_OBJECT

public:
    static constexpr int OpacityColumn = ColumnCount;

    explicit PlateModel(SceneActions &actions, QObject *parent = nullptr);
    ~PlateModel() override;

    osg::NodePtr rootNode() const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QStringList mimeTypes() const override;

protected:
    QVariant nodeData(const osg::NodePtr &node, int column, int role) const override;
    bool takes(const QMimeData &data, const osg::NodePtr &target, bool isOnNode) const override;
    void take(const QMimeData &data, const osg::NodePtr &target, bool isOnNode) override;
    void noticeChange(osg::FieldContainer &container) override;
};
