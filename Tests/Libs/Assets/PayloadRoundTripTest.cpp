// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxEnvironmentNodeAssetItem.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Assets/kxSceneplateAssetItem.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxScenegraph.h"
#include "RandomSceneFixture.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/KeyAttachment.h"
#include "SceneGraph/SceneFile.h"
#include "SceneGraph/SynchronizationAttachment.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <set>

namespace {

constexpr const char *Uuid = "10000000-0000-4000-8000-000000000000";

/// Those for which a choice of the default environment switch stands.
std::vector<osg::NodePtr> switchableEnvironments()
{
    const osg::UEnvironmentSwitchMaterialPtr choices = kxDefaultEnvironment::getSwitch();
    const osg::NodePtr places = kxScenegraph::environmentGeometrySwitch();
    std::vector<osg::NodePtr> found;
    for (std::size_t i = 0; i < places->getNChildren(); ++i) {
        const osg::NodePtr node = places->getChild(i);
        const auto core = osg::EnvironmentPtr::dcast(node->getCore());
        if (core && core->getMaterial() == choices &&
            osg::UEnvironmentMaterialPtr::dcast(choices->getMaterial(static_cast<std::int32_t>(i))))
            found.push_back(node);
    }
    return found;
}

/// Whether loading leaves the sub-tree as it was saved: it drops pools and partners, and wraps assets within.
bool isKeptByLoading(const osg::NodePtr &node)
{
    const std::vector<osg::NodePtr> nodes = RandomScene::below(node);
    return std::none_of(nodes.begin(), nodes.end(), [](const osg::NodePtr &below) {
        return isOfType(below->getCore(), osg::MaterialPool::getClassType()) ||
               osg::findAttachment<osg::SynchronizationAttachment>(below) ||
               osg::AssetAttachment::getAssetAttachment(below);
    });
}

/// Gives the nodes at and below \a root keys by their place, which loading renews by chance.
void numberKeys(const osg::NodePtr &root)
{
    std::map<std::string, std::string> renamed;
    for (const osg::NodePtr &node : RandomScene::below(root))
        if (const auto key = osg::findAttachment<osg::KeyAttachment>(node)) {
            const std::string &number = renamed[key->getKey()] = std::to_string(renamed.size());
            const osg::CPEditor edit(key, osg::KeyAttachment::KeyFieldMask);
            key->setKey(number);
        }
    const auto rename = [&renamed](osg::MField<std::string> &keys) {
        for (std::string &key : keys.values())
            if (const auto found = renamed.find(key); found != renamed.end())
                key = found->second;
    };
    for (const osg::NodePtr &node : RandomScene::below(root))
        if (const auto partners = osg::findAttachment<osg::SynchronizationAttachment>(node)) {
            const osg::CPEditor edit(partners, osg::SynchronizationAttachment::PartnersFieldMask);
            rename(partners->editPartners());
        }
    for (const osg::ConstraintPtr &constraint : kxScenegraph::getMaterialPool()->getConstraints()) {
        const osg::CPEditor edit(constraint, osg::Constraint::EndsFieldMask);
        rename(constraint->editEnds());
    }
    for (const osg::LightLinkSetPtr &set : kxScenegraph::getMaterialPool()->getLightLinkSets()) {
        const osg::CPEditor edit(set, osg::AllFieldMask);
        rename(set->editLights());
        rename(set->editMembers());
    }
}

/// What was saved, loaded into an empty document and saved again is the same, byte for byte.
class PayloadRoundTripTest : public RandomSceneFixture
{
protected:
    static void clearChecksum(const osg::NodePtr &node)
    {
        const auto asset = osg::AssetAttachment::getAssetAttachment(node);
        const osg::CPEditor edit(asset, osg::AssetAttachment::ChecksumFieldMask);
        asset->setChecksum(0); // of what was stored before: it changes with every save
    }
    /// Saves the asset's node once more, and hands out its payload, in which nothing is by chance.
    template <class Item> std::string resave(const osg::NodePtr &node)
    {
        clearChecksum(node);
        numberKeys(node);
        const std::string uuid = uuidOfNode(node);
        EXPECT_TRUE(save<Item>(node, url("Library")));
        const QString directory = kxAssetItemFactory::the().findItem(uuid)->directoryUrl().toLocalFile();
        for (const auto &entry : std::filesystem::directory_iterator(directory.toStdString()))
            if (entry.path().extension() == ".osb")
                return readFile(std::filesystem::relative(entry.path(), _folder.path()));
        ADD_FAILURE() << "no payload";
        return {};
    }
    /// The payload of the asset that was loaded into an empty document and saved again.
    template <class Item> std::string resaveLoaded(const std::string &uuid, osg::NodePtr (*load)(const std::string &))
    {
        kxScenegraph::newDocument();
        std::optional<kxtest::CapturedOutput> output(std::in_place);
        const osg::FCRef<osg::Node> node(load(uuid));
        output.reset();
        return resave<Item>(node.get());
    }

    /// Where the contents of two payloads part.
    std::string difference(const std::string &a, const std::string &b) const
    {
        writeFile("a.osb", a);
        writeFile("b.osb", b);
        const auto first = osg::readSceneFile(_folder.file("a.osb"));
        const auto second = osg::readSceneFile(_folder.file("b.osb"));
        return osg::findDifference(first.value().front().get(), second.value().front().get())
            .value_or("none but the bytes");
    }
};

} // namespace

TEST_F(PayloadRoundTripTest, KeepsPayloadsOfGeometry)
{
    std::size_t kept = 0;
    inRandomScenes(5000, 15, [&](RandomScene &scene) {
        std::vector<osg::NodePtr> nodes = RandomScene::nodes();
        nodes.erase(nodes.begin()); // the root of what nobody holds goes after the save
        const osg::NodePtr node = scene.random.of(nodes);
        const bool isKept = isKeptByLoading(node);
        setUuid(node, Uuid);
        save<kxGeometryAssetItem>(node, url("Library"));

        const osg::NodePtr saved = uuidOfNode(node) == Uuid ? node : node->getParent();
        const std::string first = resave<kxGeometryAssetItem>(saved);
        const std::string second = resaveLoaded<kxGeometryAssetItem>(Uuid, kxGeometryAssetItem::loadNodeFromUUID);
        const std::string third = resaveLoaded<kxGeometryAssetItem>(Uuid, kxGeometryAssetItem::loadNodeFromUUID);

        EXPECT_TRUE(second == third) << difference(second, third);
        EXPECT_TRUE(first == second || !isKept) << difference(first, second);
        kept += isKept ? 1 : 0;
        kxAssetItemFactory::the().deleteAllItems();
        std::filesystem::remove_all(_folder.file("Library"));
    });
    EXPECT_GT(kept, 4U);
}

TEST_F(PayloadRoundTripTest, KeepsPayloadsOfSceneplates)
{
    inRandomScenes(5100, 10, [&](RandomScene &scene) {
        const osg::NodePtr plate = scene.random.of(RandomScene::plates());
        std::set<osg::MaterialPtr> relit; // by the default environment, and saved so
        kxMaterials::getOverrideMaterialsRecursive(plate, relit, false);
        const bool isKept = isKeptByLoading(plate) && relit.empty();
        setUuid(plate, Uuid);
        save<kxSceneplateAssetItem>(plate, url("Library"));

        const std::string first = resave<kxSceneplateAssetItem>(plate);
        const std::string second = resaveLoaded<kxSceneplateAssetItem>(Uuid, kxSceneplateAssetItem::loadNodeFromUUID);
        const std::string third = resaveLoaded<kxSceneplateAssetItem>(Uuid, kxSceneplateAssetItem::loadNodeFromUUID);

        EXPECT_TRUE(second == third) << difference(second, third);
        EXPECT_TRUE(first == second || !isKept) << difference(first, second);
        kxAssetItemFactory::the().deleteAllItems();
        std::filesystem::remove_all(_folder.file("Library"));
    });
}

TEST_F(PayloadRoundTripTest, KeepsPayloadsOfEnvironments)
{
    std::size_t compared = 0;
    inRandomScenes(5200, 15, [&](RandomScene &scene) {
        const std::vector<osg::NodePtr> nodes = switchableEnvironments();
        if (nodes.empty())
            return;
        const osg::NodePtr node = scene.random.of(nodes);
        setUuid(node, Uuid);
        save<kxEnvironmentNodeAssetItem>(node, url("Library"));

        const std::string second =
            resaveLoaded<kxEnvironmentNodeAssetItem>(Uuid, kxEnvironmentNodeAssetItem::loadEnvironmentNodeFromUUID);
        const std::string third =
            resaveLoaded<kxEnvironmentNodeAssetItem>(Uuid, kxEnvironmentNodeAssetItem::loadEnvironmentNodeFromUUID);

        EXPECT_TRUE(second == third) << difference(second, third);
        ++compared;
        kxAssetItemFactory::the().deleteAllItems();
        std::filesystem::remove_all(_folder.file("Library"));
    });
    EXPECT_GT(compared, 10U);
}
