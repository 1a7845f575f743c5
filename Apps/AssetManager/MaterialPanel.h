// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QVector>
#include <QWidget>

class MaterialListModel;
class QListView;
class SceneActions;

/// The materials of the scene with small pictures; they can be dragged onto objects, and material assets dropped here.
class MaterialPanel final : public QWidget
{
    Q_OBJECT

public:
    explicit MaterialPanel(SceneActions &actions, QWidget *parent = nullptr);
    ~MaterialPanel() override;

    MaterialListModel &model() const { return *_model; }
    QListView &view() const { return *_view; }
    /// The ids of what is selected.
    QVector<quint32> selectedMaterials() const;
    /// Gives the current material to the selected objects.
    void assignToSelection();
    /// Selects the objects that use the selected materials.
    void selectUsers();

Q_SIGNALS:
    void materialsSelected(const QVector<quint32> &materialIds);

private:
    void addActions();
    void showMenu(const QPoint &place);

    SceneActions &_actions;
    MaterialListModel *_model;
    QListView *_view;
};
