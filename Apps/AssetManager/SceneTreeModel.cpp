// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/SceneTreeModel.h"

#include "AssetManager/DragData.h"
#include "AssetManager/SceneActions.h"
#include "AssetManager/SceneNodes.h"
#include "Kernel/kxScenegraph.h"

SceneTreeModel::SceneTreeModel(SceneActions &actions, QObject *parent) : NodeTreeModel(actions, parent)
{
    build();
}

SceneTreeModel::~SceneTreeModel() = default;

osg::NodePtr SceneTreeModel::rootNode() const
{
    return kxScenegraph::getRoot();
}

QStringList SceneTreeModel::mimeTypes() const
{
    return NodeTreeModel::mimeTypes() << DragData::mimeTypeOf(Geometry) << DragData::mimeTypeOf(Material)
                                      << DragData::mimeTypeOf(Environment) << DragData::materialMimeType();
}

bool SceneTreeModel::isListed(const osg::NodePtr &node) const
{
    return node != kxScenegraph::getMaterialPoolNode();
}

bool SceneTreeModel::takes(const QMimeData &data, const osg::NodePtr & /*target*/, bool isOnNode) const
{
    if (!DragData::assets(data, Geometry).empty() || !DragData::assets(data, Environment).empty())
        return true;
    return isOnNode && (!DragData::assets(data, Material).empty() || !DragData::materials(data).empty());
}

void SceneTreeModel::take(const QMimeData &data, const osg::NodePtr &target, bool isOnNode)
{
    const osg::FCRef<osg::Node> held(target); // questions on the way may run an event loop
    if (const auto environments = DragData::assets(data, Environment); !environments.empty())
        actions().loadEnvironment(environments);
    if (const auto geometry = DragData::assets(data, Geometry); !geometry.empty())
        actions().loadGeometry(geometry, target);
    if (!isOnNode)
        return;
    // Of several materials the first is meant: a node has one.
    if (const auto assets = DragData::assets(data, Material); !assets.empty())
        actions().assignMaterial(assets.front(), SceneNodes::meantBy(target));
    else if (const auto materials = DragData::materials(data); !materials.empty())
        actions().assignMaterial(materials.front(), SceneNodes::meantBy(target));
}
