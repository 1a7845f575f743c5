// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SceneGraph/Material.h"
#include "SceneGraph/SceneListener.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace kxKernelInternal {

/// The living materials that carry an asset attachment, by its UUID. Kept up to date with every edit.
class AssetMaterialIndex final : public osg::SceneListener
{
public:
    /// In ascending order of their ids; materials without a UUID are under the empty text.
    std::vector<osg::MaterialPtr> find(const std::string &uuid) const;
    std::vector<osg::MaterialPtr> all() const;

    void containerChanged(osg::FieldContainer &container, osg::FieldMask fields) override;
    void containerDestroyed(osg::FieldContainer &container) override;

private:
    using Id = std::uint32_t;

    struct Entry
    {
        std::string uuid;
        Id attachment;
    };

    void enter(Id material, Id attachment, const std::string &uuid);
    void forget(Id material);

    std::map<Id, Entry> _entries;
    std::unordered_map<std::string, std::set<Id>> _byUuid;
    std::unordered_map<Id, std::set<Id>> _ownersOf; ///< by attachment: an attachment may be shared
};

} // namespace kxKernelInternal
