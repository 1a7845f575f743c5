// SPDX-License-Identifier: Apache-2.0
#include "Kernel/Internal/AssetMaterialIndex.h"

#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/FieldContainerFactory.h"

namespace kxKernelInternal {

namespace {

template <class Key, class Table> void eraseFrom(Table &table, const Key &key, std::uint32_t id)
{
    const auto found = table.find(key);
    if (found == table.end())
        return;
    found->second.erase(id);
    if (found->second.empty())
        table.erase(found);
}

osg::MaterialPtr materialById(std::uint32_t id)
{
    return osg::MaterialPtr::dcast(osg::FieldContainerFactory::the().getContainer(id));
}

} // namespace

std::vector<osg::MaterialPtr> AssetMaterialIndex::find(const std::string &uuid) const
{
    std::vector<osg::MaterialPtr> materials;
    const auto found = _byUuid.find(uuid);
    if (found == _byUuid.end())
        return materials;
    for (const Id id : found->second)
        materials.push_back(materialById(id));
    return materials;
}

std::vector<osg::MaterialPtr> AssetMaterialIndex::all() const
{
    std::vector<osg::MaterialPtr> materials;
    for (const auto &[id, entry] : _entries)
        materials.push_back(materialById(id));
    return materials;
}

void AssetMaterialIndex::containerChanged(osg::FieldContainer &container, osg::FieldMask fields)
{
    const osg::FieldContainerPtr handle(&container);
    if (const auto material = osg::MaterialPtr::dcast(handle)) {
        if ((fields & osg::Material::AttachmentsFieldMask) == 0)
            return;
        forget(handle.getFieldContainerId());
        if (const auto asset = osg::AssetAttachment::getAssetAttachment(material))
            enter(handle.getFieldContainerId(), asset.getFieldContainerId(), asset->getUuid());
        return;
    }
    const auto asset = osg::AssetAttachmentPtr::dcast(handle);
    const auto owners = _ownersOf.find(handle.getFieldContainerId());
    if (!asset || owners == _ownersOf.end() || (fields & osg::AssetAttachment::UuidFieldMask) == 0)
        return;
    const std::set<Id> materials = owners->second;
    for (const Id material : materials) {
        forget(material);
        enter(material, handle.getFieldContainerId(), asset->getUuid());
    }
}

void AssetMaterialIndex::containerDestroyed(osg::FieldContainer &container)
{
    forget(container.getFieldContainerId());
}

void AssetMaterialIndex::enter(Id material, Id attachment, const std::string &uuid)
{
    _entries[material] = {uuid, attachment};
    _byUuid[uuid].insert(material);
    _ownersOf[attachment].insert(material);
}

void AssetMaterialIndex::forget(Id material)
{
    const auto found = _entries.find(material);
    if (found == _entries.end())
        return;
    eraseFrom(_byUuid, found->second.uuid, material);
    eraseFrom(_ownersOf, found->second.attachment, material);
    _entries.erase(found);
}

} // namespace kxKernelInternal
