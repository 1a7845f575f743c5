// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWidget>

class EnvironmentListModel;
class QListView;
class SceneActions;

/// What lights the scene: a double click or Enter switches, Delete removes, and environment assets can be dropped here.
class EnvironmentPanel final : public QWidget
{
    Q_OBJECT

public:
    explicit EnvironmentPanel(SceneActions &actions, QWidget *parent = nullptr);
    ~EnvironmentPanel() override;

    EnvironmentListModel &model() const { return *_model; }
    QListView &view() const { return *_view; }

private:
    void switchTo(const QModelIndex &index);
    void removeCurrent();

    SceneActions &_actions;
    EnvironmentListModel *_model;
    QListView *_view;
};
