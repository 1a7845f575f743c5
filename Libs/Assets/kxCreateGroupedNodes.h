// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Assets/kxAssetCategory.h"
#include "Assets/kxAssetsExport.h"
#include "Kernel/kxNodePtr.h"
#include "SceneGraph/Matrix.h"
#include "SceneGraph/Node.h"

#include <vector>

namespace kxAssetsInternal {
struct NodePosition;
}

/// Gathers nodes of the scene below one temporary root, so that they can be written as one asset, and puts them back.
///
/// Geometry keeps its placement within the deepest common ancestor of the nodes. A copy knows the same moves; whichever
/// puts the nodes back first does. Main thread only.
class KX_ASSETS_EXPORT kxCreateGroupedNodes
{
public:
    explicit kxCreateGroupedNodes(kxAssetCategoryType category);
    kxCreateGroupedNodes(const kxCreateGroupedNodes &);
    kxCreateGroupedNodes &operator=(const kxCreateGroupedNodes &);
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
    bool prepareGeometry(const std::vector<kxNodePtr> &nodes);
    bool prepareSceneplate(const std::vector<kxNodePtr> &nodes);
    void unprepareGeometry();
    void unprepareSceneplate();
    bool createRoot(const osg::NodePtr &parent, const osg::NodeCorePtr &core);
    void removeRoot();
    bool isRestored() const;
    void moveGeometry(const osg::NodePtr &node, const osg::NodePtr &ancestor, const osg::Matrix &fromWorld);

    std::vector<kxAssetsInternal::NodePosition> _positions;
    osg::FCRef<osg::Node> _root;
    kxAssetCategoryType _category;
};
