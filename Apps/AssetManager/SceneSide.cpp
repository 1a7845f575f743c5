// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/SceneSide.h"

#include "AssetManager/AssetActions.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/EnvironmentPanel.h"
#include "AssetManager/MaterialPanel.h"
#include "AssetManager/MenuTip.h"
#include "AssetManager/PlatePanel.h"
#include "AssetManager/PropertyPanel.h"
#include "AssetManager/SceneActions.h"
#include "AssetManager/SceneTreePanel.h"
#include "AssetManager/SceneView.h"
#include "Kernel/kxController.h"
#include "Kernel/kxControllerNotifier.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxModalQuestion.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSelectionManager.h"

#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QMainWindow>
#include <QMenu>
#include <QUndoStack>

#include <map>

SceneSide::SceneSide(QMainWindow &window, const AssetModel &assets, QUndoStack &undo)
    : QObject(&window), _window(window), _assets(assets), _actions(new SceneActions(undo, this))
{
    makeDocks();
    connect(&kxController::notifier(), &kxControllerNotifier::modifiedChanged, this, &SceneSide::updateTitle);
    updateTitle();
}

SceneSide::~SceneSide() = default;

QDockWidget *SceneSide::addDock(const QString &title, const char *name, QWidget *widget, Qt::DockWidgetArea area)
{
    auto *dock = new QDockWidget(title, &_window);
    dock->setObjectName(QLatin1String(name));
    dock->setWidget(widget);
    _window.addDockWidget(area, dock);
    return dock;
}

void SceneSide::makeDocks()
{
    _window.setCorner(Qt::TopLeftCorner, Qt::LeftDockWidgetArea);
    _window.setCorner(Qt::TopRightCorner, Qt::RightDockWidgetArea);
    _view = new SceneView(*_actions, &_window);
    addDock(tr("Scene"), "viewDock", _view, Qt::TopDockWidgetArea);
    auto *tree = new SceneTreePanel(*_actions);
    addDock(tr("Scene tree"), "treeDock", tree, Qt::LeftDockWidgetArea);
    connect(tree, &NodeTreePanel::frameRequested, _view, &kxViewport::frameSelection);
    _materials = new MaterialPanel(*_actions);
    auto *properties = new PropertyPanel(*_actions);
    QDockWidget *propertyDock = addDock(tr("Properties"), "propertyDock", properties, Qt::RightDockWidgetArea);
    QDockWidget *materialDock = addDock(tr("Materials"), "materialDock", _materials, Qt::RightDockWidgetArea);
    QDockWidget *environmentDock =
        addDock(tr("Environments"), "environmentDock", new EnvironmentPanel(*_actions), Qt::RightDockWidgetArea);
    QDockWidget *plateDock = addDock(tr("Plates"), "plateDock", new PlatePanel(*_actions), Qt::RightDockWidgetArea);
    _window.tabifyDockWidget(materialDock, environmentDock);
    _window.tabifyDockWidget(environmentDock, plateDock);
    materialDock->raise();
    connect(_materials, &MaterialPanel::materialsSelected, properties, &PropertyPanel::showMaterials);
    if (auto *details = _window.findChild<QDockWidget *>(QStringLiteral("detailsDock"))) {
        _window.tabifyDockWidget(details, propertyDock);
        details->raise();
    }
}

bool SceneSide::isIdle() const
{
    return !_view->isVisible() || !_view->isRefining();
}

std::vector<std::uint32_t> SceneSide::selectedNodes() const
{
    std::vector<std::uint32_t> ids;
    for (const osg::NodePtr &node : kxSelectionManager::getSelectedNodes())
        ids.push_back(node.getFieldContainerId());
    return ids;
}

std::vector<std::uint32_t> SceneSide::selectedMaterials() const
{
    const QVector<quint32> ids = _materials->selectedMaterials();
    return {ids.begin(), ids.end()};
}

void SceneSide::load(const QStringList &uuids)
{
    loadBelow(uuids, nullptr);
}

void SceneSide::loadBelow(const QStringList &uuids)
{
    const std::vector<osg::NodePtr> selected = kxSelectionManager::getSelectedNodes();
    if (selected.empty())
        Q_EMIT _actions->failed({tr("No object is selected that something could be loaded below.")});
    else
        loadBelow(uuids, selected.back());
}

/// Null: into the scene as a whole.
void SceneSide::loadBelow(const QStringList &uuids, const osg::NodePtr &parent)
{
    std::map<kxAssetCategoryType, std::vector<std::string>> byCategory;
    for (const QString &uuid : uuids)
        if (const AssetEntry *entry = _assets.find(uuid.toStdString()))
            byCategory[entry->category].push_back(entry->uuid);
    const std::vector<osg::NodePtr> selected = kxSelectionManager::getSelectedNodes();
    if (const auto &materials = byCategory[Material]; materials.size() == 1 && !selected.empty())
        _actions->assignMaterial(materials.front(), selected);
    else if (!materials.empty())
        _actions->loadMaterials(materials);
    if (!byCategory[Geometry].empty())
        _actions->loadGeometry(byCategory[Geometry], parent);
    if (!byCategory[Environment].empty())
        _actions->loadEnvironment(byCategory[Environment]);
    if (!byCategory[Sceneplate].empty())
        _actions->loadPlates(byCategory[Sceneplate], parent);
}

void SceneSide::overwrite(const QStringList &uuids, AssetActions &actions)
{
    std::vector<std::uint32_t> ids;
    for (const QString &uuid : uuids) {
        if (const osg::MaterialPtr material = kxMaterials::findAssetMaterial(uuid.toStdString()))
            ids.push_back(material.getFieldContainerId());
        for (const osg::NodePtr &root : {kxScenegraph::getRoot(), kxScenegraph::getSceneplateRoot()})
            if (const auto nodes = kxScenegraph::getAssetNodes(root, uuid.toStdString(), -1); !nodes.empty())
                ids.push_back(osg::NodePtr(nodes.front()).getFieldContainerId());
    }
    if (ids.empty()) {
        emit _actions->failed({tr("The scene has no copy of these assets.")});
        return;
    }
    const auto answer = kxModalQuestion::warning(
        &_window, tr("Asset Manager"),
        tr("%n stored asset(s) will be replaced by what the scene has of them.", nullptr, static_cast<int>(ids.size())),
        QMessageBox::Save | QMessageBox::Cancel, QMessageBox::Cancel);
    if (answer == QMessageBox::Save)
        actions.overwrite(ids);
}

bool SceneSide::mayLeaveScene()
{
    if (!kxController::isModified())
        return true;
    const auto answer = kxModalQuestion::question(
        &_window, tr("Asset Manager"), tr("The scene was changed. Save it before it is closed?"),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Cancel);
    return answer == QMessageBox::Discard || (answer == QMessageBox::Save && saveScene());
}

void SceneSide::newScene()
{
    if (!mayLeaveScene())
        return;
    _actions->newScene();
    _file.clear();
    updateTitle();
}

void SceneSide::openScene()
{
    if (!mayLeaveScene())
        return;
    open(QFileDialog::getOpenFileName(&_window, tr("Open scene"), _file, tr("Scenes (*.osb)")));
}

void SceneSide::open(const QString &file)
{
    if (file.isEmpty() || !_actions->openScene(file))
        return;
    _file = file;
    updateTitle();
}

bool SceneSide::saveScene()
{
    if (_file.isEmpty())
        return saveSceneAs();
    const bool isSaved = _actions->saveScene(_file);
    updateTitle();
    return isSaved;
}

bool SceneSide::saveSceneAs()
{
    QString file = QFileDialog::getSaveFileName(&_window, tr("Save scene"), _file, tr("Scenes (*.osb)"));
    if (file.isEmpty())
        return false;
    if (QFileInfo(file).suffix().isEmpty())
        file += QStringLiteral(".osb");
    if (!_actions->saveScene(file))
        return false;
    _file = file;
    updateTitle();
    return true;
}

void SceneSide::updateTitle()
{
    const QString scene = _file.isEmpty() ? tr("unnamed scene") : QFileInfo(_file).completeBaseName();
    _window.setWindowTitle(tr("%1[*] - Asset Manager").arg(scene));
    _window.setWindowModified(kxController::isModified());
}

void SceneSide::addFileActions(QMenu &menu)
{
    const QString forgets = tr("Undo forgets what was done in the scene before.");
    MenuTip::add(*menu.addAction(tr("&New scene"), this, &SceneSide::newScene, QKeySequence::New), forgets);
    MenuTip::add(*menu.addAction(tr("&Open scene..."), this, &SceneSide::openScene, QKeySequence::Open), forgets);
    menu.addAction(tr("&Save scene"), this, &SceneSide::saveScene, QKeySequence::Save);
    menu.addAction(tr("Save scene &as..."), this, &SceneSide::saveSceneAs, QKeySequence::SaveAs);
}

void SceneSide::addActions(QMenu &menu)
{
    menu.addAction(tr("Show the &selection"), _view, &kxViewport::frameSelection, QStringLiteral("Ctrl+F3"));
    menu.addAction(tr("Show &everything"), _view, &kxViewport::frameAll, QStringLiteral("Ctrl+F4"));
}
