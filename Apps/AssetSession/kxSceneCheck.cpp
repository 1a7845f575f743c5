// SPDX-License-Identifier: Apache-2.0
#include "AssetSession/kxSceneCheck.h"

#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxUrlManager.h"
#include "Kernel/kxMaterials.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/ImageAttachment.h"
#include "SceneGraph/Node.h"
#include "SceneGraph/SceneFile.h"

#include <algorithm>

namespace {

/// The materials that carry an asset attachment, in the order of the roots.
std::vector<osg::MaterialPtr> assetMaterialsOf(const osg::SceneRoots &roots)
{
    std::vector<osg::MaterialPtr> materials;
    for (const osg::FCRef<osg::FieldContainer> &root : roots) {
        if (const osg::MaterialPtr material = osg::MaterialPtr::dcast(root.get()))
            kxMaterials::getRecursiveMaterials(material, materials, false);
        if (const osg::NodePtr node = osg::NodePtr::dcast(root.get())) {
            std::set<osg::MaterialPtr> used;
            kxMaterials::getMaterialsRecursive(node, used, true);
            materials.insert(materials.end(), used.begin(), used.end());
        }
    }
    std::erase_if(materials, [](const osg::MaterialPtr &material) {
        return !osg::AssetAttachment::getAssetAttachment(material);
    });
    return materials;
}

kxSceneCheck::Entry compare(const osg::MaterialPtr &material, const osg::AssetAttachmentPtr &attachment)
{
    kxSceneCheck::Entry entry{attachment->getUuid(), kxMaterials::getName(material), {}, {}};
    const kxAssetItem *item = kxAssetItemFactory::the().findItem(entry.uuid);
    if (!item) {
        entry.state = kxSceneCheck::State::MissingInLibrary;
        entry.detail = "last seen in " + QUrl(QString::fromStdString(attachment->getUrl())).toLocalFile().toStdString();
        return entry;
    }
    if (!item->hasSameChecksum(material)) {
        entry.state = kxSceneCheck::State::StoredChanged;
        return entry;
    }
    if (attachment->getUserEdited()) {
        entry.state = kxSceneCheck::State::EditedInScene;
        return entry;
    }
    // A file may have been edited by a program that does not mark what it edits.
    const QUrl directory = const_cast<kxAssetItem *>(item)->directoryUrl();
    osg::MaterialPtr loaded;
    if (!kxUrlManager::getUrlManager(directory)->loadMaterialFromDir(directory, loaded) || !loaded)
        return entry;
    const osg::FCRef<osg::Material> stored = osg::FCRef<osg::Material>::adopt(loaded);
    const auto difference = osg::findDifference(
        stored.get(), material, {&osg::AssetAttachment::getClassType(), &osg::ImageAttachment::getClassType()});
    if (difference) {
        entry.state = kxSceneCheck::State::EditedInScene;
        entry.detail = *difference;
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
        entries.push_back(compare(material, osg::AssetAttachment::getAssetAttachment(material)));
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
    case State::MissingInLibrary:
        return "not in the library";
    }
    return "";
}
