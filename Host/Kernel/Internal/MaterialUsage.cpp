// SPDX-License-Identifier: Apache-2.0
#include "Kernel/Internal/MaterialUsage.h"

#include "Kernel/Internal/MaterialFields.h"
#include "SceneGraph/FieldContainerFactory.h"

#include <algorithm>
#include <utility>

namespace kxKernelInternal {

namespace {

bool isAtOrBelow(osg::NodePtr node, const osg::NodePtr &root)
{
    while (node && node != root)
        node = node->getParent();
    return static_cast<bool>(node);
}

bool concernsMaterials(const osg::FieldContainer &container, osg::FieldMask fields)
{
    const std::vector<osg::FieldInfo> &concerned = materialFields(container.getType());
    return std::any_of(concerned.begin(), concerned.end(),
                       [fields](const osg::FieldInfo &field) { return (field.mask & fields) != 0; });
}

} // namespace

bool MaterialUsage::isBelow(const osg::MaterialPtr &material, const osg::NodePtr &root) const
{
    if (!material || !root)
        return false;
    std::vector<Id> waiting{material.getFieldContainerId()};
    std::unordered_set<Id> seen(waiting.begin(), waiting.end());
    while (!waiting.empty()) {
        const auto users = _usersOf.find(waiting.back());
        waiting.pop_back();
        if (users == _usersOf.end())
            continue;
        for (const Id user : users->second) {
            const osg::FieldContainerPtr container = osg::FieldContainerFactory::the().getContainer(user);
            if (isAtOrBelow(osg::NodePtr::dcast(container), root))
                return true;
            if (seen.insert(user).second)
                waiting.push_back(user);
        }
    }
    return false;
}

void MaterialUsage::containerChanged(osg::FieldContainer &container, osg::FieldMask fields)
{
    const osg::FieldContainerPtr handle(&container);
    if (const auto node = osg::NodePtr::dcast(handle)) {
        if ((fields & osg::Node::CoreFieldMask) != 0)
            setUsed(handle.getFieldContainerId(),
                    node->getCore() ? std::vector<Id>{node->getCore().getFieldContainerId()} : std::vector<Id>());
        return;
    }
    if (concernsMaterials(container, fields))
        setUsed(handle.getFieldContainerId(), materialIdsIn(container));
}

bool MaterialUsage::isUsedBy(const osg::MaterialPtr &material, const osg::FieldContainerPtr &user) const
{
    const auto users = _usersOf.find(material.getFieldContainerId());
    return users != _usersOf.end() && users->second.count(user.getFieldContainerId()) != 0;
}

void MaterialUsage::containerDestroyed(osg::FieldContainer &container)
{
    setUsed(container.getFieldContainerId(), {});
}

void MaterialUsage::setUsed(Id user, std::vector<Id> used)
{
    const auto known = _usedBy.find(user);
    if (known == _usedBy.end() && used.empty())
        return;
    const std::vector<Id> before = known == _usedBy.end() ? std::vector<Id>() : std::move(known->second);

    // A pool that grows by one must not cost as much as all it holds.
    const bool isExtended = used.size() >= before.size() && std::equal(before.begin(), before.end(), used.begin());
    if (!isExtended)
        removeUser(user, before);
    for (std::size_t i = isExtended ? before.size() : 0; i < used.size(); ++i)
        _usersOf[used[i]].insert(user);

    if (used.empty())
        _usedBy.erase(user);
    else
        _usedBy[user] = std::move(used);
}

void MaterialUsage::removeUser(Id user, const std::vector<Id> &used)
{
    for (const Id id : used) {
        const auto users = _usersOf.find(id);
        if (users == _usersOf.end())
            continue; // the same material twice
        users->second.erase(user);
        if (users->second.empty())
            _usersOf.erase(users);
    }
}

} // namespace kxKernelInternal
