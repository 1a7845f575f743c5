// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ScriptGuard.h"

#include "AssetManager/LastingCommand.h"
#include "AssetSession/kxAssetLibrary.h"
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
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

/// One text for each asset with what steps of the libraries change.
std::vector<std::string> knownAssets()
{
    std::vector<std::string> all;
    const kxAssetItemFactory &registry = kxAssetItemFactory::the();
    for (int i = 0; i < registry.itemCount(); ++i) {
        kxAssetItem *item = registry.itemFromIndex(i);
        all.push_back(item->uuid() + '\n' + item->name() + '\n' + item->directoryUrl().toString().toStdString() + '\n' +
                      kxAssetLibrary::tagsOf(*item).join('\n').toStdString());
    }
    return all;
}

} // namespace

ScriptGuard::ScriptGuard(QUndoStack &undo)
    : _undo(undo), _firstStep(undo.index()), _selected(selectedIds()), _cursors(takeCursors()),
      _updatesScene(kxScenegraph::isUpdateEnabled()), _updatesPicture(kxController::isRenderUpdateEnabled())
{
    giveCursors(_cursors);
    if (_undo.count() > 0)
        _assets = knownAssets();
    osg::FieldContainerFactory::the().addListener(*this);
    _documents = QObject::connect(&kxScenegraph::notifier(), &kxScenegraphNotifier::documentChanged, [this] {
        _isOtherDocument = true;
        _firstStep = 0;          // the stack is empty then
        _isSceneChanged = false; // a fresh document is as it was made
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
    const bool areAssetsChanged = _undo.count() > 0 && knownAssets() != _assets;
    if (_isSceneChanged || _isOtherDocument || areAssetsChanged)
        _hasForgotten = LastingCommand::keepOnly(_undo, _firstStep);
    if (!_isSceneChanged)
        return;
    kxController::setModified(true);
    kxScenegraph::update(false);
    kxController::updateRender(false);
}

void ScriptGuard::containerChanged(osg::FieldContainer & /*container*/, osg::FieldMask /*fields*/)
{
    _isSceneChanged = true;
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
