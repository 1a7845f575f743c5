// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/SceneTreePanel.h"

#include "AssetManager/EmptyHint.h"
#include "AssetManager/SceneNodes.h"
#include "AssetManager/SceneTreeModel.h"
#include "Kernel/kxScenegraph.h"

#include <QTreeView>

namespace {

bool isSceneEmpty()
{
    const osg::NodePtr root = kxScenegraph::getRoot();
    for (std::size_t i = 0; root && i < root->getNChildren(); ++i)
        if (!SceneNodes::isFixed(root->getChild(i)))
            return false;
    return true;
}

} // namespace

SceneTreePanel::SceneTreePanel(SceneActions &actions, QWidget *parent)
    : NodeTreePanel(actions, new SceneTreeModel(actions), parent)
{
    setObjectName("sceneTreePanel");
    setAccessibleName(tr("Scene"));
    view().setObjectName("sceneTree");
    view().setAccessibleName(tr("Objects of the scene"));
    new EmptyHint(tr("Drag a geometry asset here to put it into the scene."), view(), isSceneEmpty);
}

SceneTreePanel::~SceneTreePanel() = default;
