// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/EnvironmentPanel.h"

#include "AssetManager/DragData.h"
#include "AssetManager/EnvironmentListModel.h"
#include "Kernel/kxDefaultEnvironment.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxScenegraph.h"
#include "SceneFixture.h"

#include <QListView>
#include <QTest>

#include <gmock/gmock.h>

namespace {

class EnvironmentPanelTest : public SceneFixture
{
protected:
    static std::string currentEnvironment()
    {
        return kxMaterials::getName(kxDefaultEnvironment::getSwitch()->getCurrentMaterial());
    }
};

TEST_F(EnvironmentPanelTest, SwitchesTheEnvironmentWithEnterAndTakesDroppedOnes)
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

TEST_F(EnvironmentPanelTest, KeepsTheDefaultEnvironment)
{
    EnvironmentPanel panel(actions);
    panel.show();
    process(); // shortcuts need a window that is active
    panel.view().setCurrentIndex(panel.model().index(0, 0));

    QTest::keyClick(&panel.view(), Qt::Key_Delete);

    EXPECT_EQ(failures, QStringList("\"Default Environment\" belongs to every scene and stays where it is."));
}

TEST_F(EnvironmentPanelTest, LoadsWhatIsDroppedWithThePointer)
{
    EnvironmentPanel panel(actions);
    panel.show();
    process();
    QMimeData data;
    DragData::setAssets(data, {{Environment, storeEnvironment("Dawn")}});

    dropAt(panel.view(), panel.view().viewport()->rect().center(), data);

    EXPECT_EQ(shown(panel.model()), (QStringList{"Sky", "Dawn"}));
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(loaded.size(), 1);
}

TEST_F(EnvironmentPanelTest, RefusesWhatBelongsElsewhere)
{
    EnvironmentPanel panel(actions);
    QMimeData data;
    DragData::setAssets(data, {{Geometry, storeGeometry("Chair")}});

    EXPECT_FALSE(drop(panel.model(), data, -1, {}));
}

TEST_F(EnvironmentPanelTest, StandsTheLossOfTheDocument)
{
    EnvironmentPanel panel(actions);
    process();
    EXPECT_GT(panel.model().rowCount(), 0);

    kxScenegraph::closeDocument();
    process();

    EXPECT_EQ(panel.model().rowCount(), 0);
    kxScenegraph::newDocument();
    process();
    EXPECT_EQ(shown(panel.model()), QStringList{"Sky"});
}

} // namespace
