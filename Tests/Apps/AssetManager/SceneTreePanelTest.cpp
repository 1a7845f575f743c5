// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/SceneTreePanel.h"

#include "AssetManager/DragData.h"
#include "AssetManager/SceneTreeModel.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSelectionManager.h"
#include "SceneFixture.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Group.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QTreeView>

#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class SceneTreePanelTest : public SceneFixture
{
protected:
    SceneTreePanelTest()
    {
        panel.resize(300, 400);
        panel.show();
        process();
    }
    QModelIndex viewIndex(const osg::NodePtr &node) const { return panel.viewIndexOf(node.getFieldContainerId()); }
    QStringList shown(const QModelIndex &parent = {}) const
    {
        QStringList names;
        const QAbstractItemModel *model = panel.view().model();
        for (int row = 0; row < model->rowCount(parent); ++row)
            names.append(model->index(row, 0, parent).data().toString());
        return names;
    }
    void press(const osg::NodePtr &node, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        panel.view().scrollTo(viewIndex(node));
        QTest::mouseClick(panel.view().viewport(), Qt::LeftButton, modifiers,
                          panel.view().visualRect(viewIndex(node)).center());
    }
    /// As a drag from elsewhere ends over the row, or over the empty part of the view for null.
    void dropOn(const osg::NodePtr &node, const QMimeData &data) const
    {
        const QWidget *viewport = panel.view().viewport();
        const QPoint place = node ? panel.view().visualRect(viewIndex(node)).center()
                                  : QPoint(viewport->width() / 2, viewport->height() - 2);
        dropAt(panel.view(), place, data);
    }
    static std::vector<std::string> selected()
    {
        std::vector<std::string> names;
        for (const osg::NodePtr &node : kxSelectionManager::getSelectedNodes())
            names.push_back(kxNodeUtils::getName(node));
        return names;
    }
    QLabel *hint() const { return panel.findChild<QLabel *>("emptyHint"); }

    SceneTreePanel panel{actions};
};

TEST_F(SceneTreePanelTest, FollowsTheSceneAndKeepsWhatIsExpanded)
{
    EXPECT_EQ(shown(), (QStringList{"Environments", "Camera"}));
    EXPECT_TRUE(hint()->isVisible());
    const osg::NodePtr room = add(osg::Group::create(), root(), "Room");
    const osg::NodePtr chair = addChair("Chair", room);
    process();
    EXPECT_FALSE(hint()->isVisible());
    panel.view().expand(viewIndex(room));
    panel.view().expand(viewIndex(chair));

    actions.moveNodes({chair}, root(), 0);
    addChair("Table", room);
    process();

    EXPECT_EQ(shown(), (QStringList{"Chair", "Environments", "Camera", "Room"}));
    EXPECT_EQ(shown(viewIndex(room)), QStringList{"Table"});
    EXPECT_TRUE(panel.view().isExpanded(viewIndex(room)));
    EXPECT_TRUE(panel.view().isExpanded(viewIndex(chair))) << "it went to another place";
    stack.undo();
    process();
    EXPECT_EQ(shown(viewIndex(room)), (QStringList{"Chair", "Table"}));
}

TEST_F(SceneTreePanelTest, SelectsInBothDirections)
{
    const osg::NodePtr chair = addChair("Chair");
    const osg::NodePtr table = addChair("Table");
    process();

    press(chair);
    EXPECT_THAT(selected(), ElementsAre("Chair"));
    press(table, Qt::ControlModifier);
    EXPECT_THAT(selected(), ElementsAre("Chair", "Table"));
    kxSelectionManager::clear();
    EXPECT_TRUE(panel.view().selectionModel()->selectedRows().isEmpty());
    kxSelectionManager::selectNodes({table->getChild(0)});
    EXPECT_TRUE(panel.view().selectionModel()->isSelected(viewIndex(table->getChild(0))));
    EXPECT_TRUE(panel.view().isExpanded(viewIndex(table))) << "what is selected elsewhere is to be seen";
}

TEST_F(SceneTreePanelTest, KeepsTheSelectionOfWhatIsMovedAndFiltered)
{
    const osg::NodePtr room = add(osg::Group::create(), root(), "Room");
    const osg::NodePtr chair = addChair("Chair");
    process();
    press(chair);

    actions.moveNodes({chair}, room, -1);
    process();
    EXPECT_THAT(selected(), ElementsAre("Chair"));
    QTest::keyClicks(panel.findChild<QLineEdit *>("filter"), "cam");
    process();

    EXPECT_EQ(shown(), QStringList{"Camera"});
    EXPECT_THAT(selected(), ElementsAre("Chair"));
    panel.findChild<QLineEdit *>("filter")->clear();
    EXPECT_TRUE(panel.view().selectionModel()->isSelected(viewIndex(chair)));
}

TEST_F(SceneTreePanelTest, DeletesWithTheKeyAndUndoes)
{
    const osg::NodePtr chair = addChair("Chair");
    process();
    press(chair);

    QTest::keyClick(&panel.view(), Qt::Key_Delete);
    process();

    EXPECT_EQ(shown(), (QStringList{"Environments", "Camera"}));
    EXPECT_THAT(selected(), IsEmpty());
    stack.undo();
    process();
    EXPECT_EQ(shown(), (QStringList{"Environments", "Camera", "Chair"}));
}

TEST_F(SceneTreePanelTest, RenamesWithTheKey)
{
    const osg::NodePtr chair = addChair("Chair");
    process();
    press(chair);

    QTest::keyClick(&panel.view(), Qt::Key_F2);
    auto *editor = panel.view().findChild<QLineEdit *>();
    ASSERT_TRUE(editor);
    QTest::keyClicks(editor, "Stuhl f");
    QTest::keyClick(editor, Qt::Key_Return);
    process();

    EXPECT_EQ(kxNodeUtils::getName(chair), "Stuhl f");
    EXPECT_EQ(viewIndex(chair).data().toString(), "Stuhl f");
    EXPECT_EQ(stack.undoText(), "Rename to \"Stuhl f\"");
}

TEST_F(SceneTreePanelTest, GroupsAndFramesByItsActions)
{
    const osg::NodePtr chair = addChair("Chair");
    process();
    press(chair);
    const QSignalSpy framed(&panel, &NodeTreePanel::frameRequested);

    panel.findChild<QAction *>("frame")->trigger();
    panel.findChild<QAction *>("group")->trigger();
    process();

    EXPECT_EQ(framed.count(), 1);
    EXPECT_THAT(selected(), ElementsAre("Group"));
    EXPECT_EQ(shown(viewIndex(chair->getParent())), QStringList{"Chair"});
}

TEST_F(SceneTreePanelTest, LoadsDroppedGeometryOntoANodeAndIntoTheScene)
{
    const osg::NodePtr room = add(osg::Group::create(), root(), "Room");
    const std::string uuid = storeGeometry("Chair");
    process();
    QMimeData data;
    DragData::setAssets(data, {{Geometry, uuid}});

    dropOn(room, data);
    dropOn(nullptr, data);

    EXPECT_THAT(childNames(room), ElementsAre("Chair"));
    EXPECT_THAT(childNames(root()), Contains("Chair"));
    EXPECT_EQ(stack.count(), 2);
}

TEST_F(SceneTreePanelTest, AssignsADroppedMaterialToTheNodeUnderThePointerOnly)
{
    const osg::NodePtr chair = addChair("Chair");
    const std::string uuid = storeMaterial("Red");
    process();
    QMimeData data;
    DragData::setAssets(data, {{Material, uuid}});

    dropOn(nullptr, data);
    EXPECT_EQ(stack.count(), 0);
    dropOn(chair, data);

    EXPECT_EQ(materialNameOf(chair->getChild(0)), "Red");
}

TEST_F(SceneTreePanelTest, MovesDroppedNodesButNotIntoThemselves)
{
    const osg::NodePtr room = add(osg::Group::create(), root(), "Room");
    const osg::NodePtr chair = addChair("Chair");
    process();
    QMimeData data;
    DragData::setNodes(data, {chair.getFieldContainerId(), 4000000000U});

    dropOn(room, data);
    EXPECT_EQ(chair->getParent(), room);
    DragData::setNodes(data, {room.getFieldContainerId()});
    panel.view().expandAll();
    dropOn(chair, data);

    EXPECT_EQ(room->getParent(), root());
    EXPECT_EQ(stack.count(), 1);
}

TEST_F(SceneTreePanelTest, StandsTheLossOfTheDocument)
{
    const osg::NodePtr chair = addChair("Chair");
    process();
    press(chair);

    kxScenegraph::closeDocument();
    process();
    EXPECT_EQ(shown(), QStringList());
    kxScenegraph::newDocument();
    addChair("Other");
    process();

    EXPECT_EQ(shown(), (QStringList{"Environments", "Camera", "Other"}));
}

TEST_F(SceneTreePanelTest, ShowsWhetherAnObjectIsAsItsAsset)
{
    actions.loadGeometry({storeGeometry("Chair")}, nullptr);
    process();
    const osg::NodePtr chair = root()->getChild(root()->getNChildren() - 1);
    const QModelIndex state = viewIndex(chair).siblingAtColumn(NodeTreeModel::AssetColumn);

    EXPECT_EQ(state.data(Qt::ToolTipRole).toString(), "Same as the asset \"Chair\" in the library");
    EXPECT_FALSE(state.data(Qt::DecorationRole).isNull());
    actions.removeNodes({chair->getChild(0)});
    EXPECT_EQ(state.data(Qt::ToolTipRole).toString(), "Changed here; the asset \"Chair\" in the library is different");
    stack.undo();
    EXPECT_EQ(state.data(Qt::ToolTipRole).toString(), "Same as the asset \"Chair\" in the library");
}

} // namespace
