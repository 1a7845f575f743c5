// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxAssetCategory.h"
#include "Assets/kxAssetsExport.h"
#include "Kernel/kxNodePtr.h"
#include "SceneGraph/Matrix.h"
#include "SceneGraph/Node.h"

#include <cstdint>
#include <vector>

/// Gathers nodes of the scene below one temporary root, so that they can be written as one asset, and puts them back.
///
/// Geometry keeps its placement within the deepest common ancestor of the nodes. A copy knows the same moves; whichever
/// puts the nodes back first does. Main thread only.
class KX_ASSETS_EXPORT kxCreateGroupedNodes
{
public:
    explicit kxCreateGroupedNodes(kxAssetCategoryType category) : _category(category) {}
    kxCreateGroupedNodes(const kxCreateGroupedNodes &) = default;
    kxCreateGroupedNodes &operator=(const kxCreateGroupedNodes &) = default;
    /// Puts back what was not yet.
    ~kxCreateGroupedNodes();

    /// False, and nothing moves, for an empty list, without a scene, and when it is prepared already. Of geometry the
    /// scene's updates are off after a failure that is not the empty list's, until unprepare().
    bool prepare(const std::vector<kxNodePtr> &nodes);
    /// Null while nothing is prepared.
    osg::NodePtr getRoot() const { return _root; }
    /// Puts every node back to its old parent and place, and drops the root. Nothing happens when nothing is prepared, but
    /// that the host's sceneplates are told.
    void unprepare();

private:
    struct Position
    {
        std::uint32_t node = 0;
        std::uint32_t parent = 0;
        std::int32_t index = -1;
    };

    bool prepareGeometry(const std::vector<kxNodePtr> &nodes);
    bool prepareSceneplate(const std::vector<kxNodePtr> &nodes);
    void unprepareGeometry();
    void unprepareSceneplate();
    bool createRoot(const osg::NodePtr &parent, const osg::NodeCorePtr &core);
    void removeRoot();
    bool isRestored() const;
    void storeOriginalPosition(const osg::NodePtr &node);
    void restorePositions();
    void moveGeometry(const osg::NodePtr &node, const osg::NodePtr &ancestor, const osg::Matrix &fromWorld);

    std::vector<Position> _positions;
    osg::FCRef<osg::Node> _root;
    kxAssetCategoryType _category;
};
