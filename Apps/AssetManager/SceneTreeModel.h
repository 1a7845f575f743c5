// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/NodeTreeModel.h"

/// The scene below its root, but for the material pool. Geometry assets, materials and nodes can be dropped on it.
class SceneTreeModel final : public NodeTreeModel
{
    Q_OBJECT

public:
    explicit SceneTreeModel(SceneActions &actions, QObject *parent = nullptr);
    ~SceneTreeModel() override;

    osg::NodePtr rootNode() const override;
    QStringList mimeTypes() const override;

protected:
    bool isListed(const osg::NodePtr &node) const override;
    bool takes(const QMimeData &data, const osg::NodePtr &target, bool isOnNode) const override;
    void take(const QMimeData &data, const osg::NodePtr &target, bool isOnNode) override;
};
