// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ScriptGuard.h"

#include "AssetManager/LastingCommand.h"
#include "Kernel/kxController.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "Kernel/kxSelectionManager.h"
#include "SceneGraph/FieldContainerFactory.h"

#include <QGuiApplication>
#include <QUndoStack>

#include <utility>

namespace {

std::vector<std::uint32_t> selectedIds()
{
    std::vector<std::uint32_t> ids;
    for (const osg::NodePtr &node : kxSelectionManager::getSelectedNodes())
        ids.push_back(node.getFieldContainerId());
    return ids;
}

std::vector<QCursor> takeCursors()
{
    std::vector<QCursor> cursors;
    while (const QCursor *cursor = QGuiApplication::overrideCursor()) {
        cursors.push_back(*cursor);
        QGuiApplication::restoreOverrideCursor();
    }
    return cursors;
}

void giveCursors(const std::vector<QCursor> &cursors)
{
    for (auto cursor = cursors.rbegin(); cursor != cursors.rend(); ++cursor)
        QGuiApplication::setOverrideCursor(*cursor);
}

std::uint32_t idOfNewContainer()
{
    const osg::FCRef<osg::Node> container(osg::Node::create());
    return container.get().getFieldContainerId();
}

} // namespace

ScriptGuard::ScriptGuard(QUndoStack &undo)
    : _undo(undo), _sceneSteps(LastingCommand::countOthers(undo)), _selected(selectedIds()), _cursors(takeCursors()),
      _updatesScene(kxScenegraph::isUpdateEnabled()), _updatesPicture(kxController::isRenderUpdateEnabled()),
      _firstNew(idOfNewContainer())
{
    giveCursors(_cursors);
    osg::FieldContainerFactory::the().addListener(*this);
    _documents = QObject::connect(&kxScenegraph::notifier(), &kxScenegraphNotifier::documentChanged, [this] {
        _hasForgotten = _hasForgotten || _sceneSteps > 0; // they belonged to the former one, and are gone already
        _isSceneChanged = false;                          // a fresh document is as it was made
        _firstNew = idOfNewContainer();
    });
}

ScriptGuard::~ScriptGuard()
{
    end(true);
}

void ScriptGuard::end(bool isFailed)
{
    if (std::exchange(_isOver, true))
        return;
    osg::FieldContainerFactory::the().removeListener(*this);
    QObject::disconnect(_documents);
    kxScenegraph::enableUpdate(_updatesScene);
    kxController::enableRenderUpdate(_updatesPicture);
    takeCursors();
    giveCursors(_cursors);
    if (isFailed && selectedIds() != _selected)
        restoreSelection();
    announceChanges();
}

void ScriptGuard::announceChanges()
{
    if (!_isSceneChanged)
        return;
    _hasForgotten = LastingCommand::keepOnly(_undo) || _hasForgotten;
    kxController::setModified(true);
    kxScenegraph::update(false);
    kxController::updateRender(false);
}

/// What the script made becomes part of the scene by a change of something that is.
void ScriptGuard::containerChanged(osg::FieldContainer &container, osg::FieldMask /*fields*/)
{
    _isSceneChanged = _isSceneChanged || container.getFieldContainerId() < _firstNew;
}

void ScriptGuard::restoreSelection() const
{
    std::vector<osg::NodePtr> nodes;
    for (const std::uint32_t id : _selected)
        if (const osg::NodePtr node = kxNodeUtils::getNodeFromId(id))
            nodes.push_back(node);
    kxSelectionManager::clear();
    kxSelectionManager::selectNodes(nodes, true);
}
