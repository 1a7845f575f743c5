// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetStates.h"
#include "AssetManager/LibrarySide.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxModalQuestion.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/AssetAttachment.h"
#include "SceneGraph/DeepClone.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/MaterialPool.h"
#include "WindowFixture.h"

#include <QAction>
#include <QListView>
#include <QMenu>
#include <QTest>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What objects of the scene know of the assets that they were saved as, when that is undone.
class MainWindowTieTest : public WindowFixture
{
protected:
    static std::string tieOf(const osg::AttachmentContainerPtr &container)
    {
        const osg::AssetAttachmentPtr asset = osg::AssetAttachment::getAssetAttachment(container);
        return asset ? asset->getUuid() : std::string();
    }
    bool becomesUsed(const std::string &uuid) const
    {
        const AssetStates &states = window->libraries().states();
        return QTest::qWaitFor([&] { return states.stateOf(uuid) == AssetStates::InScene; }, Patience);
    }
    osg::MaterialPtr loadMaterial(const std::string &uuid)
    {
        load(uuid);
        return kxMaterials::findAssetMaterial(uuid);
    }
    void saveObject(const QString &name)
    {
        auto &tree = widget<QAbstractItemView>("sceneTree");
        clickItem(tree, rowOf(tree, name));
        press(Qt::Key_O, Qt::ControlModifier | Qt::ShiftModifier);
        settle();
    }
    void saveMaterial(const QString &name)
    {
        raise("materialDock");
        auto &list = widget<QListView>("materialList");
        clickItem(list, rowOf(list, name));
        press(Qt::Key_M, Qt::ControlModifier | Qt::ShiftModifier);
        settle();
    }
};

} // namespace

TEST_F(MainWindowTieTest, LetsGoOfAnAssetThatWasMadeOfAnObject)
{
    const osg::NodePtr chair = addChair("Chair");
    open();
    saveObject("Chair");
    const std::string uuid = tieOf(chair);
    ASSERT_THAT(names(), ElementsAre("Chair"));
    ASSERT_NE(uuid, "");

    undo();

    EXPECT_THAT(names(), IsEmpty());
    EXPECT_EQ(tieOf(chair), "") << "tied to what is not there";
    redo();
    EXPECT_THAT(names(), ElementsAre("Chair"));
    EXPECT_EQ(tieOf(chair), uuid);
    EXPECT_TRUE(becomesUsed(uuid));
    undo();
    EXPECT_EQ(tieOf(chair), "");
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowTieTest, TiesAMaterialToTheAssetThatItCameFromAgain)
{
    const std::string oak = storeMaterial("Oak");
    open();
    const osg::MaterialPtr material = loadMaterial(oak);
    ASSERT_TRUE(material);
    const std::string url = osg::AssetAttachment::getAssetAttachment(material)->getUrl();
    saveMaterial("Oak");
    const std::string copy = tieOf(material);
    ASSERT_THAT(names(), ElementsAre("Oak", "Oak"));
    ASSERT_NE(copy, oak);

    undo();

    EXPECT_THAT(names(), ElementsAre("Oak"));
    EXPECT_EQ(tieOf(material), oak);
    EXPECT_EQ(osg::AssetAttachment::getAssetAttachment(material)->getUrl(), url);
    EXPECT_TRUE(becomesUsed(oak));
    redo();
    EXPECT_EQ(tieOf(material), copy);
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowTieTest, TellsOtherCopiesThatTheyAreNotBehindAnyMore)
{
    const std::string oak = storeMaterial("Oak");
    open();
    const osg::MaterialPtr material = loadMaterial(oak);
    const osg::FCRef<osg::Material> other(osg::deepClone(material, {}));
    {
        const osg::MaterialPoolPtr pool = kxScenegraph::getMaterialPool();
        const osg::CPEditor edit(pool, osg::MaterialPool::MaterialsFieldMask);
        pool->editMaterials().push_back(other.get());
    }
    const osg::AssetAttachmentPtr mark = osg::AssetAttachment::getAssetAttachment(other.get());
    ASSERT_TRUE(mark);
    ASSERT_NE(mark, osg::AssetAttachment::getAssetAttachment(material));
    kxMaterials::setName(material, "Bog oak", false);
    kxModalQuestion::setAnswerer([](const kxModalQuestion::Question &) { return QMessageBox::Save; });
    clickAsset(oak);
    clickInMenuBar("assetMenu", "Save the scene's copy over it...");
    settle();
    ASSERT_NE(mark->getUserEdited(), osg::AssetAttachment::getAssetAttachment(material)->getUserEdited());
    const bool isEdited = mark->getUserEdited();

    undo();

    EXPECT_NE(mark->getUserEdited(), isEdited);
    redo();
    EXPECT_EQ(mark->getUserEdited(), isEdited);
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowTieTest, PassesOverWhatIsGoneFromTheScene)
{
    addChair("Chair");
    open();
    saveObject("Chair");
    window->scene().actions().newScene();
    settle();
    ASSERT_FALSE(window->isWindowModified());

    undo();

    EXPECT_THAT(names(), IsEmpty());
    EXPECT_FALSE(window->isWindowModified()) << "nothing of the scene was changed";
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowTieTest, StaysTiedToWhatCouldNotBeTakenBack)
{
    const osg::NodePtr chair = addChair("Chair");
    const std::string oak = storeMaterial("Oak");
    open();
    saveObject("Chair");
    const std::string uuid = tieOf(chair);
    const osg::MaterialPtr material = loadMaterial(oak);
    const std::uint32_t checksum = osg::AssetAttachment::getAssetAttachment(material)->getChecksum();
    kxMaterials::setName(material, "Bog oak", false);
    kxModalQuestion::setAnswerer([](const kxModalQuestion::Question &) { return QMessageBox::Save; });
    clickAsset(oak);
    clickInMenuBar("assetMenu", "Save the scene's copy over it...");
    settle();
    ASSERT_NE(osg::AssetAttachment::getAssetAttachment(material)->getChecksum(), checksum);
    window->libraries().close(path());

    undo();
    EXPECT_EQ(takeReport(), "\"Bog oak\" was left as it is: its library is not open any more.");
    EXPECT_NE(osg::AssetAttachment::getAssetAttachment(material)->getChecksum(), checksum);
    undo(); // of loading the material
    undo();

    EXPECT_EQ(takeReport(), "\"Chair\" was left as it is: its library is not open any more.");
    EXPECT_EQ(tieOf(chair), uuid);
}
