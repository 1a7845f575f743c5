// SPDX-License-Identifier: Apache-2.0
#pragma once

#if !defined(Q_MOC_RUN)
#include "SceneGraph/SceneListener.h"
#endif

#include <QAbstractListModel>

#include <string>
#include <vector>

class QTimer;
class SceneActions;

/// The environments that the scene can be switched between, in their order; the current one is marked. Main thread only.
class EnvironmentListModel final : public QAbstractListModel, private osg::SceneListener
{
    Q_OBJECT

public:
    explicit EnvironmentListModel(SceneActions &actions, QObject *parent = nullptr);
    ~EnvironmentListModel() override;

    void refresh();

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QStringList mimeTypes() const override;
    Qt::DropActions supportedDropActions() const override { return Qt::CopyAction; }
    bool canDropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                         const QModelIndex &parent) const override;
    bool dropMimeData(const QMimeData *data, Qt::DropAction action, int row, int column,
                      const QModelIndex &parent) override;

private:
    struct Entry
    {
        std::uint32_t materialId = 0;
        std::string name;

        friend bool operator==(const Entry &, const Entry &) = default;
    };

    static std::vector<Entry> environments();
    static int currentRow();
    void replaceRows(const std::vector<Entry> &entries);
    void containerChanged(osg::FieldContainer &container, osg::FieldMask fields) override;

    SceneActions &_actions;
    QTimer *_timer;
    std::vector<Entry> _entries;
    int _current = -1;
};
