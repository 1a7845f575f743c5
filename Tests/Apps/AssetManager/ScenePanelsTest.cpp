// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/DragData.h"
#include "AssetManager/EnvironmentListModel.h"
#include "AssetManager/EnvironmentPanel.h"
#include "AssetManager/MaterialListModel.h"
#include "AssetManager/MaterialPanel.h"
#include "AssetManager/PlateModel.h"
#include "AssetManager/PlatePanel.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSceneplateUtils.h"
#include "Kernel/kxSelectionManager.h"
#include "SceneFixture.h"
#include "SceneGraph/Sceneplate.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <QLabel>
#include <QListView>
#include <QSignalSpy>
#include <QTest>
#include <QTreeView>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

class ScenePanelsTest : public SceneFixture
{
protected:
    static QStringList shown(const QAbstractItemModel &model)
    {
        QStringList names;
        for (int row = 0; row < model.rowCount(); ++row)
            names.append(model.index(row, 0).data().toString());
        return names;
    }
    static std::string currentEnvironment()
    {
        return kxMaterials::getName(kxDefaultEnvironment::getSwitch()->getCurrentMaterial());
    }
};

TEST_F(ScenePanelsTest, ListsTheMaterialsOfTheSceneAndLoadsDroppedOnes)
{
    MaterialPanel panel(actions);
    panel.show();
    EXPECT_TRUE(panel.findChild<QLabel *>("emptyHint")->isVisible());
    const osg::NodePtr chair = addChair("Chair");
    actions.assignMaterial(storeMaterial("Red"), {chair});
    process();
    EXPECT_EQ(shown(panel.model()), QStringList{"Red"});
    QMimeData data;
    DragData::setAssets(data, {{Material, storeMaterial("Blue")}});

    EXPECT_TRUE(drop(panel.model(), data, -1, {}));

    EXPECT_EQ(shown(panel.model()), (QStringList{"Blue", "Red"}));
    EXPECT_FALSE(panel.findChild<QLabel *>("emptyHint")->isVisible());
    stack.undo();
    process();
    EXPECT_EQ(shown(panel.model()), QStringList{"Red"});
}

TEST_F(ScenePanelsTest, RendersThePictureOfAMaterialWithoutOneLater)
{
    const osg::FCRef<osg::Material> plain(osg::UBRDFMaterial::create());
    kxScenegraph::addToMaterialPool(plain.get());
    MaterialListModel model(actions);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    const qint64 before = model.index(0).data(Qt::DecorationRole).value<QIcon>().cacheKey();

    ASSERT_TRUE(changed.wait(30000));

    const QIcon picture = model.index(0).data(Qt::DecorationRole).value<QIcon>();
    EXPECT_NE(picture.cacheKey(), before);
    EXPECT_EQ(picture.availableSizes(), QList<QSize>{QSize(96, 96)});
    changed.clear();
    actions.setField({plain.get().getFieldContainerId()}, "DiffuseColor", osg::Vec4f{{1, 0, 0, 1}}, "Colour");
    bool isRendered = false;
    while (!isRendered && changed.wait(30000))
        isRendered =
            model.index(0).data(Qt::DecorationRole).value<QIcon>().pixmap(96).toImage() != picture.pixmap(96).toImage();
    EXPECT_TRUE(isRendered) << "the picture follows the material";
}

TEST_F(ScenePanelsTest, TellsWhichMaterialsAreSelectedAndSelectsTheirUsers)
{
    const osg::NodePtr chair = addChair("Chair");
    addChair("Other");
    actions.assignMaterial(storeMaterial("Red"), {chair});
    MaterialPanel panel(actions);
    panel.show();
    QSignalSpy selected(&panel, &MaterialPanel::materialsSelected);

    panel.view().setCurrentIndex(panel.model().index(0));
    panel.selectUsers();

    const quint32 red = materialOf(chair->getChild(0)).getFieldContainerId();
    ASSERT_GE(selected.count(), 1);
    EXPECT_EQ(selected.last()[0].value<QVector<quint32>>(), QVector<quint32>{red});
    EXPECT_THAT(kxSelectionManager::getSelectedNodes(), ElementsAre(chair->getChild(0)));
    const std::unique_ptr<QMimeData> data(panel.model().mimeData({panel.model().index(0)}));
    EXPECT_EQ(DragData::materials(*data), std::vector<std::uint32_t>{red});
}

TEST_F(ScenePanelsTest, SwitchesTheEnvironmentWithEnterAndTakesDroppedOnes)
{
    EnvironmentPanel panel(actions);
    panel.show();
    QMimeData data;
    DragData::setAssets(data, {{Environment, storeEnvironment("Dawn")}});

    EXPECT_TRUE(drop(panel.model(), data, -1, {}));

    EXPECT_EQ(shown(panel.model()), (QStringList{"Sky", "Dawn"}));
    EXPECT_EQ(panel.model().index(1, 0).data(Qt::AccessibleTextRole).toString(), "Dawn, lights the scene");
    panel.view().setCurrentIndex(panel.model().index(0, 0));
    QTest::keyClick(&panel.view(), Qt::Key_Return);
    process();
    EXPECT_EQ(currentEnvironment(), "Sky");
    EXPECT_TRUE(panel.model().index(0, 0).data(Qt::FontRole).value<QFont>().bold());
    panel.view().setCurrentIndex(panel.model().index(1, 0));
    QTest::keyClick(&panel.view(), Qt::Key_Delete);
    process();
    EXPECT_EQ(shown(panel.model()), QStringList{"Sky"});
    stack.undo();
    process();
    EXPECT_EQ(shown(panel.model()), (QStringList{"Sky", "Dawn"}));
}

TEST_F(ScenePanelsTest, KeepsTheDefaultEnvironment)
{
    EnvironmentPanel panel(actions);
    panel.show();
    process(); // shortcuts need a window that is active
    panel.view().setCurrentIndex(panel.model().index(0, 0));

    QTest::keyClick(&panel.view(), Qt::Key_Delete);

    EXPECT_EQ(failures, QStringList("\"Default Environment\" belongs to every scene and stays where it is."));
}

TEST_F(ScenePanelsTest, ShowsHidesAndOrdersPlates)
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

TEST_F(ScenePanelsTest, RefusesWhatBelongsElsewhere)
{
    PlateModel plates(actions);
    EnvironmentListModel environments(actions);
    MaterialListModel materials(actions);
    QMimeData data;
    DragData::setAssets(data, {{Geometry, storeGeometry("Chair")}});

    EXPECT_FALSE(drop(plates, data, -1, {}));
    EXPECT_FALSE(drop(environments, data, -1, {}));
    EXPECT_FALSE(drop(materials, data, -1, {}));
    DragData::setNodes(data, {addChair("Chair").getFieldContainerId()});
    EXPECT_FALSE(drop(plates, data, -1, {})) << "a node of the scene is no plate";
}

TEST_F(ScenePanelsTest, StandTheLossOfTheDocument)
{
    MaterialPanel materials(actions);
    EnvironmentPanel environments(actions);
    PlatePanel plates(actions);
    addPlate("Logo");
    actions.assignMaterial(storeMaterial("Red"), {addChair("Chair")});
    process();

    kxScenegraph::closeDocument();
    process();

    EXPECT_EQ(materials.model().rowCount(), 0);
    EXPECT_EQ(environments.model().rowCount(), 0);
    EXPECT_EQ(plates.model().rowCount(), 0);
    kxScenegraph::newDocument();
    process();
    EXPECT_EQ(shown(environments.model()), QStringList{"Sky"});
}

} // namespace
