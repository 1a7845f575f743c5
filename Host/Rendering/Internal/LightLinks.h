// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/MaterialPool.h"
#include "SceneGraph/Node.h"

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace kxRender {

/// Which lights light which nodes, as light-link sets say. Lights and nodes are told apart by their keys.
///
/// A light that no set names lights everything. One that is named lights what lies at or below a member of any of its
/// sets, and where all of them are exclusive everything; but nothing at or below a member of an exclusive one. A set
/// without members says nothing: an environment keeps such a set where all members lay outside of it.
class LightLinks
{
public:
    /// For each set, whether a node lies at or below one of its members.
    using Place = std::vector<bool>;

    void add(const osg::MaterialPool &pool);

    /// Where a node stands that lies below nothing, and that of a node below \a parent.
    Place outside() const { return Place(_sets.size()); }
    Place below(Place parent, const osg::NodePtr &node) const;
    /// Of the lights with these keys, the indices of those that light what stands there.
    std::vector<std::uint32_t> lightsAt(const Place &place, const std::vector<std::string> &lights) const;

private:
    struct Set
    {
        std::set<std::string> lights;
        std::set<std::string> members;
        bool isExclusive = false;
    };

    bool isLit(const Place &place, const std::string &light) const;

    std::vector<Set> _sets;
};

} // namespace kxRender
