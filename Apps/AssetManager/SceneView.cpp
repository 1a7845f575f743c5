// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/SceneView.h"

#include "AssetManager/DragData.h"
#include "AssetManager/OwnKeys.h"
#include "AssetManager/SceneActions.h"
#include "AssetManager/SceneNodes.h"
#include "AssetManager/StepPause.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxSelectionManager.h"

#include <QAction>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>

namespace {

/// Which needs something that it is put on; among others it comes into the scene at least.
bool isMaterialAlone(const QMimeData &dragged)
{
    for (const kxAssetCategoryType category : {Geometry, Environment, Sceneplate})
        if (dragged.hasFormat(DragData::mimeTypeOf(category)))
            return false;
    return DragData::assets(dragged, Material).size() < 2;
}

} // namespace

SceneView::SceneView(SceneActions &actions, QWidget *parent) : kxViewport(parent), _actions(actions)
{
    setObjectName(QStringLiteral("sceneView"));
    setAcceptDrops(true);
    new StepPause(*this);
    auto *remove = new QAction(tr("Delete"), this);
    remove->setObjectName(QStringLiteral("delete"));
    remove->setShortcut(QKeySequence::Delete);
    remove->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    addAction(remove);
    new OwnKeys(*this);
    connect(remove, &QAction::triggered, this,
            [this] { _actions.removeNodes(kxSelectionManager::getSelectedNodes()); });
    connect(this, &kxViewport::picked, this, [](quint32 nodeId, Qt::KeyboardModifiers modifiers) {
        const osg::NodePtr node = kxNodeUtils::getNodeFromId(nodeId);
        const bool isAdded = (modifiers & (Qt::ControlModifier | Qt::ShiftModifier)) != 0;
        if (!isAdded)
            kxSelectionManager::clear();
        if (node)
            kxSelectionManager::selectNodes({node}, !isAdded || !kxSelectionManager::isSelected(node));
    });
}

SceneView::~SceneView() = default;

void SceneView::dragEnterEvent(QDragEnterEvent *event)
{
    if (!DragData::hasAssets(*event->mimeData()) && DragData::materials(*event->mimeData()).empty())
        return;
    event->setDropAction(Qt::CopyAction); // the asset stays where it is
    event->accept();
    setRefinementPaused(true); // the pointer is to move smoothly
}

void SceneView::dragLeaveEvent(QDragLeaveEvent *event)
{
    setRefinementPaused(false);
    kxViewport::dragLeaveEvent(event);
}

void SceneView::dragMoveEvent(QDragMoveEvent *event)
{
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(!isMaterialAlone(*event->mimeData()) || nodeAt(event->pos()));
}

void SceneView::dropEvent(QDropEvent *event)
{
    setRefinementPaused(false);
    const QMimeData &dragged = *event->mimeData();
    const osg::NodePtr node = nodeAt(event->pos());
    auto materials = DragData::assets(dragged, Material);
    if (!materials.empty() && node) {
        _actions.assignMaterial(materials.front(), SceneNodes::meantInPicture(node));
        materials.erase(materials.begin());
    }
    if (!materials.empty())
        _actions.loadMaterials(materials);
    if (const auto own = DragData::materials(dragged); !own.empty() && node)
        _actions.assignMaterial(own.front(), SceneNodes::meantInPicture(node));
    if (const auto geometries = DragData::assets(dragged, Geometry); !geometries.empty())
        _actions.loadGeometry(geometries, nullptr);
    if (const auto environments = DragData::assets(dragged, Environment); !environments.empty())
        _actions.loadEnvironment(environments);
    if (const auto plates = DragData::assets(dragged, Sceneplate); !plates.empty())
        _actions.loadPlates(plates, nullptr);
    event->setDropAction(Qt::CopyAction);
    event->accept();
}
