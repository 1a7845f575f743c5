// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxAssetItemDocument.h"
#include "Assets/kxAssetItemFactory.h"
#include "Assets/kxEnvironmentMaterialAssetItem.h"
#include "Assets/kxMaterialAssetItem.h"
#include "EditWatch.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxScenegraph.h"
#include "MaterialFixture.h"
#include "NodeManager.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/FieldContainerFactory.h"
#include "SceneGraph/SceneListener.h"
#include "Support/CapturedOutput.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

constexpr const char *Uuid = "0a1b2c3d-4e5f-4a6b-8c7d-9e0f1a2b3c4d";

/// What a back-end does that stores a material.
bool stored(kxMaterialAssetItem &item)
{
    item.setDirectoryUrl(NodeManager::url("/library/new"));
    return true;
}

class kxMaterialAssetItemSavingTest : public MaterialFixture
{
protected:
    ~kxMaterialAssetItemSavingTest() override
    {
        manager.storeMaterial = nullptr;
        manager.whenCollecting = nullptr;
    }

    static void registerElsewhere(const std::string &name)
    {
        kxAssetItemDocument document;
        document.setAssetType(Material);
        document.setAssetUUID(Uuid);
        document.setAssetName(name);
        kxAssetItemFactory::the().createOrUpdateItem(document)->setDirectoryUrl(NodeManager::url("/library/old"));
    }
    static kxMaterialAssetItem itemOf(const osg::MaterialPtr &material, const std::string &uuid = Uuid)
    {
        kxMaterialAssetItem item;
        item.initFrom(material, uuid, true);
        return item;
    }

    /// A material of the scene that carries this UUID.
    static Owned inScene(const std::string &name, const std::string &uuid)
    {
        Owned material = makeSurface(name);
        makeAsset(material, uuid);
        kxScenegraph::addToMaterialPool(material);
        return material;
    }

    NodeManager &manager = NodeManager::fresh();
};

} // namespace

TEST_F(kxMaterialAssetItemSavingTest, SavesNothingWithoutABackEnd)
{
    EXPECT_FALSE(itemOf(makeSurface("x")).save(QUrl("nobody://x")));
    EXPECT_FALSE(itemOf(makeSurface("x")).save(QUrl()));
}

TEST_F(kxMaterialAssetItemSavingTest, SavesNothingWithoutAMaterial)
{
    kxMaterialAssetItem item;

    EXPECT_FALSE(item.save(url()));

    EXPECT_TRUE(std::filesystem::is_empty(_folder.path()));
}

TEST_F(kxMaterialAssetItemSavingTest, WritesTheAssetAndRegistersIt)
{
    const Owned material = makeSurface("Lack");
    kxMaterialAssetItem saved = itemOf(material);

    EXPECT_TRUE(saved.save(url()));

    EXPECT_TRUE(_folder.contains("MAT_Lack/Lack.xml"));
    EXPECT_TRUE(_folder.contains("MAT_Lack/Lack.osb"));
    EXPECT_EQ(saved.directoryUrl(), url("MAT_Lack"));
    kxMaterialAssetItem *registered = item(Uuid);
    ASSERT_NE(registered, nullptr);
    EXPECT_NE(registered, &saved);
    EXPECT_EQ(registered->directoryUrl(), url("MAT_Lack"));
    EXPECT_EQ(registered->name(), "Lack");
    EXPECT_TRUE(registered->lastModified().isValid());
    EXPECT_EQ(kxAssetItemFactory::the().itemCount(), 1);
}

TEST_F(kxMaterialAssetItemSavingTest, StampsTheSavedMaterial)
{
    const Owned material = makeSurface("Lack");
    kxMaterialAssetItem saved = itemOf(material);

    ASSERT_TRUE(saved.save(url()));

    const auto attachment = osg::AssetAttachment::getAssetAttachment(material);
    ASSERT_TRUE(attachment);
    EXPECT_EQ(attachment->getUuid(), Uuid);
    EXPECT_EQ(attachment->getCategory(), "Materials");
    EXPECT_EQ(attachment->getUrl(), "file://" + _folder.file("MAT_Lack"));
    EXPECT_EQ(attachment->getChecksum(), saved.checksum());
    EXPECT_FALSE(attachment->getUserEdited());
    EXPECT_TRUE(saved.hasSameChecksum(material));
    EXPECT_EQ(material->getRefCount(), 2) << "the test's and the saved item's";
}

TEST_F(kxMaterialAssetItemSavingTest, LoadsBackWhatItSaved)
{
    const Owned material = makeSurface("Lack");
    setTags(material, {"a", "b"});
    setGlow(material, {0.5F, 0.25F, 1, 3});
    ASSERT_TRUE(itemOf(material).save(url()));

    const osg::MaterialPtr loaded = kxMaterialAssetItem::getMaterialFromUUID(Uuid);

    ASSERT_TRUE(loaded);
    EXPECT_NE(loaded, material.get());
    EXPECT_EQ(kxMaterials::getName(loaded), "Lack");
    EXPECT_EQ(glowOf(loaded), glowOf(material));
    EXPECT_EQ(tagsOf(loaded), (std::vector<std::string>{"a", "b"}));
}

TEST_F(kxMaterialAssetItemSavingTest, LeavesACallersItemAliveWhenAnotherIsRegistered)
{
    const Owned material = makeSurface("Lack");
    kxMaterialAssetItem first = itemOf(material);
    ASSERT_TRUE(first.save(url()));
    kxMaterialAssetItem second = itemOf(material);

    EXPECT_TRUE(second.save(url()));

    EXPECT_EQ(second.uuid(), Uuid);
    EXPECT_EQ(second.directoryUrl(), url("MAT_Lack"));
    EXPECT_FALSE(_folder.contains("MAT_Lack0"));
    EXPECT_EQ(kxAssetItemFactory::the().itemCount(), 1);
}

TEST_F(kxMaterialAssetItemSavingTest, ReplacesTheRegisteredItemThatIsSaved)
{
    ASSERT_TRUE(itemOf(makeSurface("Lack")).save(url()));
    kxMaterialAssetItem *registered = item(Uuid);
    ASSERT_TRUE(registered->loadMaterial());
    const Owned material = registered->getMaterial();
    setGlow(material, {1, 1, 1, 9});

    EXPECT_TRUE(registered->save(url()));

    // The item that was saved is gone; the one that took its place knows the same asset.
    ASSERT_NE(item(Uuid), nullptr);
    EXPECT_FALSE(item(Uuid)->getMaterial());
    EXPECT_EQ(item(Uuid)->directoryUrl(), url("MAT_Lack"));
    EXPECT_EQ(material->getRefCount(), 1);
    EXPECT_TRUE(item(Uuid)->hasSameChecksum(material));
    const osg::MaterialPtr loaded = kxMaterialAssetItem::getMaterialFromUUID(Uuid);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(glowOf(loaded)[3], 9.0F);
}

TEST_F(kxMaterialAssetItemSavingTest, StampsTheMaterialOfARegisteredItemThatWasSaved)
{
    ASSERT_TRUE(itemOf(makeSurface("Lack")).save(url()));
    ASSERT_TRUE(item(Uuid)->loadMaterial());
    const Owned material = item(Uuid)->getMaterial();

    ASSERT_TRUE(item(Uuid)->save(url("other")));

    const auto attachment = osg::AssetAttachment::getAssetAttachment(material);
    EXPECT_EQ(attachment->getUuid(), Uuid);
    EXPECT_EQ(attachment->getCategory(), "Materials");
    EXPECT_EQ(attachment->getUrl(), "file://" + _folder.file("other/MAT_Lack"));
    EXPECT_EQ(attachment->getChecksum(), item(Uuid)->checksum());
}

TEST_F(kxMaterialAssetItemSavingTest, RemovesTheOldDirectoryWhenSavedElsewhere)
{
    ASSERT_TRUE(itemOf(makeSurface("Lack")).save(url("a")));
    kxtest::CapturedOutput output;

    ASSERT_TRUE(itemOf(makeSurface("Lack")).save(url("b")));

    EXPECT_NE(output.text().find("deleting: "), std::string::npos);
    EXPECT_FALSE(_folder.contains("a/MAT_Lack"));
    EXPECT_TRUE(_folder.contains("b/MAT_Lack/Lack.osb"));
    EXPECT_EQ(item(Uuid)->directoryUrl(), url("b/MAT_Lack"));
}

TEST_F(kxMaterialAssetItemSavingTest, GoesNoFurtherWhereTheOldDirectoryCannotGo)
{
    ASSERT_TRUE(itemOf(makeSurface("Lack")).save(url()));
    const Owned copy = inScene("Copy", Uuid);
    const Owned saved = makeSurface("Lack");
    kxtest::CapturedOutput output;

    // The new directory would lie below the old one.
    const bool isSaved = itemOf(saved).save(url("MAT_Lack"));

    EXPECT_NE(output.text().find("deleting old directory failed.\n"), std::string::npos);
    EXPECT_FALSE(isSaved);
    EXPECT_FALSE(osg::AssetAttachment::getAssetAttachment(saved));
    EXPECT_FALSE(isUserEdited(copy));
    EXPECT_EQ(item(Uuid)->directoryUrl(), url("MAT_Lack"));
}

TEST_F(kxMaterialAssetItemSavingTest, GivesAnotherAssetOfTheNameADirectoryOfItsOwn)
{
    ASSERT_TRUE(itemOf(makeSurface("Lack"), Uuid).save(url()));
    ASSERT_TRUE(itemOf(makeSurface("Lack"), "other").save(url()));

    EXPECT_EQ(item(Uuid)->directoryUrl(), url("MAT_Lack"));
    EXPECT_EQ(item("other")->directoryUrl(), url("MAT_Lack0"));
}

TEST_F(kxMaterialAssetItemSavingTest, MarksOtherCopiesInTheSceneAsEdited)
{
    const Owned saved = inScene("Lack", Uuid);
    const Owned copy = inScene("Copy", Uuid);
    const Owned stranger = inScene("Stranger", "other");
    const Owned outside = makeSurface("Outside");
    makeAsset(outside, Uuid);
    const EditWatch watch;

    ASSERT_TRUE(itemOf(saved).save(url()));

    EXPECT_EQ(watch.editsOf(osg::AssetAttachment::getAssetAttachment(copy).getFieldContainerId()),
              std::vector<std::string>{"AssetAttachment UserEdited"});
    EXPECT_FALSE(isUserEdited(saved));
    EXPECT_TRUE(isUserEdited(copy));
    EXPECT_FALSE(isUserEdited(stranger));
    EXPECT_FALSE(isUserEdited(outside)) << "it is no material of the scene";
}

TEST_F(kxMaterialAssetItemSavingTest, LeavesCopiesAloneThatAreMarkedAlready)
{
    struct EditCounter : osg::SceneListener
    {
        explicit EditCounter(const osg::AssetAttachmentPtr &watched) : attachment(watched)
        {
            osg::FieldContainerFactory::the().addListener(*this);
        }
        ~EditCounter() override { osg::FieldContainerFactory::the().removeListener(*this); }
        void containerChanged(osg::FieldContainer &container, osg::FieldMask fields) override
        {
            if (container.getFieldContainerId() == attachment.getFieldContainerId())
                edits.push_back(fields);
        }
        osg::AssetAttachmentPtr attachment;
        std::vector<osg::FieldMask> edits;
    };
    const Owned copy = inScene("Copy", Uuid);
    const Owned saved = makeSurface("Lack");
    const EditCounter counter(osg::AssetAttachment::getAssetAttachment(copy));

    ASSERT_TRUE(itemOf(saved).save(url()));
    EXPECT_EQ(counter.edits, std::vector{osg::AssetAttachment::UserEditedFieldMask});
    ASSERT_TRUE(itemOf(saved).save(url()));
    EXPECT_EQ(counter.edits.size(), 1U);
    EXPECT_TRUE(isUserEdited(copy));
}

TEST_F(kxMaterialAssetItemSavingTest, MarksNothingWhenSavingFails)
{
    const Owned copy = inScene("Copy", Uuid);
    const Owned part = makeSurface("Part");
    kxtest::CapturedOutput output;

    EXPECT_FALSE(itemOf(makeMultiPass("m", {part})).save(url())) << "a part is no asset";

    EXPECT_FALSE(isUserEdited(copy));
    EXPECT_EQ(item(Uuid), nullptr);
}

TEST_F(kxMaterialAssetItemSavingTest, RebuildsASavedCompositeFromItsMetadataAlone)
{
    const Owned a = makeSurface("A");
    const Owned b = makeSurface("B");
    setGlow(b, {1, 0, 0, 2});
    makeAsset(a, store(a));
    makeAsset(b, store(b));
    const Owned passes = makeMultiPass("Passes", {a, b});
    makeAsset(passes, store(passes));
    const Owned choices = makeSwitch("Choices", {b, passes}, 1);
    setTags(choices, {"x"});

    const std::string uuid = store(choices);

    EXPECT_FALSE(_folder.contains("MAT_Choices/Choices.osb"));
    const osg::MaterialPtr loaded = kxMaterialAssetItem::getMaterialFromUUID(uuid);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(kxMaterials::getName(loaded), "Choices");
    EXPECT_EQ(item(uuid)->switchChoice(), 1);
    EXPECT_EQ(tagsOf(loaded), std::vector<std::string>{"x"});
    const auto parts = kxMaterials::getSubMaterials(loaded);
    ASSERT_EQ(parts.size(), 2U);
    EXPECT_EQ(glowOf(parts[0])[3], 2.0F);
    EXPECT_EQ(uuidOf(parts[0]), uuidOf(b));
    EXPECT_EQ(uuidOf(parts[1]), uuidOf(passes));
    EXPECT_EQ(kxMaterials::getSubMaterials(parts[1])[1], parts[0]) << "one part, loaded once";
}

TEST_F(kxMaterialAssetItemSavingTest, ComparesACompositeByItsDescription)
{
    const Owned a = makeSurface("A");
    makeAsset(a, store(a));
    const Owned choices = makeSwitch("Choices", {a});
    const std::string uuid = store(choices);
    EXPECT_TRUE(item(uuid)->hasSameChecksum(choices));

    EXPECT_TRUE(item(uuid)->changeName("Renamed"));
    EXPECT_TRUE(item(uuid)->hasSameChecksum(choices)) << "the name is no part of the description";
}

TEST_F(kxMaterialAssetItemSavingTest, SavesEnvironmentMaterialsAsEnvironments)
{
    const Owned sky = makeSky("Abend");
    kxEnvironmentMaterialAssetItem saved;
    saved.initFrom(sky, Uuid, true);

    EXPECT_TRUE(saved.save(url()));

    EXPECT_TRUE(_folder.contains("ENV_Abend/Abend.osb"));
    EXPECT_NE(dynamic_cast<kxEnvironmentMaterialAssetItem *>(item(Uuid)), nullptr);
    EXPECT_EQ(osg::AssetAttachment::getAssetAttachment(sky)->getCategory(), "Environments");
}

TEST_F(kxMaterialAssetItemSavingTest, PrintsTheEndOfAnItemOnceWhenTheRegisteredOneIsSaved)
{
    ASSERT_TRUE(itemOf(makeSurface("Lack")).save(url()));
    ASSERT_TRUE(item(Uuid)->loadMaterial());
    kxtest::CapturedOutput output;

    ASSERT_TRUE(item(Uuid)->save(url()));

    EXPECT_EQ(output.text(), "[makeUniqueDirectory] - contains item with same uuid\n"
                             "[~kxMaterialAssetItem] mat ref count = 2\n");
}

TEST_F(kxMaterialAssetItemSavingTest, CollectsWhatItSavedWithoutShowingProgress)
{
    manager.storeMaterial = stored;

    EXPECT_TRUE(itemOf(makeSurface("Lack")).save(NodeManager::url("/library")));

    EXPECT_THAT(manager.asked, ElementsAre("saveMaterialAsset Lack /library", "collectItems 1 /library/new"));
}

TEST_F(kxMaterialAssetItemSavingTest, RemovesWhatWasRegisteredAfterItWroteTheNew)
{
    registerElsewhere("Old");
    manager.storeMaterial = stored;

    EXPECT_TRUE(itemOf(makeSurface("Lack")).save(NodeManager::url("/library")));

    EXPECT_THAT(manager.asked,
                ElementsAre("saveMaterialAsset Lack /library", "removeOldItemDirectory Old for Lack /library/old",
                            "collectItems 1 /library/new"));
}

TEST_F(kxMaterialAssetItemSavingTest, LeavesAnItemThatAppearsWhileItWrites)
{
    manager.storeMaterial = [](kxMaterialAssetItem &item) {
        registerElsewhere("Meanwhile");
        return stored(item);
    };

    EXPECT_TRUE(itemOf(makeSurface("Lack")).save(NodeManager::url("/library")));

    EXPECT_THAT(manager.asked, ElementsAre("saveMaterialAsset Lack /library", "collectItems 1 /library/new"));
}

TEST_F(kxMaterialAssetItemSavingTest, MarksTheMaterialAfterTheAssetWasCollectedAndThenTheOthers)
{
    const Owned material = makeSurface("Lack");
    const Owned copy = inScene("Copy", Uuid);
    manager.storeMaterial = stored;
    std::string during;
    manager.whenCollecting = [&] {
        during = uuidOf(material) + (isUserEdited(copy) ? " and marked" : "");
        manager.write("/library/new/Lack.osb", "12345");
    };

    EXPECT_TRUE(itemOf(material).save(NodeManager::url("/library")));

    EXPECT_EQ(during, "(no attachment)");
    EXPECT_EQ(uuidOf(material), Uuid);
    EXPECT_EQ(osg::AssetAttachment::getAssetAttachment(material)->getChecksum(), 5U) << "of what is stored by then";
    EXPECT_TRUE(isUserEdited(copy));
}
