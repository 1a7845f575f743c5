// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/DragData.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/NodeTreePanel.h"
#include "AssetManager/SceneSide.h"
#include "AssetManager/SceneView.h"
#include "AssetManager/Trash.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxModalQuestion.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSceneplateUtils.h"
#include "Kernel/kxSelectionManager.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Material.h"
#include "SceneGraph/NameAttachment.h"
#include "SceneGraph/Transform3D.h"
#include "WindowFixture.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QListView>
#include <QMenu>
#include <QTest>
#include <QTreeView>

#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class MainWindowSceneTest : public WindowFixture
{
protected:
    /// Waits for a picture of the scene as it is, seen as a whole.
    void look()
    {
        view().frameAll();
        settle();
    }
    /// A place of the picture where the node is seen.
    QPoint placeOf(const osg::NodePtr &node)
    {
        for (int y = 4; y < view().height(); y += 8)
            for (int x = 4; x < view().width(); x += 8)
                if (view().nodeAt({x, y}) == node)
                    return {x, y};
        ADD_FAILURE() << "not to be seen: " << kxNodeUtils::getName(node);
        return {};
    }
    /// How much of the picture the node fills: a number of pixels.
    int sizeOf(const osg::NodePtr &node)
    {
        int size = 0;
        for (int y = 0; y < view().height(); y += 2)
            for (int x = 0; x < view().width(); x += 2)
                size += view().nodeAt({x, y}) == node ? 4 : 0;
        return size;
    }
    QPoint emptyPlace()
    {
        EXPECT_FALSE(view().nodeAt({2, 2}));
        return {2, 2};
    }
    QTreeView &sceneTree() { return widget<QTreeView>("sceneTree"); }
};

TEST_F(MainWindowSceneTest, GivesAMaterialToTheObjectThatItIsDroppedOn)
{
    const osg::NodePtr seat = addChair("Chair")->getChild(0);
    const std::string oak = storeMaterial("Oak");
    open();
    look();

    ASSERT_TRUE(drop(view(), placeOf(seat), *dragged({oak})));
    EXPECT_EQ(materialNameOf(seat), "Oak");
    undo();

    EXPECT_EQ(materialOf(seat), nullptr);
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowSceneTest, TakesNoMaterialWhereNoObjectIs)
{
    addChair("Chair");
    const std::string oak = storeMaterial("Oak");
    open();
    look();

    EXPECT_FALSE(drop(view(), emptyPlace(), *dragged({oak})));

    EXPECT_FALSE(window->undoStack().canUndo());
}

TEST_F(MainWindowSceneTest, SelectsTheObjectThatIsClicked)
{
    const osg::NodePtr seat = addChair("Chair")->getChild(0);
    open();
    look();

    click(view(), placeOf(seat));
    EXPECT_TRUE(kxSelectionManager::isSelected(seat));
    click(view(), emptyPlace());

    EXPECT_FALSE(kxSelectionManager::isSelected(seat));
}

TEST_F(MainWindowSceneTest, LoadsGeometryThatIsDroppedIntoThePicture)
{
    const std::string chair = storeGeometry("Stool");
    open();

    ASSERT_TRUE(drop(view(), view().rect().center(), *dragged({chair})));
    EXPECT_THAT(childNames(root()), Contains("Stool"));
    undo();

    EXPECT_THAT(childNames(root()), Not(Contains("Stool")));
}

TEST_F(MainWindowSceneTest, LoadsGeometryBelowTheNodeThatItIsDroppedOn)
{
    const osg::NodePtr room = addChair("Room");
    const std::string chair = storeGeometry("Stool");
    open();

    ASSERT_TRUE(dropOnItem(sceneTree(), rowOf(sceneTree(), "Room"), *dragged({chair})));
    EXPECT_THAT(childNames(room), ElementsAre("Seat", "Stool"));
    undo();

    EXPECT_THAT(childNames(room), ElementsAre("Seat"));
}

TEST_F(MainWindowSceneTest, LightsTheSceneWithTheEnvironmentThatIsDropped)
{
    const std::string sky = storeEnvironment("Blue sky");
    open();
    const std::size_t before = kxDefaultEnvironment::getSwitch()->getMaterials().size();

    ASSERT_TRUE(drop(view(), view().rect().center(), *dragged({sky})));
    EXPECT_EQ(kxDefaultEnvironment::getSwitch()->getMaterials().size(), before + 1);
    undo();
    EXPECT_EQ(kxDefaultEnvironment::getSwitch()->getMaterials().size(), before);
    raise("environmentDock");
    auto &list = widget<QListView>("environmentList");
    ASSERT_TRUE(drop(*list.viewport(), list.viewport()->rect().center(), *dragged({sky})));

    EXPECT_EQ(kxDefaultEnvironment::getSwitch()->getMaterials().size(), before + 1);
}

TEST_F(MainWindowSceneTest, LaysPlatesThatAreDroppedOnTheirList)
{
    const std::string logo = storePlate("Logo");
    const std::string chair = storeGeometry("Stool");
    open();
    raise("plateDock");
    auto &plates = widget<QTreeView>("plateTree");

    EXPECT_FALSE(drop(*plates.viewport(), plates.viewport()->rect().center(), *dragged({chair})));
    ASSERT_TRUE(drop(*plates.viewport(), plates.viewport()->rect().center(), *dragged({logo})));
    EXPECT_THAT(childNames(kxSceneplateUtils::getSceneplateRoot()), ElementsAre("Logo"));
    undo();

    EXPECT_EQ(kxSceneplateUtils::getSceneplateRoot()->getNChildren(), 0U);
}

TEST_F(MainWindowSceneTest, SavesNodesThatAreDroppedOnAFolder)
{
    addChair("Chair");
    open();
    const QModelIndex row = rowOf(sceneTree(), "Chair");
    const std::unique_ptr<QMimeData> nodes(sceneTree().model()->mimeData({row}));

    ASSERT_TRUE(dropOnFolder(path(), *nodes));
    ASSERT_THAT(names(), ElementsAre("Chair"));
    EXPECT_EQ(window->libraries().assets().entry(0).category, Geometry);
    EXPECT_THAT(childNames(root()), Contains("Chair")); // it stays where it is
    undo();
    EXPECT_TRUE(names().empty());
    EXPECT_EQ(Trash(path()).entries().size(), 1U);
    pressRedo();
    settle();

    EXPECT_THAT(names(), ElementsAre("Chair"));
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowSceneTest, SavesMaterialsThatAreDroppedOnAFolder)
{
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);
    press(Qt::Key_Return, Qt::ControlModifier);
    settle();
    auto &list = widget<QListView>("materialList");
    ASSERT_EQ(list.model()->rowCount(), 1);
    QDir(directoryOf(oak)).removeRecursively();
    window->libraries().refresh();
    settle();
    ASSERT_TRUE(names().empty());
    const std::unique_ptr<QMimeData> materials(list.model()->mimeData({list.model()->index(0, 0)}));

    ASSERT_TRUE(dropOnFolder(path(), *materials));
    EXPECT_THAT(names(), ElementsAre("Oak"));
    undo();

    EXPECT_TRUE(names().empty());
}

TEST_F(MainWindowSceneTest, FramesWhatIsSelectedInTheSceneTree)
{
    const osg::NodePtr near = addChair("Near");
    const osg::NodePtr far = addChair("Far");
    {
        const auto place = osg::Transform3DPtr::dcast(far->getCore());
        const osg::CPEditor edit(place, osg::Transform3D::TranslationFieldMask);
        place->setTranslation({50, 0, 0});
    }
    open();
    look();
    const int sizeBefore = sizeOf(near->getChild(0));

    clickItem(sceneTree(), rowOf(sceneTree(), "Near"));
    press(Qt::Key_F);
    settle();

    EXPECT_GT(sizeOf(near->getChild(0)), 100 * (sizeBefore + 1)) << "it was a spot beside a wide gap";
}

TEST_F(MainWindowSceneTest, BringsAssetsIntoTheSceneByEnterAndDoubleClick)
{
    const std::string chair = storeGeometry("Stool");
    open();
    clickAsset(chair);

    press(Qt::Key_Return);
    settle();
    EXPECT_THAT(childNames(root()), Contains("Stool"));
    undo();
    QAbstractItemView &view = window->browser().view();
    const QPoint place = view.visualRect(window->libraries().assets().indexOf(chair)).center();
    doubleClick(*view.viewport(), place);
    settle();

    EXPECT_THAT(childNames(root()), Contains("Stool"));
}

TEST_F(MainWindowSceneTest, SavesTheScenesCopyOverTheAssetAfterAsking)
{
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);
    press(Qt::Key_Return, Qt::ControlModifier);
    settle();
    const osg::MaterialPtr material = kxMaterials::findAssetMaterial(oak);
    ASSERT_TRUE(material);
    kxMaterials::setName(material, "Bog oak", false);
    auto answer = QMessageBox::Cancel;
    int asked = 0;
    kxModalQuestion::setAnswerer([&](const kxModalQuestion::Question &question) {
        asked += question.text.contains("will be replaced by what the scene has");
        return answer;
    });
    QAction *overwrite = nullptr;
    for (QAction *action : widget<QMenu>("assetMenu").actions())
        if (action->text().contains("over it"))
            overwrite = action;
    ASSERT_NE(overwrite, nullptr);
    clickAsset(oak);

    overwrite->trigger();
    settle();
    EXPECT_THAT(names(), ElementsAre("Oak"));
    answer = QMessageBox::Save;
    overwrite->trigger();
    settle();

    EXPECT_EQ(asked, 2);
    EXPECT_THAT(names(), ElementsAre("Bog oak"));
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowSceneTest, SaysThatTheSceneHasNoCopy)
{
    const std::string oak = storeMaterial("Oak");
    open();

    window->scene().overwrite({id(oak)}, window->libraries().assetActions());

    EXPECT_EQ(reported(), "The scene has no copy of these assets.");
}

TEST_F(MainWindowSceneTest, RenamesNodesInTheTreeByF2)
{
    const osg::NodePtr chair = addChair("Chair");
    open();
    clickItem(sceneTree(), rowOf(sceneTree(), "Chair"));

    press(Qt::Key_F2);
    type("Stool");
    press(Qt::Key_Return);

    EXPECT_EQ(kxNodeUtils::getName(chair), "Stool");
}

TEST_F(MainWindowSceneTest, DeletesNodesAndNoAssetsWhereTheTreeHasTheFocus)
{
    addChair("Chair");
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);
    clickItem(sceneTree(), rowOf(sceneTree(), "Chair"));

    press(Qt::Key_Delete);
    settle();

    EXPECT_THAT(childNames(root()), Not(Contains("Chair")));
    EXPECT_THAT(names(), ElementsAre("Oak"));
}

TEST_F(MainWindowSceneTest, DeletesNodesAndNoAssetsWhereThePictureHasTheFocus)
{
    const osg::NodePtr chair = addChair("Chair");
    const std::string oak = storeMaterial("Oak");
    open();
    look();
    clickAsset(oak);
    click(view(), placeOf(chair->getChild(0)));
    view().setFocus();

    press(Qt::Key_Delete);
    settle();

    EXPECT_THAT(names(), ElementsAre("Oak"));
    EXPECT_THAT(childNames(chair), Not(Contains("Seat")));
}

TEST_F(MainWindowSceneTest, SavesSelectedObjectsAndMaterialsByTheKeyboard)
{
    open();
    const osg::NodePtr chair = addChair("Chair");
    kxSelectionManager::selectNodes({chair});

    press(Qt::Key_O, Qt::ControlModifier | Qt::ShiftModifier);
    settle();

    EXPECT_THAT(names(), ElementsAre("Chair"));
    press(Qt::Key_M, Qt::ControlModifier | Qt::ShiftModifier); // no material is selected
    settle();
    EXPECT_THAT(names(), ElementsAre("Chair"));
    window->undoStack().undo();
    EXPECT_TRUE(names().empty());
}

} // namespace
