// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetGrid.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/FolderTree.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/PreviewCache.h"
#include "AssetManager/SceneSide.h"
#include "AssetManager/SceneView.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxSelectionManager.h"
#include "SceneGraph/CameraCore.h"
#include "WindowFixture.h"

#include <QAbstractButton>
#include <QDir>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include <gmock/gmock.h>

#include <cmath>

namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

/// What a person does with tiles, chips, folders and the picture by mouse and keys.
class MainWindowBrowserTest : public WindowFixture
{
protected:
    QAbstractItemView &tiles() { return window->browser().view(); }
    QPoint placeOf(const std::string &uuid)
    {
        return tiles().visualRect(window->libraries().assets().indexOf(uuid)).center();
    }
    void addTags(const QString &tags)
    {
        auto &line = widget<QLineEdit>("newTag");
        click(line, line.rect().center());
        type(tags);
        press(Qt::Key_Return);
    }
};

TEST_F(MainWindowBrowserTest, SelectsSeveralByMouseAndKeys)
{
    const std::string ash = storeMaterial("Ash");
    const std::string oak = storeMaterial("Oak");
    const std::string yew = storeMaterial("Yew");
    open();
    const auto selected = [this] { return window->browser().selected(); };
    clickAsset(ash);

    clickAsset(yew, Qt::ShiftModifier);
    EXPECT_THAT(selected(), ElementsAre(ash, oak, yew));
    clickAsset(oak, Qt::ControlModifier);
    EXPECT_THAT(selected(), ElementsAre(ash, yew));
    clickAsset(ash);
    press(Qt::Key_Right);
    EXPECT_THAT(selected(), ElementsAre(oak));
    press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_THAT(selected(), ElementsAre(oak, yew));
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_THAT(selected(), ElementsAre(ash, oak, yew));
    press(Qt::Key_Home);

    EXPECT_THAT(selected(), ElementsAre(ash));
}

TEST_F(MainWindowBrowserTest, SelectsWhatAFrameIsDrawnAround)
{
    const std::string ash = storeMaterial("Ash");
    const std::string oak = storeMaterial("Oak");
    open();
    QWidget &viewport = *tiles().viewport();
    const QPoint below(viewport.width() - 5, viewport.height() - 5); // beside all tiles
    ASSERT_FALSE(tiles().indexAt(below).isValid());

    dragMouse(viewport, below, viewport, placeOf(ash));

    EXPECT_THAT(window->browser().selected(), UnorderedElementsAre(ash, oak));
    EXPECT_FALSE(window->undoStack().canUndo());
}

TEST_F(MainWindowBrowserTest, MarksFavouritesByTheStar)
{
    const std::string oak = storeMaterial("Oak");
    storeMaterial("Steel");
    open();
    clickAsset(oak);

    clickButton("favourite");
    clickButton("favourites");
    EXPECT_THAT(names(), ElementsAre("Oak"));
    clickAsset(oak);
    clickButton("favourite");

    EXPECT_THAT(names(), testing::IsEmpty());
}

TEST_F(MainWindowBrowserTest, NarrowsDownByATagOfTheMenu)
{
    const std::string oak = storeMaterial("Oak");
    const std::string ash = storeMaterial("Ash");
    storeMaterial("Steel");
    open();
    clickAsset(oak);
    addTags("wood brown old heavy dear north south");
    clickAsset(ash);
    addTags("wood brown old heavy dear north");
    QPushButton *more = nullptr;
    const auto isThere = [&] {
        more = widget<QWidget>("tagBar").findChild<QPushButton *>(QString(), Qt::FindDirectChildrenOnly);
        return more && more->isVisible() && more->menu()->actions().last()->text() == "south (1)";
    };
    ASSERT_TRUE(QTest::qWaitFor(isThere, Patience)) << "six have buttons, or fewer";
    process(); // and has its place

    useMenu([&] { input.click(more->mapToGlobal(more->rect().center()), Qt::LeftButton, Qt::NoModifier); },
            [this](QMenu &opened) { clickInMenu(opened, "south (1)"); });
    EXPECT_THAT(names(), ElementsAre("Oak"));
    clickButton("tag:south");

    EXPECT_EQ(names().size(), 3U);
}

TEST_F(MainWindowBrowserTest, DoesWhatTheMenuOfAnAssetOffers)
{
    const std::string oak = storeMaterial("Oak");
    storeMaterial("Steel");
    open();

    clickAsset(oak);
    openMenu(*tiles().viewport(), placeOf(oak), [this](QMenu &menu) { clickInMenu(menu, "Rename"); });
    type("Bog oak");
    press(Qt::Key_Return);
    settle();
    EXPECT_THAT(names(), ElementsAre("Bog oak", "Steel"));
    clickAsset(oak);
    openMenuByKey([this](QMenu &menu) { pressInMenu(menu, "Delete"); });
    settle();
    EXPECT_THAT(names(), ElementsAre("Steel"));
    press(Qt::Key_Z, Qt::ControlModifier);
    settle();

    EXPECT_THAT(names(), ElementsAre("Bog oak", "Steel"));
}

TEST_F(MainWindowBrowserTest, GoesThroughFoldersAndTheirMenuByTheKeyboard)
{
    ASSERT_TRUE(QDir().mkpath(path("Wood/Hard")));
    storeMaterial("Oak");
    open();
    FolderModel &folders = window->libraries().folders();
    clickFolder(path());

    press(Qt::Key_Down);
    EXPECT_EQ(window->folders().folder(), path("Wood"));
    press(Qt::Key_Right);
    press(Qt::Key_Down);
    EXPECT_EQ(window->folders().folder(), path("Wood/Hard"));
    openMenuByKey([this](QMenu &menu) { pressInMenu(menu, "Rename"); });
    type("Soft");
    press(Qt::Key_Return);
    settle();
    EXPECT_TRUE(folders.indexOf(path("Wood/Soft")).isValid());
    clickFolder(path());
    openMenuByKey([this](QMenu &menu) { pressInMenu(menu, "Close library"); });
    settle();

    EXPECT_TRUE(folders.libraries().isEmpty());
    EXPECT_TRUE(QDir(path("Wood/Soft")).exists()) << "files stay as they are";
}

TEST_F(MainWindowBrowserTest, LoadsPreviewsOfWhatTheWheelBringsIntoSight)
{
    for (int i = 0; i < 40; ++i)
        storeMaterial("Oak " + std::to_string(10 + i));
    window->resize(900, 600);
    open();
    window->browser().setTileSize(AssetGrid::MaxTile);
    settle();
    const AssetModel &assets = window->libraries().assets();
    const QString last = id(assets.entry(assets.rowCount() - 1).uuid);
    const PreviewCache &previews = window->libraries().previews();
    ASSERT_TRUE(previews.find(last).isNull()) << "it is far below";
    QWidget &viewport = *tiles().viewport();
    const QScrollBar &bar = *tiles().verticalScrollBar();

    for (int i = 0; i < 100 && bar.value() < bar.maximum(); ++i)
        input.turnWheel(viewport.mapToGlobal(viewport.rect().center()), -3, Qt::NoModifier);

    EXPECT_EQ(bar.value(), bar.maximum());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !previews.find(last).isNull(); }, Patience));
}

TEST_F(MainWindowBrowserTest, MovesTheCameraByTheKeyboard)
{
    const osg::NodePtr chair = addChair("Chair");
    open();
    view().frameAll();
    settle();
    click(view(), view().rect().center());
    const osg::Vec3d from = camera()->getFrom();
    const double before = distance();

    press(Qt::Key_Left);
    EXPECT_NE(camera()->getFrom(), from);
    EXPECT_NEAR(distance(), before, 1e-6);
    press(Qt::Key_Plus);
    EXPECT_LT(distance(), before);
    for (int i = 0; i < 6; ++i)
        press(Qt::Key_Minus);
    EXPECT_GT(distance(), 1.9 * before);
    kxSelectionManager::selectNodes({chair});
    press(Qt::Key_F);

    EXPECT_LT(distance(), 1.3 * before);
}

TEST_F(MainWindowBrowserTest, AddsWhatIsPickedWithControl)
{
    const osg::NodePtr seat = addChair("Chair")->getChild(0);
    open();
    view().frameAll();
    settle();
    QPoint place;
    for (int y = 4; y < view().height() && place.isNull(); y += 8)
        for (int x = 4; x < view().width(); x += 8)
            if (view().nodeAt({x, y}) == seat)
                place = {x, y};
    const osg::NodePtr other = addChair("Other");
    kxSelectionManager::selectNodes({other});

    click(view(), place, Qt::ControlModifier);
    EXPECT_THAT(kxSelectionManager::getSelectedNodes(), UnorderedElementsAre(other, seat));
    click(view(), place, Qt::ControlModifier);
    EXPECT_THAT(kxSelectionManager::getSelectedNodes(), ElementsAre(other));
    click(view(), place);

    EXPECT_THAT(kxSelectionManager::getSelectedNodes(), ElementsAre(seat));
}

} // namespace
