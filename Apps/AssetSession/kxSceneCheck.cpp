// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxSceneCheck.h"

#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxGeometrySceneplateCommon.h"
#include "Assets/kxMaterialAssetItem.h"
#include "Assets/kxUrlManager.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/ImageAttachment.h"
#include "SceneGraph/KeyAttachment.h"
#include "SceneGraph/MultiPassMaterial.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/SceneFile.h"
#include "SceneGraph/SwitchMaterial.h"
#include "SceneGraph/TagAttachment.h"

#include <algorithm>
#include <optional>
#include <set>

namespace {

/// The materials that carry an asset attachment, each once, in the order of the roots.
std::vector<osg::MaterialPtr> assetMaterialsOf(const osg::SceneRoots &roots)
{
    std::vector<osg::MaterialPtr> all;
    for (const osg::FCRef<osg::FieldContainer> &root : roots) {
        if (const osg::MaterialPtr material = osg::MaterialPtr::dcast(root.get()))
            kxMaterials::getRecursiveMaterials(material, all, false);
        if (const osg::NodePtr node = osg::NodePtr::dcast(root.get())) {
            std::set<osg::MaterialPtr> used;
            kxMaterials::getMaterialsRecursive(node, used, true);
            all.insert(all.end(), used.begin(), used.end());
        }
    }
    std::set<osg::MaterialPtr> seen;
    std::erase_if(all, [&seen](const osg::MaterialPtr &material) {
        return !osg::AssetAttachment::getAssetAttachment(material) || !seen.insert(material).second;
    });
    return all;
}

bool isComposite(const osg::MaterialPtr &material)
{
    return osg::SwitchMaterialPtr::dcast(material) || osg::MultiPassMaterialPtr::dcast(material);
}

/// Where the material differs from the metadata that it was rebuilt from, or nothing. Its parts have entries of their own.
std::optional<std::string> differenceOfComposite(const kxMaterialAssetItem &item, const osg::MaterialPtr &material)
{
    if (&material->getType() != item.materialType())
        return "it is another kind of material";
    std::vector<std::string> parts;
    for (const osg::MaterialPtr &part : kxMaterials::getSubMaterials(material)) {
        const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::getAssetAttachment(part);
        parts.push_back(attachment ? attachment->getUuid() : std::string());
    }
    if (parts != item.subMaterialUUIDs())
        return "it is made of other materials";
    const osg::SwitchMaterialPtr chooser = osg::SwitchMaterialPtr::dcast(material);
    if (chooser && item.switchChoice() >= 0 && chooser->getChoice() != item.switchChoice())
        return "its choice is " + std::to_string(chooser->getChoice()) + " and was " +
               std::to_string(item.switchChoice());
    return std::nullopt;
}

/// Compares with what is stored: a file may have been edited by a program that does not mark what it edits.
void compareContents(kxAssetItem &item, const osg::MaterialPtr &material, kxSceneCheck::Entry &entry)
{
    const auto *materialItem = dynamic_cast<const kxMaterialAssetItem *>(&item);
    std::optional<std::string> difference;
    if (materialItem && isComposite(material)) {
        difference = differenceOfComposite(*materialItem, material);
    } else {
        const QUrl directory = item.directoryUrl();
        osg::MaterialPtr loaded;
        if (!kxUrlManager::getUrlManager(directory)->loadMaterialFromDir(directory, loaded)) {
            entry.state = kxSceneCheck::State::StoredUnreadable;
            return;
        }
        const osg::FCRef<osg::Material> stored = osg::FCRef<osg::Material>::adopt(loaded);
        difference = osg::findDifference(
            stored.get(), material, {&osg::AssetAttachment::getClassType(), &osg::ImageAttachment::getClassType()});
    }
    if (!difference)
        return;
    entry.state = kxSceneCheck::State::EditedInScene;
    entry.detail = *difference;
}

/// What loading and saving themselves put on nodes and materials.
const std::vector<const osg::FieldContainerType *> &ownAttachments()
{
    static const std::vector<const osg::FieldContainerType *> types = {
        &osg::AssetAttachment::getClassType(), &osg::ImageAttachment::getClassType(),
        &osg::KeyAttachment::getClassType(), &osg::TagAttachment::getClassType()};
    return types;
}

/// Takes away the note by which an environment asset names the one of its materials that can be switched to.
void removeMarks(const osg::NodePtr &node)
{
    for (const osg::MaterialPtr &material : kxMaterials::getMaterials(node))
        kxMaterials::removeKey(material, "EnvironmentAssetMaterial", false);
}

/// Null where it cannot be loaded. It belongs to no scene.
osg::FCRef<osg::Node> loadStored(kxAssetItem &item)
{
    osg::NodePtr node;
    if (auto *nodeItem = dynamic_cast<kxGeometrySceneplateCommon *>(&item))
        return nodeItem->loadNode() ? osg::FCRef<osg::Node>(nodeItem->getNode()) : osg::FCRef<osg::Node>();
    // Not through the item, which would add an environment to those of the scene.
    kxUrlManager *manager = kxUrlManager::getUrlManager(item.directoryUrl());
    if (manager && manager->loadNodeFromDir(item.directoryUrl(), node))
        return osg::FCRef<osg::Node>(node);
    return {};
}

std::optional<std::string> differenceOfEnvironment(const osg::NodePtr &stored, const osg::NodePtr &node)
{
    removeMarks(stored);
    removeMarks(node);
    return osg::findDifference(stored, node, ownAttachments());
}

/// Where its own placement puts a node is the scene's business.
std::optional<std::string> differenceOfChildren(const osg::NodePtr &stored, const osg::NodePtr &node)
{
    if (stored->getNChildren() != node->getNChildren())
        return "it has another number of children";
    std::optional<std::string> difference;
    for (std::size_t i = 0; !difference && i < stored->getNChildren(); ++i)
        difference = osg::findDifference(stored->getChild(i), node->getChild(i), ownAttachments());
    return difference;
}

/// Where the node differs from what its asset loads as.
void compareContents(kxAssetItem &item, const osg::NodePtr &node, kxSceneCheck::Entry &entry)
{
    const osg::FCRef<osg::Node> stored = loadStored(item);
    if (!stored) {
        entry.state = kxSceneCheck::State::StoredUnreadable;
        return;
    }
    const bool isEnvironment = osg::isOfType(node->getCore(), osg::Environment::getClassType());
    const std::optional<std::string> difference =
        isEnvironment ? differenceOfEnvironment(stored.get(), node) : differenceOfChildren(stored.get(), node);
    if (!difference)
        return;
    entry.state = kxSceneCheck::State::EditedInScene;
    entry.detail = *difference;
}

template <class Handle> kxSceneCheck::Entry compare(const Handle &container, const std::string &name)
{
    const osg::AssetAttachmentPtr attachment = osg::AssetAttachment::getAssetAttachment(container);
    kxSceneCheck::Entry entry{attachment->getUuid(), name, {}, {}};
    kxAssetItem *item = kxAssetItemFactory::the().findItem(entry.uuid);
    if (!item) {
        entry.state = kxSceneCheck::State::MissingInLibrary;
        entry.detail = "last seen in " + QUrl(QString::fromStdString(attachment->getUrl())).toLocalFile().toStdString();
    } else if (!item->hasSameChecksum(container)) {
        entry.state = kxSceneCheck::State::StoredChanged;
    } else if (attachment->getUserEdited()) {
        entry.state = kxSceneCheck::State::EditedInScene;
    } else {
        compareContents(*item, container, entry);
    }
    return entry;
}

} // namespace

osg::Result<std::vector<kxSceneCheck::Entry>> kxSceneCheck::check(const QString &path)
{
    const osg::Result<osg::SceneRoots> roots = osg::readSceneFile(path.toStdString());
    if (!roots)
        return osg::Failure{roots.reason()};
    std::vector<Entry> entries;
    for (const osg::MaterialPtr &material : assetMaterialsOf(roots.value()))
        entries.push_back(compare(material, kxMaterials::getName(material)));
    for (const osg::FCRef<osg::FieldContainer> &root : roots.value())
        for (const kxNodePtr &node : kxScenegraph::getAssetNodes(osg::NodePtr::dcast(root.get())))
            entries.push_back(compare(node, kxNodeUtils::getName(node)));
    return entries;
}

const char *kxSceneCheck::textOf(State state)
{
    switch (state) {
    case State::Same:
        return "same";
    case State::StoredChanged:
        return "stored asset changed";
    case State::EditedInScene:
        return "edited in the scene";
    case State::StoredUnreadable:
        return "stored asset cannot be loaded";
    case State::MissingInLibrary:
        return "not in the library";
    }
    return "";
}
