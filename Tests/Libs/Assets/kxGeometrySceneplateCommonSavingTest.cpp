// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetItemDocument.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxGeometryAssetItem.h"
#include "Assets/kxGeometrySceneplateCommon.h"
#include "Assets/kxSceneplateAssetItem.h"
#include "Kernel/kxScenegraph.h"
#include "NodeFixture.h"
#include "NodeManager.h"
#include "SceneGraph/EditCP.h"

#include <gmock/gmock.h>

#include <memory>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::string Uuid = "10000000-0000-4000-8000-000000000000";

/// Notes which nodes it marks.
template <class Item> class MarkingItem final : public Item
{
public:
    explicit MarkingItem(std::vector<std::uint32_t> &marked) : _marked(marked) {}

private:
    osg::FCPtr<osg::AttachmentPtr, osg::AssetAttachment>
    updateAssetAttachment(const osg::AttachmentContainerPtr &container) override
    {
        _marked.push_back(container.getFieldContainerId());
        return Item::updateAssetAttachment(container);
    }

    std::vector<std::uint32_t> &_marked;
};

/// Saves geometry or a sceneplate to a back-end that does and notes what the test says.
class kxGeometrySceneplateCommonSavingTest : public NodeFixture, public testing::WithParamInterface<kxAssetCategoryType>
{
protected:
    kxGeometrySceneplateCommonSavingTest()
    {
        nodes.store = [](kxGeometrySceneplateCommon &stored) {
            stored.setDirectoryUrl(NodeManager::url("/library/new"));
            return true;
        };
        if (GetParam() == Geometry)
            item = std::make_unique<kxGeometryAssetItem>();
        else
            item = std::make_unique<kxSceneplateAssetItem>();
        node = addPlaced(kxScenegraph::getRoot(), "Chair", {1.0, 0.0, 0.0});
        addGroup(node, "Seat");
        item->initFrom(node, Uuid, true);
    }
    ~kxGeometrySceneplateCommonSavingTest() override
    {
        nodes.store = nullptr;
        nodes.whenCollecting = nullptr;
    }

    bool save() { return item->save(NodeManager::url("/library")); }
    /// Registers an item of the category with the UUID.
    static void registerItem(const std::string &name)
    {
        kxAssetItemDocument document;
        document.setAssetType(GetParam());
        document.setAssetUUID(Uuid);
        document.setAssetName(name);
        kxAssetItemFactory::the().createOrUpdateItem(document)->setDirectoryUrl(NodeManager::url("/library/old"));
    }
    static std::string collecting() { return "collectItems " + std::to_string(GetParam()) + " /library/new"; }
    void removeNode() const
    {
        const osg::CPEditor edit(kxScenegraph::getRoot(), osg::Node::ChildrenFieldMask);
        kxScenegraph::getRoot()->subChild(node);
    }

    NodeManager &nodes = NodeManager::fresh();
    std::unique_ptr<kxGeometrySceneplateCommon> item;
    osg::NodePtr node;
};

INSTANTIATE_TEST_SUITE_P(Categories, kxGeometrySceneplateCommonSavingTest, testing::Values(Geometry, Sceneplate),
                         [](const auto &category) { return category.param == Geometry ? "Geometry" : "Sceneplate"; });

} // namespace

TEST_P(kxGeometrySceneplateCommonSavingTest, WritesAndCollectsANewAsset)
{
    EXPECT_TRUE(save());

    EXPECT_THAT(nodes.asked, ElementsAre("saveSceneNodeAsset Chair /library", collecting()));
}

TEST_P(kxGeometrySceneplateCommonSavingTest, RemovesWhatWasRegisteredAfterItWroteTheNew)
{
    registerItem("Old");

    EXPECT_TRUE(save());

    EXPECT_THAT(nodes.asked, ElementsAre("saveSceneNodeAsset Chair /library",
                                         "removeOldItemDirectory Old for Chair /library/old", collecting()));
}

TEST_P(kxGeometrySceneplateCommonSavingTest, LeavesAnItemThatAppearsWhileItWrites)
{
    nodes.store = [](kxGeometrySceneplateCommon &stored) {
        registerItem("Meanwhile");
        stored.setDirectoryUrl(NodeManager::url("/library/new"));
        return true;
    };

    EXPECT_TRUE(save());

    EXPECT_THAT(nodes.asked, ElementsAre("saveSceneNodeAsset Chair /library", collecting()));
}

TEST_P(kxGeometrySceneplateCommonSavingTest, StopsWhenItCannotBeWritten)
{
    registerItem("Old");
    nodes.store = nullptr;

    EXPECT_FALSE(save());

    EXPECT_THAT(nodes.asked, ElementsAre("saveSceneNodeAsset Chair /library"));
    EXPECT_EQ(uuidOfNode(node), "none");
}

TEST_P(kxGeometrySceneplateCommonSavingTest, StopsWhenTheOldCannotBeRemoved)
{
    registerItem("Old");
    nodes.removesOldItems = false;

    EXPECT_FALSE(save());

    EXPECT_THAT(nodes.asked,
                ElementsAre("saveSceneNodeAsset Chair /library", "removeOldItemDirectory Old for Chair /library/old"));
    EXPECT_EQ(uuidOfNode(node), "none");
}

TEST_P(kxGeometrySceneplateCommonSavingTest, MarksTheNodeAfterTheAssetWasCollected)
{
    std::string during;
    nodes.whenCollecting = [&] {
        during = uuidOfNode(node);
        nodes.write("/library/new/Chair.osb", "12345");
    };

    EXPECT_TRUE(save());

    EXPECT_EQ(during, "none");
    const auto attachment = osg::AssetAttachment::getAssetAttachment(node);
    ASSERT_TRUE(attachment);
    EXPECT_EQ(attachment->getUuid(), Uuid);
    EXPECT_EQ(attachment->getUrl(), "nodes:/library/new");
    EXPECT_EQ(attachment->getCategory(), GetParam() == Geometry ? "Geometries" : "Sceneplates");
    EXPECT_EQ(attachment->getChecksum(), 5U) << "of what is stored by then";
}

TEST_P(kxGeometrySceneplateCommonSavingTest, MarksTheNodeByTheOverridableOperation)
{
    std::vector<std::uint32_t> marked;
    if (GetParam() == Geometry)
        item = std::make_unique<MarkingItem<kxGeometryAssetItem>>(marked);
    else
        item = std::make_unique<MarkingItem<kxSceneplateAssetItem>>(marked);
    item->setNode(node);

    EXPECT_TRUE(save());

    EXPECT_THAT(marked, ElementsAre(node.getFieldContainerId()));
}

TEST_P(kxGeometrySceneplateCommonSavingTest, SucceedsAlsoWhenTheNodeGoesMeanwhile)
{
    nodes.whenCollecting = [this] { removeNode(); };

    EXPECT_TRUE(save());

    EXPECT_FALSE(item->getNode());
}

TEST_P(kxGeometrySceneplateCommonSavingTest, KnowsNoForeignPlace)
{
    EXPECT_FALSE(item->save(QUrl("unknown:/place")));
    EXPECT_THAT(nodes.asked, IsEmpty());
}

TEST_P(kxGeometrySceneplateCommonSavingTest, BringsOnlyTheClonesOfGeometryUpToDateThatWereThereBefore)
{
    const osg::NodePtr before = addNode(kxScenegraph::getRoot(), node->getCore(), "Before");
    osg::NodePtr meanwhile;
    nodes.whenCollecting = [&] {
        EXPECT_EQ(describe(before), "Before") << "not yet";
        meanwhile = addNode(kxScenegraph::getRoot(), node->getCore(), "Meanwhile");
    };

    EXPECT_TRUE(save());

    EXPECT_EQ(describe(before), GetParam() == Geometry ? "Chair(Seat)" : "Before");
    EXPECT_EQ(uuidOfNode(before), GetParam() == Geometry ? Uuid : "none") << "the mark is carried over as well";
    EXPECT_EQ(describe(meanwhile), "Meanwhile");
}
