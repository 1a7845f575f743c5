// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Kernel/kxNodePtr.h"
#include "RandomMaterials.h"
#include "RandomNumbers.h"
#include "SceneFingerprint.h"
#include "SceneGraph/MaterialPool.h"
#include "SceneGraph/Node.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

/// Fills a fresh document with whatever a scene may hold, the same for the same seed: nodes with and without cores, clones,
/// switches, nested pools, environments, materials of every kind, sceneplates, and what lies outside of a sub-tree that
/// refers to it. Nodes have names of their own, but for clones.
class RandomScene
{
public:
    explicit RandomScene(std::uint32_t seed);

    RandomNumbers random;

    /// The node and all below it, parents first.
    static std::vector<osg::NodePtr> below(const osg::NodePtr &root);
    /// All that hangs in the scene now.
    static std::vector<osg::NodePtr> nodes();
    static std::vector<osg::NodePtr> plates();
    /// Those with an environment core.
    static std::vector<osg::NodePtr> environments();
    /// Hangs nowhere.
    osg::NodePtr looseNode() const { return _loose.get(); }
    const RandomMaterials &materials() const { return *_materials; }

    /// Some of the nodes in any order, with nulls, repetitions and nodes below others.
    std::vector<kxNodePtr> someOf(const std::vector<osg::NodePtr> &nodes);

    SceneFingerprint fingerprint(const std::set<std::string> &unordered = {}) const;

private:
    osg::NodePtr addNode(const osg::NodePtr &parent, const osg::NodeCorePtr &core);
    osg::NodePtr anyParent();
    osg::NodeCorePtr makeCore();
    osg::NodeCorePtr makePlacement();
    osg::NodeCorePtr makeSurfaceCore();
    osg::NodeCorePtr makeSwitch();
    osg::NodeCorePtr makePool();
    osg::NodeCorePtr makeEnvironmentCore();
    osg::NodeCorePtr makePlate();
    void addDefaultEnvironments();
    void decorate(const osg::NodePtr &node);
    void addClone();
    void addConstraints();
    void addLightLinkSets();
    void addPlates();
    std::vector<std::string> someKeys();

    std::optional<RandomMaterials> _materials;
    std::vector<osg::FCRef<osg::UberCamera>> _cameras;
    std::vector<osg::NodePtr> _made;
    std::vector<std::string> _keys;
    osg::FCRef<osg::Node> _loose;
    int _count = 0;
};
