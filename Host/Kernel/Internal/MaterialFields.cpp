// SPDX-License-Identifier: Apache-2.0
#include "Kernel/Internal/MaterialFields.h"

#include "SceneGraph/MaterialPool.h"
#include "SceneGraph/MultiMaterial.h"

#include <unordered_map>
#include <variant>

namespace kxKernelInternal {

namespace {

bool mayHoldMaterials(const osg::FieldContainerType &type)
{
    return type.isDerivedFrom(osg::MultiMaterial::getClassType()) || type.isDerivedFrom(osg::NodeCore::getClassType());
}

bool refersToMaterials(const osg::FieldInfo &field, osg::FieldContainer &example)
{
    const osg::FieldPointer address = field.address(example);
    if (const auto *single = std::get_if<osg::RefFieldBase *>(&address))
        return (*single)->requiredType().isDerivedFrom(osg::Material::getClassType());
    if (const auto *several = std::get_if<osg::MRefFieldBase *>(&address))
        return (*several)->requiredType().isDerivedFrom(osg::Material::getClassType());
    return false;
}

std::vector<osg::FieldInfo> findMaterialFields(osg::FieldContainer &example)
{
    std::vector<osg::FieldInfo> result;
    for (const osg::FieldInfo &field : example.getType().fields()) {
        if (refersToMaterials(field, example))
            result.push_back(field);
    }
    return result;
}

/// Calls \a visit with what each of the material fields refers to.
template <class Visit> void forEachMaterial(osg::FieldContainer &container, const Visit &visit)
{
    for (const osg::FieldInfo &field : materialFields(container.getType())) {
        const osg::FieldPointer address = field.address(container);
        if (const auto *single = std::get_if<osg::RefFieldBase *>(&address)) {
            visit((*single)->getContainer());
        } else if (const auto *several = std::get_if<osg::MRefFieldBase *>(&address)) {
            for (std::size_t i = 0; i < (*several)->containerCount(); ++i)
                visit((*several)->containerAt(i));
        }
    }
}

} // namespace

const std::vector<osg::FieldInfo> &materialFields(const osg::FieldContainerType &type)
{
    static std::unordered_map<const osg::FieldContainerType *, std::vector<osg::FieldInfo>> known;
    const auto found = known.find(&type);
    if (found != known.end())
        return found->second;

    std::vector<osg::FieldInfo> &fields = known[&type];
    if (mayHoldMaterials(type)) {
        // What a field refers to is asked of a field, so that one container is needed to see it.
        const osg::FCRef<osg::FieldContainer> example(type.createContainer());
        if (example)
            fields = findMaterialFields(*example);
    }
    return fields;
}

std::vector<osg::MaterialPtr> materialsIn(const osg::FieldContainerPtr &container)
{
    std::vector<osg::MaterialPtr> materials;
    if (!container)
        return materials;
    forEachMaterial(*container, [&materials](const osg::FieldContainerPtr &material) {
        if (material)
            materials.push_back(osg::MaterialPtr::dcast(material));
    });
    return materials;
}

std::vector<std::uint32_t> materialIdsIn(osg::FieldContainer &container)
{
    std::vector<std::uint32_t> ids;
    forEachMaterial(container, [&ids](const osg::FieldContainerPtr &material) {
        if (material)
            ids.push_back(material.getFieldContainerId());
    });
    return ids;
}

std::vector<osg::MaterialPtr> assignedMaterials(const osg::NodeCorePtr &core)
{
    if (isOfType(core, osg::MaterialPool::getClassType()))
        return {};
    return materialsIn(core);
}

} // namespace kxKernelInternal
