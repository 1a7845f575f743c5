// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxNodeUtils.h"

#include "Kernel/Internal/MaterialFields.h"
#include "Kernel/kxFile.h"
#include "Kernel/kxLog.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/Geometry.h"
#include "SceneGraph/KeyAttachment.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/NodeWalk.h"
#include "SceneGraph/SceneFile.h"
#include "SceneGraph/SynchronizationAttachment.h"

#include <algorithm>
#include <map>
#include <utility>
#include <variant>

namespace {

bool isAtOrBelow(osg::NodePtr node, const osg::NodePtr &root)
{
    while (node && node != root)
        node = node->getParent();
    return static_cast<bool>(node);
}

/// The one field by which a core assigns a material; pools, which hold several, assign none.
const osg::FieldInfo *assignmentField(const osg::NodeCorePtr &core)
{
    if (!core)
        return nullptr;
    for (const osg::FieldInfo &field : kxKernelInternal::materialFields(core->getType())) {
        if (std::holds_alternative<osg::RefFieldBase *>(field.address(*core)))
            return &field;
    }
    return nullptr;
}

void removeChildrenFrom(const osg::NodePtr &node, std::size_t count)
{
    const osg::CPEditor edit(node, osg::Node::ChildrenFieldMask);
    while (node->getNChildren() > count)
        node->subChild(node->getChild(node->getNChildren() - 1));
}

void carryOver(const osg::NodePtr &from, const osg::NodePtr &to)
{
    if (osg::getName(from) != osg::getName(to))
        osg::setName(to, osg::getName(from));
    const osg::AssetAttachmentPtr asset = osg::AssetAttachment::getAssetAttachment(from);
    const osg::AssetAttachmentPtr old = osg::AssetAttachment::getAssetAttachment(to);
    if (!asset && old)
        kxNodeUtils::removeAttachment(to, osg::AssetAttachment::getClassType());
    if (!asset || (old && !osg::findDifference(asset, old)))
        return;
    const osg::CPEditor edit(to, osg::AttachmentContainer::AttachmentsFieldMask);
    to->addAttachment(osg::deepClone(asset, {}));
}

/// The child with this core from \a first on; null when there is none.
osg::NodePtr childWithCore(const osg::NodePtr &node, const osg::NodeCorePtr &core, std::size_t first)
{
    for (std::size_t i = first; i < node->getNChildren(); ++i)
        if (node->getChild(i)->getCore() == core)
            return node->getChild(i);
    return nullptr;
}

/// One level: afterwards child i of the clone shares the core of the node's child i.
void syncChildren(const osg::NodePtr &node, const osg::NodePtr &clone)
{
    for (std::size_t i = 0; i < node->getNChildren(); ++i) {
        const osg::NodeCorePtr core = node->getChild(i)->getCore();
        if (i < clone->getNChildren() && clone->getChild(i)->getCore() == core)
            continue;
        osg::NodePtr child = core ? childWithCore(clone, core, i) : osg::NodePtr();
        if (!child)
            child = osg::makeNodeFor(core);
        const osg::CPEditor edit(clone, osg::Node::ChildrenFieldMask);
        clone->insertChild(static_cast<std::int32_t>(i), child);
    }
    removeChildrenFrom(clone, node->getNChildren());
}

using Partners = std::map<std::string, std::vector<std::string>>;

void collectPartners(const osg::NodePtr &root, Partners &partners)
{
    osg::forEachNode(root, [&partners](const osg::NodePtr &node) {
        const auto key = osg::findAttachment<osg::KeyAttachment>(node);
        const auto record = osg::findAttachment<osg::SynchronizationAttachment>(node);
        if (key && record)
            partners[key->getKey()].assign(record->getPartners().begin(), record->getPartners().end());
    });
}

} // namespace

std::string kxNodeUtils::getName(const osg::NodePtr &node)
{
    return osg::getName(node);
}

void kxNodeUtils::setName(const osg::NodePtr &node, const std::string &name, bool announce, const osg::NodePtr &root)
{
    if (!node || (root && !isAtOrBelow(node, root)))
        return;
    osg::setName(node, name);
    if (announce)
        emit kxScenegraph::notifier().nameChanged(node.getFieldContainerId());
}

void kxNodeUtils::getGeometryNodes(const osg::NodePtr &node, std::vector<osg::NodePtr> &nodes)
{
    osg::forEachNode(node, [&nodes](const osg::NodePtr &current) {
        if (isOfType(current->getCore(), osg::Geometry::getClassType()))
            nodes.push_back(current);
    });
}

bool kxNodeUtils::setMaterial(const osg::NodePtr &node, const osg::MaterialPtr &material, bool announce, bool replace)
{
    const osg::NodeCorePtr core = node ? node->getCore() : osg::NodeCorePtr();
    const osg::FieldInfo *field = assignmentField(core);
    if (!field)
        return false;
    auto *assignment = std::get<osg::RefFieldBase *>(field->address(*core));
    if (!replace && assignment->getContainer())
        return false;
    {
        const osg::CPEditor edit(core, field->mask);
        core->markChanged(field->mask);
        assignment->setContainer(material);
    }
    if (announce)
        kxScenegraph::update(false);
    return true;
}

osg::NodePtr kxNodeUtils::getNodeFromId(std::uint32_t id)
{
    return osg::NodePtr::dcast(osg::FieldContainerFactory::the().getContainer(id));
}

bool kxNodeUtils::writeNode(const osg::NodePtr &node, const char *path, bool replace)
{
    if (!node || !path || (!replace && kxFile::exists(path, false, true)))
        return false;
    const osg::Result<void> result = osg::writeSceneFile(path, {node});
    if (!result)
        kxLog::debug("%s", result.reason().c_str());
    return static_cast<bool>(result);
}

void kxNodeUtils::removeAttachment(const osg::NodePtr &node, const osg::FieldContainerType &type)
{
    if (!node || !node->findAttachment(type))
        return;
    const osg::CPEditor edit(node, osg::AttachmentContainer::AttachmentsFieldMask);
    node->removeAttachment(type);
}

void kxNodeUtils::getAllClonesInScenegraph(const osg::NodePtr &node, std::vector<osg::NodePtr> &clones)
{
    if (!node || !node->getCore())
        return;
    osg::forEachNode(kxScenegraph::getRoot(), [&](const osg::NodePtr &current) {
        if (current != node && current->getCore() == node->getCore())
            clones.push_back(current);
    });
}

void kxNodeUtils::syncCloneTrees(const osg::NodePtr &node, const std::vector<osg::NodePtr> &clones)
{
    if (!node)
        return;
    std::vector<std::pair<osg::NodePtr, osg::NodePtr>> waiting;
    for (const osg::NodePtr &entry : clones) {
        const osg::NodePtr clone = getNodeFromId(entry.getFieldContainerId()); // null where it was destroyed
        const bool isClone = clone && node->getCore() && clone->getCore() == node->getCore();
        if (isClone && !isAtOrBelow(clone, node) && !isAtOrBelow(node, clone))
            waiting.emplace_back(node, clone);
    }
    while (!waiting.empty()) {
        const auto [original, clone] = waiting.back();
        waiting.pop_back();
        carryOver(original, clone);
        syncChildren(original, clone);
        for (std::size_t i = 0; i < original->getNChildren(); ++i)
            waiting.emplace_back(original->getChild(i), clone->getChild(i));
    }
}

void kxNodeUtils::removeInvalidSynchronizations(const osg::NodePtr &root)
{
    Partners partners;
    collectPartners(kxScenegraph::getRoot(), partners);
    collectPartners(root, partners);
    const auto isNamedBack = [&partners](const std::string &other, const std::string &own) {
        const auto found = partners.find(other);
        return found != partners.end() &&
               std::find(found->second.begin(), found->second.end(), own) != found->second.end();
    };
    osg::forEachNode(root, [&](const osg::NodePtr &node) {
        const auto record = osg::findAttachment<osg::SynchronizationAttachment>(node);
        if (!record)
            return;
        const auto key = osg::findAttachment<osg::KeyAttachment>(node);
        std::vector<std::string> valid(record->getPartners().begin(), record->getPartners().end());
        std::erase_if(valid, [&](const std::string &other) { return !key || !isNamedBack(other, key->getKey()); });
        if (valid.size() == record->getPartners().size() && !valid.empty())
            return;
        if (valid.empty()) {
            removeAttachment(node, osg::SynchronizationAttachment::getClassType());
            return;
        }
        const osg::CPEditor edit(record, osg::SynchronizationAttachment::PartnersFieldMask);
        record->editPartners() = valid;
    });
}
