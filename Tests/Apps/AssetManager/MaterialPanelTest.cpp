// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/MaterialPanel.h"

#include "AssetManager/DragData.h"
#include "AssetManager/MaterialListModel.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSelectionManager.h"
#include "SceneFixture.h"
#include "SceneGraph/UBRDFMaterial.h"

#include <QLabel>
#include <QListView>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

class MaterialPanelTest : public SceneFixture
{};

TEST_F(MaterialPanelTest, ListsTheMaterialsOfTheSceneAndLoadsDroppedOnes)
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

TEST_F(MaterialPanelTest, RendersThePictureOfAMaterialWithoutOneLater)
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

TEST_F(MaterialPanelTest, TellsWhichMaterialsAreSelectedAndSelectsTheirUsers)
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

TEST_F(MaterialPanelTest, LoadsWhatIsDroppedWithThePointer)
{
    MaterialPanel panel(actions);
    panel.show();
    process();
    QMimeData data;
    DragData::setAssets(data, {{Material, storeMaterial("Blue")}});

    dropAt(panel.view(), panel.view().viewport()->rect().center(), data);

    EXPECT_EQ(shown(panel.model()), QStringList{"Blue"});
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(loaded.size(), 1);
}

TEST_F(MaterialPanelTest, RefusesWhatBelongsElsewhere)
{
    MaterialPanel panel(actions);
    QMimeData data;
    DragData::setAssets(data, {{Geometry, storeGeometry("Chair")}});

    EXPECT_FALSE(drop(panel.model(), data, -1, {}));
}

TEST_F(MaterialPanelTest, StandsTheLossOfTheDocument)
{
    MaterialPanel panel(actions);
    actions.assignMaterial(storeMaterial("Red"), {addChair("Chair")});
    process();
    EXPECT_GT(panel.model().rowCount(), 0);

    kxScenegraph::closeDocument();
    process();

    EXPECT_EQ(panel.model().rowCount(), 0);
    kxScenegraph::newDocument();
    process();
}

} // namespace
