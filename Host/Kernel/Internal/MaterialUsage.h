// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Material.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/SceneListener.h"

#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace kxKernelInternal {

/// Knows who uses each material: composites and cores, and who uses each core: nodes. Kept up to date with every edit, so
/// that whether a material belongs to a scene is found by going up from it instead of searching the scene.
class MaterialUsage final : public osg::SceneListener
{
public:
    /// Whether the material is assigned to a node at or below \a root, held by a pool there, or an entry of a composite
    /// material for which that is true.
    bool isBelow(const osg::MaterialPtr &material, const osg::NodePtr &root) const;

    /// Whether \a user, a core or composite, refers to the material itself.
    bool isUsedBy(const osg::MaterialPtr &material, const osg::FieldContainerPtr &user) const;

    void containerChanged(osg::FieldContainer &container, osg::FieldMask fields) override;
    void containerDestroyed(osg::FieldContainer &container) override;

private:
    using Id = std::uint32_t;

    void setUsed(Id user, std::vector<Id> used);
    void removeUser(Id user, const std::vector<Id> &used);

    std::unordered_map<Id, std::vector<Id>> _usedBy;         ///< by user: what it uses, in the order of its fields
    std::unordered_map<Id, std::unordered_set<Id>> _usersOf; ///< by what is used
};

} // namespace kxKernelInternal
