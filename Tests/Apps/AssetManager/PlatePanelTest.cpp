// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/PlatePanel.h"

#include "AssetManager/DragData.h"
#include "AssetManager/PlateModel.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSceneplateUtils.h"
#include "SceneFixture.h"
#include "SceneGraph/Sceneplate.h"

#include <QLabel>
#include <QTest>
#include <QTreeView>

#include <gmock/gmock.h>

namespace {

class PlatePanelTest : public SceneFixture
{};

TEST_F(PlatePanelTest, ShowsHidesAndOrdersPlates)
{
    PlatePanel panel(actions);
    panel.show();
    EXPECT_TRUE(panel.findChild<QLabel *>("emptyHint")->isVisible());
    QMimeData data;
    DragData::setAssets(data, {{Sceneplate, storePlate("Logo")}});
    EXPECT_TRUE(drop(panel.model(), data, -1, {}));
    const osg::NodePtr frame = addPlate("Frame");
    process();
    EXPECT_EQ(shown(panel.model()), (QStringList{"Logo", "Frame"}));

    EXPECT_TRUE(panel.model().setData(panel.model().index(0, 0), Qt::Unchecked, Qt::CheckStateRole));
    EXPECT_TRUE(panel.model().setData(panel.model().index(0, PlateModel::OpacityColumn), 25, Qt::EditRole));
    QMimeData moved;
    DragData::setNodes(moved, {frame.getFieldContainerId()});
    EXPECT_TRUE(drop(panel.model(), moved, 0, {}));

    EXPECT_EQ(shown(panel.model()), (QStringList{"Frame", "Logo"}));
    EXPECT_EQ(panel.model().index(1, 0).data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
    EXPECT_EQ(panel.model().index(1, PlateModel::OpacityColumn).data().toString(), "25 %");
    const osg::NodePtr logo = kxSceneplateUtils::getSceneplateRoot()->getChild(1);
    EXPECT_EQ(osg::SceneplatePtr::dcast(logo->getCore())->getOpacity(), 0.25F);
    while (stack.canUndo())
        stack.undo();
    process();
    EXPECT_EQ(shown(panel.model()), QStringList{"Frame"}) << "it did not come by a step";
}

TEST_F(PlatePanelTest, LoadsWhatIsDroppedWithThePointer)
{
    PlatePanel panel(actions);
    panel.show();
    process();
    QMimeData data;
    DragData::setAssets(data, {{Sceneplate, storePlate("Logo")}});

    dropAt(panel.view(), panel.view().viewport()->rect().center(), data);

    EXPECT_EQ(shown(panel.model()), QStringList{"Logo"});
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(loaded.size(), 1);
}

TEST_F(PlatePanelTest, RefusesWhatBelongsElsewhere)
{
    PlatePanel panel(actions);
    QMimeData data;
    DragData::setAssets(data, {{Geometry, storeGeometry("Chair")}});

    EXPECT_FALSE(drop(panel.model(), data, -1, {}));
    DragData::setNodes(data, {addChair("Chair").getFieldContainerId()});
    EXPECT_FALSE(drop(panel.model(), data, -1, {})) << "a node of the scene is no plate";
}

TEST_F(PlatePanelTest, StandsTheLossOfTheDocument)
{
    PlatePanel panel(actions);
    addPlate("Logo");
    process();
    EXPECT_GT(panel.model().rowCount(), 0);

    kxScenegraph::closeDocument();
    process();

    EXPECT_EQ(panel.model().rowCount(), 0);
    kxScenegraph::newDocument();
    process();
}

} // namespace
