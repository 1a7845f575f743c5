// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxSceneplateUtils.h"
#include "Kernel/kxSelectionManager.h"
#include "SceneGraph/Sceneplate.h"
#include "WindowFixture.h"

#include <QDir>
#include <QListView>
#include <QMenu>
#include <QSpinBox>
#include <QTest>
#include <QTreeView>

#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

/// What mice do by dragging, done by keys and menus.
class MainWindowKeyboardTest : public WindowFixture
{
protected:
    QTreeView &sceneTree() { return widget<QTreeView>("sceneTree"); }
    QTreeView &plateTree() { return widget<QTreeView>("plateTree"); }
    QListView &materials() { return widget<QListView>("materialList"); }
    static std::vector<std::string> plates() { return childNames(kxSceneplateUtils::getSceneplateRoot()); }
    /// Without those that belong to every scene.
    static std::vector<std::string> objects()
    {
        std::vector<std::string> names;
        for (const std::string &name : childNames(root()))
            if (name.rfind("My ", 0) == 0)
                names.push_back(name);
        return names;
    }
    static std::vector<std::string> selected()
    {
        std::vector<std::string> found;
        for (const osg::NodePtr &node : kxSelectionManager::getSelectedNodes())
            found.push_back(kxNodeUtils::getName(node));
        return found;
    }
    void choose(QAbstractItemView &view, const QString &name) { clickItem(view, rowOf(view, name)); }
};

TEST_F(MainWindowKeyboardTest, OrdersPlates)
{
    for (const char *name : {"Logo", "Frame", "Sky"})
        addPlate(name);
    open();
    raise("plateDock");
    choose(plateTree(), "Logo");

    press(Qt::Key_Down, Qt::ShiftModifier);
    press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_THAT(plates(), ElementsAre("Sky", "Logo", "Frame"));
    EXPECT_THAT(selected(), ElementsAre("Logo", "Frame"));
    press(Qt::Key_Down, Qt::AltModifier); // there is nothing below
    EXPECT_THAT(plates(), ElementsAre("Sky", "Logo", "Frame"));
    undo();
    EXPECT_THAT(plates(), ElementsAre("Logo", "Frame", "Sky"));
    choose(plateTree(), "Sky");
    press(Qt::Key_Up, Qt::AltModifier);
    EXPECT_THAT(plates(), ElementsAre("Logo", "Sky", "Frame"));
    press(Qt::Key_Up, Qt::AltModifier);
    EXPECT_THAT(plates(), ElementsAre("Sky", "Logo", "Frame"));
    openMenuByKey([this](QMenu &menu) { pressInMenu(menu, "Move Down"); });

    EXPECT_THAT(plates(), ElementsAre("Logo", "Sky", "Frame"));
}

TEST_F(MainWindowKeyboardTest, CutsObjectsAndPastesThemBelowAnother)
{
    const osg::NodePtr chair = addChair("My chair");
    const osg::NodePtr table = addChair("My table");
    const osg::NodePtr room = addChair("My room");
    open();
    choose(sceneTree(), "My chair");

    press(Qt::Key_Down, Qt::ShiftModifier);
    press(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(chair->getParent(), root()) << "it stays until it is pasted";
    press(Qt::Key_Down);
    ASSERT_THAT(selected(), ElementsAre("My room"));
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(chair->getParent(), room);
    EXPECT_EQ(table->getParent(), room);
    EXPECT_THAT(childNames(room), ElementsAre("Seat", "My chair", "My table"));
    EXPECT_THAT(selected(), ElementsAre("My chair", "My table"));
    undo();

    EXPECT_THAT(objects(), ElementsAre("My chair", "My table", "My room"));
}

TEST_F(MainWindowKeyboardTest, ShowsFaintlyWhatIsCut)
{
    addChair("My chair");
    addChair("My room");
    open();
    const auto brush = [this](const char *name) { return rowOf(sceneTree(), name).data(Qt::ForegroundRole); };
    choose(sceneTree(), "My chair");

    press(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(brush("My chair"), sceneTree().palette().brush(QPalette::Disabled, QPalette::Text));
    EXPECT_FALSE(brush("My room").isValid());
    choose(sceneTree(), "My room");
    press(Qt::Key_V, Qt::ControlModifier);

    EXPECT_FALSE(brush("My chair").isValid());
}

TEST_F(MainWindowKeyboardTest, PastesNothingThatWasDeletedMeanwhile)
{
    addChair("My chair");
    const osg::NodePtr room = addChair("My room");
    open();
    choose(sceneTree(), "My chair");

    press(Qt::Key_X, Qt::ControlModifier);
    press(Qt::Key_Delete);
    choose(sceneTree(), "My room");
    press(Qt::Key_V, Qt::ControlModifier);

    EXPECT_THAT(childNames(room), ElementsAre("Seat"));
    EXPECT_THAT(objects(), ElementsAre("My room"));
}

TEST_F(MainWindowKeyboardTest, MovesObjectsOutOfTheirParent)
{
    const osg::NodePtr room = addChair("My room");
    const osg::NodePtr chair = addChair("My chair", room);
    addChair("My door");
    open();
    sceneTree().expandAll();
    choose(sceneTree(), "My chair");

    press(Qt::Key_Left, Qt::AltModifier);
    EXPECT_THAT(objects(), ElementsAre("My room", "My chair", "My door"));
    press(Qt::Key_Left, Qt::AltModifier); // there is nothing further out
    EXPECT_THAT(objects(), ElementsAre("My room", "My chair", "My door"));
    undo();
    EXPECT_EQ(chair->getParent(), room);
    openMenuByKey([this](QMenu &menu) { pressInMenu(menu, "Move Out of Its Parent"); });

    EXPECT_EQ(chair->getParent(), root());
}

TEST_F(MainWindowKeyboardTest, LoadsGeometryBelowTheSelectedObject)
{
    const osg::NodePtr room = addChair("My room");
    const std::string stool = storeGeometry("Stool");
    open();
    clickAsset(stool);
    press(Qt::Key_Return, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(takeReport(), "No object is selected that something could be loaded below.");
    choose(sceneTree(), "My room");

    clickAsset(stool);
    press(Qt::Key_Return, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_THAT(childNames(room), ElementsAre("Seat", "Stool"));
    undo();
    EXPECT_THAT(childNames(room), ElementsAre("Seat"));
    openMenuByKey([this](QMenu &menu) { pressInMenu(menu, "Load below the selected object"); });

    EXPECT_THAT(childNames(room), ElementsAre("Seat", "Stool"));
    EXPECT_THAT(childNames(root()), Not(Contains("Stool")));
}

TEST_F(MainWindowKeyboardTest, LoadsPlates)
{
    addPlate("Frame");
    const std::string logo = storePlate("Logo");
    open();

    clickAsset(logo);
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_THAT(plates(), ElementsAre("Frame", "Logo"));
    undo();
    EXPECT_THAT(plates(), ElementsAre("Frame"));
    raise("plateDock");
    choose(plateTree(), "Frame");
    clickAsset(logo);
    press(Qt::Key_Return, Qt::ControlModifier | Qt::ShiftModifier);

    EXPECT_THAT(plates(), ElementsAre("Frame", "Logo")) << "a plate holds no plates";
    EXPECT_THAT(childNames(root()), Not(Contains("Logo")));
}

TEST_F(MainWindowKeyboardTest, LoadsNoGeometryAmongThePlates)
{
    const osg::NodePtr frame = addPlate("Frame");
    const std::string stool = storeGeometry("Stool");
    open();
    raise("plateDock");
    choose(plateTree(), "Frame");

    clickAsset(stool);
    press(Qt::Key_Return, Qt::ControlModifier | Qt::ShiftModifier);

    EXPECT_EQ(frame->getNChildren(), 0U);
    EXPECT_THAT(childNames(root()), Contains("Stool"));
}

TEST_F(MainWindowKeyboardTest, GivesAMaterialOfTheSceneToTheSelectedObjects)
{
    const osg::NodePtr seat = addChair("My chair")->getChild(0);
    const osg::NodePtr other = addChair("My table")->getChild(0);
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);
    press(Qt::Key_Return, Qt::ControlModifier); // into the list, because nothing is selected
    raise("materialDock");
    choose(materials(), "Oak");
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(takeReport(), "No object is selected that could take the material.");
    choose(sceneTree(), "My chair");
    press(Qt::Key_Down, Qt::ShiftModifier);
    choose(materials(), "Oak");

    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(materialNameOf(seat), "Oak");
    EXPECT_EQ(materialNameOf(other), "Oak");
    undo();
    EXPECT_EQ(materialOf(seat), nullptr);
    EXPECT_EQ(materialOf(other), nullptr);
    openMenuByKey([this](QMenu &menu) { pressInMenu(menu, "Assign to the Selected Objects"); });

    EXPECT_EQ(materialNameOf(seat), "Oak");
    EXPECT_EQ(materialNameOf(other), "Oak");
}

TEST_F(MainWindowKeyboardTest, RenamesAMaterialByTheMenuOfItsList)
{
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);
    press(Qt::Key_Return, Qt::ControlModifier);
    raise("materialDock");
    choose(materials(), "Oak");

    openMenuByKey([this](QMenu &menu) { pressInMenu(menu, "Rename"); });
    type("Ash");
    press(Qt::Key_Return);

    EXPECT_EQ(shown(*materials().model()), QStringList{"Ash"});
}

TEST_F(MainWindowKeyboardTest, SavesMaterialsOfTheSceneIntoTheChosenFolder)
{
    storeMaterial("Oak"); // so that there is a library
    ASSERT_TRUE(QDir().mkpath(path("Woods")));
    const std::string ash = storeMaterial("Ash");
    open();
    clickAsset(ash);
    press(Qt::Key_Return, Qt::ControlModifier);
    clickFolder(path("Woods"));
    EXPECT_THAT(names(), ElementsAre());
    raise("materialDock");
    choose(materials(), "Ash");

    press(Qt::Key_M, Qt::ControlModifier | Qt::ShiftModifier);
    settle();

    EXPECT_THAT(names(), ElementsAre("Ash"));
    EXPECT_EQ(QDir(path("Woods")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 1);
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowKeyboardTest, ChangesTheOpacityOfPlates)
{
    const osg::SceneplatePtr logo = osg::SceneplatePtr::dcast(addPlate("Logo")->getCore());
    const osg::SceneplatePtr frame = osg::SceneplatePtr::dcast(addPlate("Frame")->getCore());
    open();
    raise("plateDock");
    choose(plateTree(), "Logo");
    press(Qt::Key_Down, Qt::ShiftModifier);

    press(Qt::Key_F2, Qt::ShiftModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return plateTree().findChild<QSpinBox *>() != nullptr; }, Patience));
    press(Qt::Key_A, Qt::ControlModifier);
    type("25");
    press(Qt::Key_Return);

    EXPECT_EQ(logo->getOpacity(), 0.25F);
    EXPECT_EQ(frame->getOpacity(), 0.25F);
    undo();
    EXPECT_EQ(logo->getOpacity(), 1.0F);
    EXPECT_EQ(frame->getOpacity(), 1.0F);
    openMenuByKey([this](QMenu &menu) { pressInMenu(menu, "Change Opacity"); });
    EXPECT_NE(plateTree().findChild<QSpinBox *>(), nullptr);
}

} // namespace
