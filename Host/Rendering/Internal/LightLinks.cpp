// SPDX-License-Identifier: Apache-2.0
#include "Rendering/Internal/LightLinks.h"

#include "Kernel/kxNodeKeys.h"

namespace kxRender {

namespace {

/// Without the empty one, which is that of every node without a key.
std::set<std::string> keysOf(const osg::MField<std::string> &field)
{
    std::set<std::string> keys(field.begin(), field.end());
    keys.erase(std::string());
    return keys;
}

} // namespace

void LightLinks::add(const osg::MaterialPool &pool)
{
    for (const osg::LightLinkSetPtr &set : pool.getLightLinkSets())
        if (set && !set->getMembers().empty())
            _sets.push_back({keysOf(set->getLights()), keysOf(set->getMembers()), set->getIsExclusive()});
}

LightLinks::Place LightLinks::below(Place parent, const osg::NodePtr &node) const
{
    if (_sets.empty())
        return parent;
    const std::string key = kxNodeKeys::get(node);
    if (key.empty())
        return parent;
    for (std::size_t i = 0; i < _sets.size(); ++i)
        if (_sets[i].members.count(key) > 0)
            parent[i] = true;
    return parent;
}

std::vector<std::uint32_t> LightLinks::lightsAt(const Place &place, const std::vector<std::string> &lights) const
{
    std::vector<std::uint32_t> result;
    for (std::size_t i = 0; i < lights.size(); ++i)
        if (isLit(place, lights[i]))
            result.push_back(static_cast<std::uint32_t>(i));
    return result;
}

bool LightLinks::isLit(const Place &place, const std::string &light) const
{
    bool isRestricted = false;
    bool isMember = false;
    for (std::size_t i = 0; i < _sets.size(); ++i) {
        if (_sets[i].lights.count(light) == 0)
            continue;
        if (_sets[i].isExclusive && place[i])
            return false;
        isRestricted = isRestricted || !_sets[i].isExclusive;
        isMember = isMember || place[i];
    }
    return !isRestricted || isMember;
}

} // namespace kxRender
