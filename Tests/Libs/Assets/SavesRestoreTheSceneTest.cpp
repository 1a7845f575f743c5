// SPDX-License-Identifier: Apache-2.0
#include "ActionModule.h"
#include "Assets/kxCreateGroupedNodes.h"
#include "Assets/kxEnvironmentNodeAssetItem.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Assets/kxSaveEnvironment.h"
#include "Assets/kxSaveNode.h"
#include "Assets/kxSceneplateAssetItem.h"
#include "Kernel/NodeUtils.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "RandomSceneFixture.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/Compare.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Environment.h"
#include "SceneGraph/JsonAttachment.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/Transform3D.h"
#include "Support/CapturedOutput.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <optional>

namespace {

using testing::IsEmpty;

/// Takes what the save of an asset leaves on a node, its attachment and the actions, off again.
class AttachmentsBefore
{
public:
    explicit AttachmentsBefore(const osg::NodePtr &node)
        : _asset(osg::AssetAttachment::getAssetAttachment(node)), _copy(osg::deepClone(_asset.get(), {}))
    {
        for (const osg::AttachmentPtr &attachment : node->getAttachments())
            _all.emplace_back(attachment);
    }

    void restore(const osg::NodePtr &node) const
    {
        EXPECT_EQ(others(node->getAttachments()), others(_all)) << "what else is attached is nobody's business";
        if (_asset)
            restoreAsset();
        const osg::CPEditor edit(node, osg::AttachmentContainer::AttachmentsFieldMask);
        node->editAttachments().assign({_all.begin(), _all.end()});
    }

private:
    template <class Attachments> static std::vector<osg::AttachmentPtr> others(const Attachments &attachments)
    {
        std::vector<osg::AttachmentPtr> found{attachments.begin(), attachments.end()};
        std::erase_if(found, [](const osg::AttachmentPtr &attachment) {
            return isOfType(attachment, osg::AssetAttachment::getClassType()) ||
                   isOfType(attachment, osg::JsonAttachment::getClassType());
        });
        return found;
    }
    void restoreAsset() const
    {
        const osg::CPEditor edit(_asset.get(), osg::AllFieldMask);
        _asset->setUuid(_copy->getUuid());
        _asset->setCategory(_copy->getCategory());
        _asset->setUrl(_copy->getUrl());
        _asset->setChecksum(_copy->getChecksum());
        _asset->setUserEdited(_copy->getUserEdited());
    }

    osg::FCRef<osg::AssetAttachment> _asset;
    osg::FCRef<osg::AssetAttachment> _copy;
    std::vector<osg::FCRef<osg::Attachment>> _all;
};

/// Undoes what \a prepared has done, itself or through a copy, once or again, before the object goes or then.
template <class Preparation>
void endSomehow(std::optional<Preparation> &prepared, void (Preparation::*undo)(), RandomNumbers &random)
{
    const kxtest::CapturedOutput output;
    std::optional<Preparation> copy;
    if (random.oneIn(2))
        copy = prepared;
    if (random.oneIn(2))
        copy.reset();
    for (std::size_t i = random.below(3); i > 0; --i)
        ((*prepared).*undo)();
    prepared.reset();
}

/// Whatever a save does to the scene it undoes, but for what it says.
class SavesRestoreTheSceneTest : public RandomSceneFixture
{
protected:
    static void expectRestored(const SceneFingerprint &before, const RandomScene &scene)
    {
        EXPECT_THAT(before.differencesTo(scene.fingerprint()), IsEmpty());
    }

    /// Takes away the root that the node got because it was no valid one.
    static void unwrap(const osg::NodePtr &node, const osg::NodePtr &formerParent)
    {
        const osg::FCRef<osg::Node> wrapper(node->getParent());
        if (wrapper.get() == formerParent)
            return;
        EXPECT_TRUE(isOfType(wrapper->getCore(), osg::Transform3D::getClassType()));
        EXPECT_EQ(wrapper->getNChildren(), 1U);
        EXPECT_EQ(osg::getName(wrapper.get()), osg::getName(node));
        EXPECT_EQ(wrapper->getParent(), formerParent);
        const osg::CPEditor edit(formerParent, osg::Node::ChildrenFieldMask);
        EXPECT_TRUE(formerParent->replaceChildBy(wrapper.get(), node));
    }
    /// Whether saving the node makes its clones correspond to it without a change, but for the attachment.
    static bool haveAllCloneTreesTheSameShape(const osg::NodePtr &node, const std::vector<osg::NodePtr> &clones)
    {
        return std::all_of(clones.begin(), clones.end(),
                           [&](const osg::NodePtr &clone) { return haveSameShape(node, clone); });
    }
    static bool haveSameShape(const osg::NodePtr &a, const osg::NodePtr &b)
    {
        const bool isAlike = a->getCore() == b->getCore() && a->getNChildren() == b->getNChildren() &&
                             osg::getName(a) == osg::getName(b) &&
                             osg::findDifference(osg::AssetAttachment::getAssetAttachment(a),
                                                 osg::AssetAttachment::getAssetAttachment(b)) == std::nullopt;
        for (std::size_t i = 0; isAlike && i < a->getNChildren(); ++i)
            if (!haveSameShape(a->getChild(i), b->getChild(i)))
                return false;
        return isAlike;
    }

    /// Saves the node, and takes off what may stay: a root, attachments and marks. Whether it was saved.
    template <class Item>
    bool expectSaveLeavesTheScene(const RandomScene &scene, const osg::NodePtr &node, const QUrl &library)
    {
        const osg::NodePtr parent = node->getParent();
        const AttachmentsBefore attachments(node);
        const SceneFingerprint before = scene.fingerprint();

        const bool isSaved = save<Item>(node, library);
        noteChange(before, scene);

        unwrap(node, parent);
        attachments.restore(node);
        removeMarks(scene);
        expectRestored(before, scene);
        return isSaved;
    }

    /// Puts a folder that cannot be replaced where a payload goes.
    void block(const std::string &directory, const std::string &payload) const
    {
        std::filesystem::remove(_folder.file(directory + "/" + payload));
        writeFile(directory + "/" + payload + "/inside", "");
    }

    template <class Item> void expectUnheldNodeStays(const osg::NodePtr &node)
    {
        const std::uint32_t id = node.getFieldContainerId();
        EXPECT_TRUE(save<Item>(node, url("Library")));
        const osg::NodePtr saved = kxNodeUtils::getNodeFromId(id);
        ASSERT_TRUE(saved) << "it once went with the save";
        const osg::FCRef<osg::Node> top(saved->getParent() ? saved->getParent()
                                                           : saved); // the root it was given, if any
        EXPECT_EQ(top->getRefCount(), 1) << "nobody else holds it";
    }

    /// How often something was changed meanwhile: where nothing is, nothing has to be restored.
    std::size_t _changes = 0;
    void noteChange(const SceneFingerprint &before, const RandomScene &scene)
    {
        _changes += before.differencesTo(scene.fingerprint()).empty() ? 0 : 1;
    }
};

} // namespace

TEST_F(SavesRestoreTheSceneTest, WhenGeometryWasGrouped)
{
    inRandomScenes(1000, 30, [this](RandomScene &scene) {
        std::vector<osg::NodePtr> nodes = RandomScene::nodes();
        nodes.push_back(scene.looseNode());
        const std::vector<kxNodePtr> chosen = scene.someOf(nodes);
        const SceneFingerprint before = scene.fingerprint();

        std::optional<kxCreateGroupedNodes> group(std::in_place, Geometry);
        EXPECT_EQ(group->prepare(chosen), !chosen.empty());
        noteChange(before, scene);
        EXPECT_FALSE(group->getRoot() && group->prepare(scene.someOf(nodes))) << "it is prepared already";
        endSomehow(group, &kxCreateGroupedNodes::unprepare, scene.random);

        expectRestored(before, scene);
    });
    EXPECT_GT(_changes, 20U);
}

TEST_F(SavesRestoreTheSceneTest, WhenSceneplatesWereGrouped)
{
    inRandomScenes(1100, 20, [this](RandomScene &scene) {
        const std::vector<kxNodePtr> chosen = scene.someOf(RandomScene::plates());
        const SceneFingerprint before = scene.fingerprint();

        std::optional<kxCreateGroupedNodes> group(std::in_place, Sceneplate);
        EXPECT_EQ(group->prepare(chosen), !chosen.empty());
        noteChange(before, scene);
        EXPECT_FALSE(group->getRoot() && group->prepare(scene.someOf(RandomScene::plates())))
            << "it is prepared already";
        endSomehow(group, &kxCreateGroupedNodes::unprepare, scene.random);

        expectRestored(before, scene);
    });
    EXPECT_GT(_changes, 10U);
}

TEST_F(SavesRestoreTheSceneTest, WhenANodeWasPrepared)
{
    const ActionModule actions;
    std::size_t pools = 0;
    inRandomScenes(1200, 30, [&](RandomScene &scene) {
        std::vector<osg::NodePtr> nodes = RandomScene::nodes();
        nodes.push_back(scene.looseNode());
        nodes.emplace_back(nullptr);
        for (const osg::NodePtr &node : nodes) {
            const std::size_t children = node ? node->getNChildren() : 0;
            const SceneFingerprint before = scene.fingerprint();

            std::optional<kxSaveNode> preparation(std::in_place, node);
            noteChange(before, scene);
            const bool hasPool = node && node->getNChildren() > children;
            pools += hasPool ? 1 : 0;
            endSomehow(preparation, &kxSaveNode::cleanup, scene.random);

            EXPECT_EQ(ActionModule::hasActions(node), node && !hasPool) << "they go together with a pool only";
            ActionModule::removeActions(node);
            expectRestored(before, scene);
        }
    });
    EXPECT_GT(_changes, 500U);
    EXPECT_GT(pools, 20U);
}

TEST_F(SavesRestoreTheSceneTest, WhenAnEnvironmentWasPrepared)
{
    inRandomScenes(1300, 30, [this](RandomScene &scene) {
        for (const osg::NodePtr &node : RandomScene::environments()) {
            const osg::NodePtr another = scene.random.of(RandomScene::nodes());
            const SceneFingerprint before = scene.fingerprint();

            std::optional<kxSaveEnvironment> preparation(std::in_place);
            {
                const kxtest::CapturedOutput output;
                preparation->prepare(node);
                if (scene.random.oneIn(4))
                    preparation->prepare(scene.random.oneIn(2) ? node : another);
            }
            noteChange(before, scene);
            endSomehow(preparation, &kxSaveEnvironment::unprepare, scene.random);

            removeMarks(scene);
            expectRestored(before, scene);
        }
    });
    EXPECT_GT(_changes, 50U);
}

TEST_F(SavesRestoreTheSceneTest, WhenAGeometryAssetWasSaved)
{
    const ActionModule actions;
    inRandomScenes(2000, 15, [this](RandomScene &scene) {
        for (int i = 0; i < 3; ++i) {
            const osg::NodePtr node = scene.random.of(RandomScene::nodes());
            std::vector<osg::NodePtr> clones;
            kxNodeUtils::getAllClonesInScenegraph(node, clones);
            if (!node->getParent() || !clones.empty())
                continue;
            EXPECT_TRUE(expectSaveLeavesTheScene<kxGeometryAssetItem>(scene, node, url("Library")));
        }
    });
    EXPECT_GT(_changes, 25U);
}

TEST_F(SavesRestoreTheSceneTest, WhenAClonedGeometryAssetWasSaved)
{
    const ActionModule actions;
    inRandomScenes(2100, 8, [this](RandomScene &scene) {
        for (const osg::NodePtr &node : RandomScene::nodes()) {
            std::vector<osg::NodePtr> clones;
            kxNodeUtils::getAllClonesInScenegraph(node, clones);
            if (clones.empty() || !haveAllCloneTreesTheSameShape(node, clones))
                continue;
            std::vector<AttachmentsBefore> attachments{clones.begin(), clones.end()};
            const osg::NodePtr parent = node->getParent();
            const AttachmentsBefore own(node);
            const SceneFingerprint before = scene.fingerprint();

            EXPECT_TRUE(save<kxGeometryAssetItem>(node, url("Library")));
            noteChange(before, scene);

            unwrap(node, parent);
            own.restore(node);
            for (std::size_t i = 0; i < clones.size(); ++i)
                attachments[i].restore(clones[i]);
            expectRestored(before, scene);
        }
    });
    EXPECT_GT(_changes, 20U);
}

TEST_F(SavesRestoreTheSceneTest, WhenASceneplateAssetWasSaved)
{
    inRandomScenes(2200, 15, [this](RandomScene &scene) {
        const osg::NodePtr plate = scene.random.of(RandomScene::plates());
        EXPECT_TRUE(expectSaveLeavesTheScene<kxSceneplateAssetItem>(scene, plate, url("Library")));
    });
}

TEST_F(SavesRestoreTheSceneTest, WhenAnEnvironmentAssetWasSaved)
{
    std::size_t saved = 0;
    std::size_t failed = 0;
    inRandomScenes(2300, 10, [&](RandomScene &scene) {
        for (const osg::NodePtr &node : RandomScene::environments()) {
            const bool isSaved = expectSaveLeavesTheScene<kxEnvironmentNodeAssetItem>(scene, node, url("Library"));
            (isSaved ? saved : failed) += 1;
        }
    });
    EXPECT_GT(saved, 30U);
    EXPECT_GT(failed, 5U) << "where there is no environment material";
}

TEST_F(SavesRestoreTheSceneTest, WhenALibraryIsNoFolder)
{
    const ActionModule actions;
    writeFile("Library", "a file");
    writeFile("Folder/Library", "a file");
    inRandomScenes(3000, 5, [this](RandomScene &scene) {
        const osg::NodePtr node = scene.random.of(RandomScene::environments());
        const osg::NodePtr plate = scene.random.of(RandomScene::plates());
        EXPECT_FALSE(expectSaveLeavesTheScene<kxEnvironmentNodeAssetItem>(scene, node, url("Library")));
        EXPECT_FALSE(expectSaveLeavesTheScene<kxGeometryAssetItem>(scene, node, url("Library")));
        EXPECT_FALSE(expectSaveLeavesTheScene<kxSceneplateAssetItem>(scene, plate, url("Folder/Library/Below")));
        EXPECT_FALSE(expectSaveLeavesTheScene<kxGeometryAssetItem>(scene, node, QUrl("unknown:/place")));
    });
}

TEST_F(SavesRestoreTheSceneTest, WhenNoFolderCanBeMade)
{
    const ActionModule actions;
    const QUrl kernels = QUrl::fromLocalFile("/proc/self"); // where even root makes none
    inRandomScenes(3100, 5, [&](RandomScene &scene) {
        const osg::NodePtr node = scene.random.of(RandomScene::environments());
        const osg::NodePtr plate = scene.random.of(RandomScene::plates());
        EXPECT_FALSE(expectSaveLeavesTheScene<kxEnvironmentNodeAssetItem>(scene, node, kernels));
        EXPECT_FALSE(expectSaveLeavesTheScene<kxGeometryAssetItem>(scene, node, kernels));
        EXPECT_FALSE(expectSaveLeavesTheScene<kxSceneplateAssetItem>(scene, plate, kernels));
    });
}

TEST_F(SavesRestoreTheSceneTest, WhenAPayloadOfGeometryCannotBeWritten)
{
    const ActionModule actions;
    inRandomScenes(3200, 10, [this](RandomScene &scene) {
        const osg::NodePtr moved = scene.random.of(kxScenegraph::getRoot()->getChildren().values());
        const osg::NodePtr node =
            NodeUtils::createNodeWithCore(osg::Transform3D::create(), kxScenegraph::getRoot(), "Car");
        {
            const osg::CPEditor edit(node, osg::Node::ChildrenFieldMask);
            node->addChild(moved);
        }
        EXPECT_TRUE(save<kxGeometryAssetItem>(node, url("Library")));
        block("Library/GEO_Car", "Car.osb");

        EXPECT_FALSE(expectSaveLeavesTheScene<kxGeometryAssetItem>(scene, node, url("Library")));
        std::filesystem::remove_all(_folder.file("Library"));
    });
}

TEST_F(SavesRestoreTheSceneTest, WhenAPayloadOfAnEnvironmentCannotBeWritten)
{
    std::size_t failed = 0;
    inRandomScenes(3300, 15, [&](RandomScene &scene) {
        const osg::NodePtr node = scene.random.of(RandomScene::environments());
        kxNodeUtils::setName(node, "Hills", false, nullptr);
        const bool isSaved = save<kxEnvironmentNodeAssetItem>(node, url("Library"));
        removeMarks(scene);
        block("Library/ENV_Hills", "Hills.osb");

        EXPECT_FALSE(expectSaveLeavesTheScene<kxEnvironmentNodeAssetItem>(scene, node, url("Library")));
        failed += isSaved ? 1 : 0;
        std::filesystem::remove_all(_folder.file("Library"));
    });
    EXPECT_GT(failed, 5U);
}

TEST_F(SavesRestoreTheSceneTest, WhenANodeWasSavedWhoseClonesLookOtherwise)
{
    inRandomScenes(2400, 20, [this](RandomScene &scene) {
        std::vector<osg::NodePtr> nodes = RandomScene::nodes();
        std::erase_if(nodes, [](const osg::NodePtr &node) {
            std::vector<osg::NodePtr> clones;
            kxNodeUtils::getAllClonesInScenegraph(node, clones);
            return clones.empty();
        });
        if (nodes.empty())
            return;
        const osg::NodePtr node = scene.random.of(nodes);
        const osg::FCRef<osg::Node> before(osg::deepClone(node, {}));

        save<kxGeometryAssetItem>(node, url("Library"));

        EXPECT_EQ(osg::findDifference(before.get(), node, {&osg::AssetAttachment::getClassType()}), std::nullopt)
            << "the clones were made to look like it, and not the other way round";
    });
}

TEST_F(SavesRestoreTheSceneTest, WhenANodeWasSavedThatNobodyHolds)
{
    const osg::NodePtr placed = addPlaced(nullptr, "Placed", {1.0, 0.0, 0.0});
    addGroup(placed, "Below");
    const osg::NodePtr environment = addNode(nullptr, osg::Environment::create(), "Environment");
    kxNodeUtils::setMaterial(environment, kxDefaultEnvironment::getSwitch(), false, true);

    expectUnheldNodeStays<kxGeometryAssetItem>(placed);
    expectUnheldNodeStays<kxGeometryAssetItem>(addGroup(nullptr, "Group"));
    expectUnheldNodeStays<kxSceneplateAssetItem>(addGroup(nullptr, "Plates"));
    expectUnheldNodeStays<kxEnvironmentNodeAssetItem>(environment);
}
