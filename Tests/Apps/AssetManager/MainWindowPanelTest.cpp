// SPDX-License-Identifier: Apache-2.0
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSceneplateUtils.h"
#include "Kernel/kxSelectionManager.h"
#include "SceneGraph/Sceneplate.h"
#include "WindowFixture.h"

#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QSpinBox>
#include <QTest>
#include <QTreeView>

#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

/// What a person does with mouse and keys in the lists beside the picture.
class MainWindowPanelTest : public WindowFixture
{
protected:
    QTreeView &sceneTree() { return widget<QTreeView>("sceneTree"); }
    QTreeView &plateTree() { return widget<QTreeView>("plateTree"); }
    QListView &environments() { return widget<QListView>("environmentList"); }
    QListView &materials() { return widget<QListView>("materialList"); }
    static std::string currentEnvironment()
    {
        return kxMaterials::getName(kxDefaultEnvironment::getSwitch()->getCurrentMaterial());
    }
    static std::vector<std::string> plates() { return childNames(kxSceneplateUtils::getSceneplateRoot()); }
    static std::vector<std::string> selected()
    {
        std::vector<std::string> found;
        for (const osg::NodePtr &node : kxSelectionManager::getSelectedNodes())
            found.push_back(kxNodeUtils::getName(node));
        return found;
    }
    /// Brings it into the scene.
    /// In the line that appears where a name stood.
    void typeName(const QString &name)
    {
        type(name);
        press(Qt::Key_Return);
    }
};

TEST_F(MainWindowPanelTest, SwitchesRenamesAndRemovesEnvironmentsByTheKeyboard)
{
    const std::string dawn = storeEnvironment("Dawn");
    open();
    load(dawn);
    raise("environmentDock");
    clickItem(environments(), rowOf(environments(), "Sky"));

    press(Qt::Key_Return);
    EXPECT_EQ(currentEnvironment(), "Sky");
    press(Qt::Key_Down);
    press(Qt::Key_F2);
    typeName("Dusk");
    EXPECT_EQ(shown(*environments().model()), (QStringList{"Sky", "Dusk"}));
    press(Qt::Key_Delete);
    EXPECT_EQ(shown(*environments().model()), QStringList{"Sky"});
    undo();
    undo();
    EXPECT_EQ(shown(*environments().model()), (QStringList{"Sky", "Dawn"}));
    undo();

    EXPECT_EQ(currentEnvironment(), "Dawn");
}

TEST_F(MainWindowPanelTest, SwitchesTheEnvironmentByItsMenu)
{
    const std::string dawn = storeEnvironment("Dawn");
    open();
    load(dawn);
    raise("environmentDock");
    QWidget &viewport = *environments().viewport();
    const auto placeOf = [&](const char *name) {
        return environments().visualRect(rowOf(environments(), name)).center();
    };

    openMenu(viewport, placeOf("Sky"), [this](QMenu &menu) { clickInMenu(menu, "Light the Scene with It"); });
    EXPECT_EQ(currentEnvironment(), "Sky");
    openMenu(viewport, placeOf("Dawn"), [this](QMenu &menu) { pressInMenu(menu, "Remove from the Scene"); });

    EXPECT_EQ(shown(*environments().model()), QStringList{"Sky"});
}

TEST_F(MainWindowPanelTest, OrdersPlatesByTheMouse)
{
    addPlate("Logo");
    addPlate("Frame");
    open();
    raise("plateDock");
    const QRect first = plateTree().visualRect(rowOf(plateTree(), "Logo"));

    dragItem(plateTree(), rowOf(plateTree(), "Frame"), *plateTree().viewport(), first.topLeft() + QPoint(30, 1));
    EXPECT_THAT(plates(), ElementsAre("Frame", "Logo"));
    undo();
    EXPECT_THAT(plates(), ElementsAre("Logo", "Frame"));
    pressRedo();

    EXPECT_THAT(plates(), ElementsAre("Frame", "Logo"));
}

TEST_F(MainWindowPanelTest, HidesRenamesAndRemovesPlatesByTheKeyboard)
{
    addPlate("Logo");
    addPlate("Frame");
    open();
    raise("plateDock");
    clickItem(plateTree(), rowOf(plateTree(), "Logo"));

    press(Qt::Key_Down);
    press(Qt::Key_Space);
    EXPECT_EQ(rowOf(plateTree(), "Frame").data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
    EXPECT_EQ(rowOf(plateTree(), "Logo").data(Qt::CheckStateRole).toInt(), Qt::Checked);
    press(Qt::Key_F2);
    typeName("Border");
    EXPECT_THAT(plates(), ElementsAre("Logo", "Border"));
    press(Qt::Key_Delete);
    EXPECT_THAT(plates(), ElementsAre("Logo"));
    undo();

    EXPECT_THAT(plates(), ElementsAre("Logo", "Border"));
}

TEST_F(MainWindowPanelTest, TakesTheOpacityOfAPlateThatIsTyped)
{
    const osg::NodePtr logo = addPlate("Logo");
    open();
    raise("plateDock");
    const QModelIndex cell = rowOf(plateTree(), "Logo").siblingAtColumn(plateTree().model()->columnCount() - 1);
    clickItem(plateTree(), cell);

    clickItem(plateTree(), cell); // what is selected is edited by a click
    ASSERT_TRUE(QTest::qWaitFor([this] { return plateTree().findChild<QSpinBox *>() != nullptr; }, Patience));
    press(Qt::Key_A, Qt::ControlModifier);
    typeName("25");

    EXPECT_EQ(osg::SceneplatePtr::dcast(logo->getCore())->getOpacity(), 0.25F);
    EXPECT_EQ(cell.data().toString(), "25 %");
}

TEST_F(MainWindowPanelTest, TakesMaterialsIntoTheirListAndGivesThemToObjects)
{
    const osg::NodePtr seat = addChair("Chair")->getChild(0);
    const std::string oak = storeMaterial("Oak");
    open();
    sceneTree().expandAll();
    raise("materialDock");

    dragAssets({oak}, *materials().viewport(), materials().viewport()->rect().center());
    EXPECT_EQ(shown(*materials().model()), QStringList{"Oak"});
    EXPECT_EQ(materialOf(seat), nullptr);
    dragItem(materials(), rowOf(materials(), "Oak"), *sceneTree().viewport(),
             sceneTree().visualRect(rowOf(sceneTree(), "Seat")).center());
    EXPECT_EQ(materialNameOf(seat), "Oak");
    undo();

    EXPECT_EQ(materialOf(seat), nullptr);
}

TEST_F(MainWindowPanelTest, RenamesMaterialsAndSelectsTheirUsersByTheKeyboard)
{
    addChair("Chair");
    const std::string oak = storeMaterial("Oak");
    open();
    clickItem(sceneTree(), rowOf(sceneTree(), "Chair"));
    load(oak); // for what is selected
    clickItem(sceneTree(), rowOf(sceneTree(), "Camera"));
    raise("materialDock");
    clickItem(materials(), rowOf(materials(), "Oak"));

    openMenuByKey([this](QMenu &menu) { pressInMenu(menu, "Select Users"); });
    EXPECT_THAT(selected(), ElementsAre("Seat"));
    press(Qt::Key_F2);
    typeName("Bog oak");

    EXPECT_EQ(shown(*materials().model()), QStringList{"Bog oak"});
    undo();
    EXPECT_EQ(shown(*materials().model()), QStringList{"Oak"});
}

TEST_F(MainWindowPanelTest, FindsObjectsByTyping)
{
    addChair("Chair");
    addChair("Table");
    open();
    QWidget &panel = *sceneTree().parentWidget();
    auto &filter = *panel.findChild<QLineEdit *>("filter");

    click(filter, filter.rect().center());
    type("tab");
    EXPECT_EQ(shown(*sceneTree().model()), QStringList{"Table"});
    clickItem(sceneTree(), rowOf(sceneTree(), "Table"));
    EXPECT_THAT(selected(), ElementsAre("Table"));
    click(filter, filter.rect().center());
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_Delete);

    EXPECT_THAT(shown(*sceneTree().model()), Contains("Chair"));
    EXPECT_THAT(childNames(root()), Contains("Table")) << "the key was for the line";
}

TEST_F(MainWindowPanelTest, SelectsOpensAndGroupsObjectsByTheKeyboard)
{
    const osg::NodePtr chair = addChair("Chair");
    addChair("Table");
    open();
    clickItem(sceneTree(), rowOf(sceneTree(), "Chair"));

    press(Qt::Key_Right);
    EXPECT_TRUE(sceneTree().isExpanded(rowOf(sceneTree(), "Chair")));
    press(Qt::Key_Down);
    EXPECT_THAT(selected(), ElementsAre("Seat"));
    press(Qt::Key_Up);
    press(Qt::Key_Left);
    press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_THAT(selected(), ElementsAre("Chair", "Table"));
    press(Qt::Key_G, Qt::ControlModifier);
    EXPECT_THAT(selected(), ElementsAre("Group"));
    EXPECT_THAT(childNames(chair->getParent()), ElementsAre("Chair", "Table"));
    undo();

    EXPECT_EQ(chair->getParent(), root());
}

TEST_F(MainWindowPanelTest, PutsObjectsIntoOthersByTheMouse)
{
    const osg::NodePtr chair = addChair("Chair");
    const osg::NodePtr room = addChair("Room");
    open();

    dragItem(sceneTree(), rowOf(sceneTree(), "Chair"), *sceneTree().viewport(),
             sceneTree().visualRect(rowOf(sceneTree(), "Room")).center());
    EXPECT_EQ(chair->getParent(), room);
    EXPECT_THAT(selected(), ElementsAre("Chair"));
    undo();

    EXPECT_EQ(chair->getParent(), root());
}

TEST_F(MainWindowPanelTest, OffersWhatCanBeDoneWithAnObject)
{
    const osg::NodePtr chair = addChair("Chair");
    addChair("Table");
    open();
    const auto placeOf = [this](const char *name) { return sceneTree().visualRect(rowOf(sceneTree(), name)).center(); };

    openMenu(*sceneTree().viewport(), placeOf("Chair"), [this](QMenu &menu) { clickInMenu(menu, "Rename"); });
    typeName("Stool");
    EXPECT_EQ(kxNodeUtils::getName(chair), "Stool");
    clickItem(sceneTree(), rowOf(sceneTree(), "Table"));
    openMenuByKey([this](QMenu &menu) { pressInMenu(menu, "Delete"); });

    EXPECT_THAT(childNames(root()), Not(Contains("Table")));
    EXPECT_THAT(childNames(root()), Contains("Stool"));
    EXPECT_THAT(selected(), IsEmpty());
}

} // namespace
