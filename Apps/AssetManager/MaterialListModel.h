// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/MaterialPreviews.h"

#include <QAbstractListModel>

#include <vector>

class QTimer;
class SceneActions;

/// The materials of the scene: those of its pool and those assigned to its nodes, by name. Main thread only.
class MaterialListModel final : public QAbstractListModel, private osg::SceneListener
{
    Q_OBJECT

public:
    explicit MaterialListModel(SceneActions &actions, QObject *parent = nullptr);
    ~MaterialListModel() override;

    /// 0 for an invalid index.
    std::uint32_t materialIdAt(const QModelIndex &index) const;
    QModelIndex indexOf(std::uint32_t materialId) const;
    void refresh();

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    Qt::DropActions supportedDropActions() const override { return Qt::CopyAction; }
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

private:
    void containerChanged(osg::FieldContainer &container, osg::FieldMask fields) override;
    void containerDestroyed(osg::FieldContainer &container) override;
    void announce(std::uint32_t materialId);

    SceneActions &_actions;
    MaterialPreviews *_previews;
    QTimer *_timer;
    std::vector<std::uint32_t> _ids;
};
