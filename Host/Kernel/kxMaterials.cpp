// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxMaterials.h"

#include "Kernel/Internal/MaterialFields.h"
#include "Kernel/Internal/SceneIndexes.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/ImageAttachment.h"
#include "SceneGraph/MultiMaterial.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/NodeWalk.h"
#include "SceneGraph/OverrideMaterialAttachment.h"
#include "SceneGraph/UberMaterial.h"

#include <algorithm>
#include <unordered_set>

namespace {

using kxKernelInternal::SceneIndexes;

bool isInScene(const osg::MaterialPtr &material)
{
    return SceneIndexes::the().materialUsage.isBelow(material, kxScenegraph::getRoot());
}

/// What the material is made of, in order: entries of a composite, and layers if they are asked for.
std::vector<osg::MaterialPtr> partsOf(const osg::MaterialPtr &material, bool intoLayers)
{
    const osg::UberMaterialPtr uber = intoLayers ? osg::UberMaterialPtr::dcast(material) : osg::UberMaterialPtr();
    if (!uber)
        return kxMaterials::getSubMaterials(material);
    return {uber->getBRDFMaterials().begin(), uber->getBRDFMaterials().end()};
}

void insertWithParts(const std::set<osg::MaterialPtr> &found, std::set<osg::MaterialPtr> &materials, bool intoParts)
{
    materials.insert(found.begin(), found.end());
    if (!intoParts)
        return;
    for (const osg::MaterialPtr &material : found) {
        std::vector<osg::MaterialPtr> parts;
        kxMaterials::getRecursiveMaterials(material, parts, true);
        materials.insert(parts.begin(), parts.end());
    }
}

} // namespace

std::string kxMaterials::getName(const osg::MaterialPtr &material)
{
    return osg::getName(material);
}

void kxMaterials::setName(const osg::MaterialPtr &material, const std::string &name, bool announce)
{
    if (!material)
        return;
    osg::setName(material, name);
    if (announce)
        emit kxScenegraph::notifier().nameChanged(material.getFieldContainerId());
}

std::vector<osg::MaterialPtr> kxMaterials::getSubMaterials(const osg::MaterialPtr &material)
{
    const auto composite = osg::MultiMaterialPtr::dcast(material);
    if (!composite)
        return {};
    return {composite->getMaterials().begin(), composite->getMaterials().end()};
}

void kxMaterials::getRecursiveMaterials(const osg::MaterialPtr &material, std::vector<osg::MaterialPtr> &materials,
                                        bool intoLayers)
{
    // A stack of its own, because composites may contain each other to any depth, and even themselves.
    std::unordered_set<std::uint32_t> seen;
    std::vector<osg::MaterialPtr> waiting{material};
    while (!waiting.empty()) {
        const osg::MaterialPtr current = waiting.back();
        waiting.pop_back();
        if (!current || !seen.insert(current.getFieldContainerId()).second)
            continue;
        materials.push_back(current);
        const std::vector<osg::MaterialPtr> parts = partsOf(current, intoLayers);
        waiting.insert(waiting.end(), parts.rbegin(), parts.rend());
    }
}

osg::MaterialPtr kxMaterials::findAssetMaterial(const std::string &uuid)
{
    if (uuid.empty())
        return nullptr;
    const std::vector<osg::MaterialPtr> candidates = SceneIndexes::the().assetMaterials.find(uuid);
    const auto found = std::find_if(candidates.begin(), candidates.end(), isInScene);
    return found == candidates.end() ? osg::MaterialPtr() : *found;
}

std::vector<osg::MaterialPtr> kxMaterials::getAllAssetMaterials()
{
    std::vector<osg::MaterialPtr> materials = SceneIndexes::the().assetMaterials.all();
    std::erase_if(materials, [](const osg::MaterialPtr &material) { return !isInScene(material); });
    return materials;
}

std::set<osg::MaterialPtr> kxMaterials::getMaterials(const osg::NodePtr &node)
{
    std::set<osg::MaterialPtr> materials;
    getMaterialsRecursive(node, materials, false);
    return materials;
}

void kxMaterials::getMaterialsRecursive(const osg::NodePtr &node, std::set<osg::MaterialPtr> &materials, bool intoParts)
{
    std::set<osg::MaterialPtr> assigned;
    std::unordered_set<std::uint32_t> seenCores;
    osg::forEachNode(node, [&](const osg::NodePtr &current) {
        const osg::NodeCorePtr &core = current->getCore();
        if (!core || !seenCores.insert(core.getFieldContainerId()).second)
            return;
        const std::vector<osg::MaterialPtr> ofCore = kxKernelInternal::assignedMaterials(core);
        assigned.insert(ofCore.begin(), ofCore.end());
    });
    insertWithParts(assigned, materials, intoParts);
}

void kxMaterials::getOverrideMaterialsRecursive(const osg::NodePtr &node, std::set<osg::MaterialPtr> &materials,
                                                bool intoParts)
{
    std::set<osg::MaterialPtr> found;
    osg::forEachNode(node, [&found](const osg::NodePtr &current) {
        const auto record = osg::findAttachment<osg::OverrideMaterialAttachment>(current);
        if (record && record->getMaterial())
            found.insert(record->getMaterial());
    });
    insertWithParts(found, materials, intoParts);
}

void kxMaterials::getMaterialsAndOverrideMaterials(const osg::NodePtr &node, std::set<osg::MaterialPtr> &materials,
                                                   bool intoParts)
{
    getMaterialsRecursive(node, materials, intoParts);
    getOverrideMaterialsRecursive(node, materials, intoParts);
}

void kxMaterials::setOverrideMaterial(const osg::NodePtr &node, const osg::MaterialPtr &material)
{
    if (!node)
        return;
    if (!material) {
        kxNodeUtils::removeAttachment(node, osg::OverrideMaterialAttachment::getClassType());
        return;
    }
    const osg::OverrideMaterialAttachmentPtr record = osg::OverrideMaterialAttachment::create();
    {
        const osg::CPEditor edit(record, osg::OverrideMaterialAttachment::MaterialFieldMask);
        record->setMaterial(material);
    }
    const osg::CPEditor edit(node, osg::AttachmentContainer::AttachmentsFieldMask);
    node->addAttachment(record);
}

std::vector<osg::NodePtr> kxMaterials::getNodesWithMaterial(const osg::MaterialPtr &material, const osg::NodePtr &root)
{
    std::vector<osg::NodePtr> nodes;
    if (!material)
        return nodes;
    osg::forEachNode(root, [&](const osg::NodePtr &node) {
        const std::vector<osg::MaterialPtr> assigned = kxKernelInternal::assignedMaterials(node->getCore());
        if (std::find(assigned.begin(), assigned.end(), material) != assigned.end())
            nodes.push_back(node);
    });
    return nodes;
}

osg::ImagePtr kxMaterials::getPreviewImage(const osg::MaterialPtr &material)
{
    const auto attachment = osg::findAttachment<osg::ImageAttachment>(material);
    return attachment ? attachment->getImage() : osg::ImagePtr();
}

std::set<std::uint32_t> kxMaterials::getMaterialPoolMaterialIds()
{
    std::set<std::uint32_t> ids;
    if (const osg::MaterialPoolPtr pool = kxScenegraph::getMaterialPool()) {
        for (const osg::MaterialPtr &material : pool->getMaterials()) {
            if (material)
                ids.insert(material.getFieldContainerId());
        }
    }
    return ids;
}

void kxMaterials::addValuePair(const osg::MaterialPtr &material, const std::string &key, const std::string &value)
{
    if (!material || hasValuePair(material, key, value))
        return;
    osg::StringMap pairs = material->getValuePairs();
    pairs[key] = value;
    const osg::CPEditor edit(material, osg::Material::ValuePairsFieldMask);
    material->setValuePairs(pairs);
}

bool kxMaterials::hasValuePair(const osg::MaterialPtr &material, const std::string &key, const std::string &value)
{
    if (!material)
        return false;
    const auto found = material->getValuePairs().find(key);
    return found != material->getValuePairs().end() && found->second == value;
}

void kxMaterials::removeKey(const osg::MaterialPtr &material, const std::string &key, bool announce)
{
    if (!material || material->getValuePairs().count(key) == 0)
        return;
    osg::StringMap pairs = material->getValuePairs();
    pairs.erase(key);
    {
        const osg::CPEditor edit(material, osg::Material::ValuePairsFieldMask);
        material->setValuePairs(pairs);
    }
    if (announce)
        emit kxScenegraph::notifier().valuePairsChanged(material.getFieldContainerId());
}
