// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/SceneStep.h"
#include "SceneGraph/Node.h"

#include <QCoreApplication>

/// Hangs a node below another parent, or takes it out of the tree. Holds the node, so that it can come back.
class PlacementStep final : public SceneStep
{
    Q_DECLARE_TR_FUNCTIONS(PlacementStep)

public:
    /// Where a node hangs: the parent's id, 0 for nowhere, and its place among the children as they are without it.
    struct Place
    {
        std::uint32_t parentId = 0;
        std::int32_t index = 0;
    };

    static Place placeOf(const osg::NodePtr &node);

    PlacementStep(const osg::NodePtr &node, const Place &target);
    /// Of a node that is in its new place already.
    PlacementStep(const osg::NodePtr &node, const Place &before, const Place &after);

    QString apply() override;
    QString revert() override;

private:
    QString moveTo(const Place &place) const;

    osg::FCRef<osg::Node> _node;
    Place _before;
    Place _after;
};
