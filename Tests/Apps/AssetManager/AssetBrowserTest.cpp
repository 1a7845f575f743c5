// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"

#include "WindowFixture.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QTabBar>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

using AssetBrowserTest = WindowFixture;

} // namespace

TEST_F(AssetBrowserTest, OffersTheKindsAsAListWhereTheTabsFindNoRoom)
{
    storeMaterial("Oak");
    storeGeometry("Chair");
    open();
    auto &tabs = widget<QTabBar>("categories");
    auto &list = widget<QComboBox>("category");
    EXPECT_TRUE(tabs.isVisible());
    EXPECT_FALSE(list.isVisible());

    window->resize(900, 600);
    process();

    EXPECT_FALSE(tabs.isVisible());
    ASSERT_TRUE(list.isVisible());
    list.setFocus();
    press(Qt::Key_Down);
    EXPECT_THAT(names(), ElementsAre("Oak"));
    window->resize(1400, 900);
    process();
    EXPECT_TRUE(tabs.isVisible());
    EXPECT_EQ(tabs.currentIndex(), 1);
}

TEST_F(AssetBrowserTest, KeepsRoomForARowOfTilesInALowWindow)
{
    storeMaterial("Oak");
    open();

    window->resize(900, 600);
    process();

    QAbstractItemView &view = window->browser().view();
    EXPECT_TRUE(view.viewport()->rect().contains(view.visualRect(view.model()->index(0, 0))));
}
