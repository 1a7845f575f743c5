// SPDX-License-Identifier: Apache-2.0
#pragma once

#if !defined(Q_MOC_RUN)
#include "SceneGraph/Node.h"
#endif

#include <QObject>
#include <QStringList>

#include <cstdint>
#include <vector>

class AssetModel;
class AssetActions;
class MaterialPanel;
class QDockWidget;
class QMainWindow;
class QMenu;
class QUndoStack;
class SceneActions;
class SceneView;

/// The views of the scene document as docks of a window, and what is done to the scene. Main thread only.
class SceneSide final : public QObject
{
    Q_OBJECT

public:
    /// The window owns the docks. The model tells of what category assets are.
    SceneSide(QMainWindow &window, const AssetModel &assets, QUndoStack &undo);
    ~SceneSide() override;

    SceneActions &actions() { return *_actions; }
    SceneView &view() { return *_view; }

    std::vector<std::uint32_t> selectedNodes() const;
    /// Of the list of materials.
    std::vector<std::uint32_t> selectedMaterials() const;

    /// Brings assets into the scene: materials onto the selected nodes, or into the scene's materials where none is.
    void load(const QStringList &uuids);
    /// The same, but geometry below the selected object and plates beside or below the selected plate.
    void loadBelow(const QStringList &uuids);
    /// Saves what the scene has of these assets over them, after asking.
    void overwrite(const QStringList &uuids, AssetActions &actions);
    /// Whether the scene may go; asks where it was changed.
    bool mayLeaveScene();

    void addFileActions(QMenu &menu);
    void addActions(QMenu &menu);

    bool isIdle() const;

public Q_SLOTS:
    void newScene();
    void openScene();
    /// Opens this scene, without asking about the one there was.
    void open(const QString &file);
    bool saveScene();
    bool saveSceneAs();

private:
    QDockWidget *addDock(const QString &title, const char *name, QWidget *widget, Qt::DockWidgetArea area);
    void makeDocks();
    void updateTitle();
    void loadBelow(const QStringList &uuids, const osg::NodePtr &parent);

    QMainWindow &_window;
    const AssetModel &_assets;
    SceneActions *_actions;
    SceneView *_view = nullptr;
    MaterialPanel *_materials = nullptr;
    QString _file;
};
