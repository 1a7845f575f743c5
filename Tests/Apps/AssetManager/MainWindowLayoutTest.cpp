// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/Appearance.h"
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/FolderTree.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/NodeTreeModel.h"
#include "AssetManager/SceneView.h"
#include "WindowFixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDockWidget>
#include <QHeaderView>
#include <QStyle>
#include <QTabBar>
#include <QTableView>
#include <QToolTip>
#include <QTreeView>

#include <gmock/gmock.h>

namespace {

/// How the window is laid out, and that the next one is so as well.
class MainWindowLayoutTest : public WindowFixture
{
protected:
    /// Ends the program, and starts it in the same session.
    void restart()
    {
        ASSERT_TRUE(window->close());
        window.reset();
        window = std::make_unique<MainWindow>(session.manager());
        window->scene().view().setSampleLimit(1);
        window->show();
        activate();
        window->openLibraries({});
        settle();
    }
    QDockWidget &dock(const char *name) const { return widget<QDockWidget>(name); }
    void clickTitleButton(const char *dockName, const char *name)
    {
        auto *button = dock(dockName).findChild<QAbstractButton *>(QLatin1String(name));
        ASSERT_NE(button, nullptr);
        click(*button, button->rect().center());
        settle();
    }
    QTableView &table() const { return widget<QTableView>("assetTable"); }
    /// Drags the right edge of a column's header.
    void widenColumn(int column, int by)
    {
        QHeaderView &header = *table().horizontalHeader();
        const QPoint edge(header.sectionViewportPosition(column) + header.sectionSize(column) - 1, header.height() / 2);
        dragMouse(*header.viewport(), edge, *header.viewport(), edge + QPoint(by, 0));
    }
    void showKind(int tab)
    {
        auto &tabs = widget<QTabBar>("categories");
        click(tabs, tabs.tabRect(tab).center());
    }
};

TEST_F(MainWindowLayoutTest, ShowsTheNamesOfPanelsWholeInASmallWindow)
{
    const QString style = QApplication::style()->objectName();
    const QPalette palette = QApplication::palette();
    const QPalette tips = QToolTip::palette();
    Appearance::apply(Appearance::Kind::Light);
    for (const auto &[name, title] :
         {std::pair("materialDock", "Materialien"), {"environmentDock", "Umgebungen"}, {"plateDock", "Platten"}})
        dock(name).setWindowTitle(title); // as another language has them
    window->resize(900, 600);
    process();

    int tabs = 0;
    for (const QTabBar *bar : window->findChildren<QTabBar *>(QString(), Qt::FindDirectChildrenOnly))
        if (bar->isVisible()) {
            EXPECT_LE(bar->sizeHint().width(), bar->width());
            tabs += bar->count();
        }

    EXPECT_EQ(tabs, 5);
    window.reset();
    QApplication::setStyle(style);
    QApplication::setPalette(palette);
    QToolTip::setPalette(tips);
}

TEST_F(MainWindowLayoutTest, HasRoomForTheTypesOfObjectsAtFirst)
{
    const auto &tree = widget<QTreeView>("sceneTree");

    EXPECT_FALSE(tree.isColumnHidden(NodeTreeModel::TypeColumn));
    EXPECT_GE(tree.columnWidth(NodeTreeModel::TypeColumn), tree.fontMetrics().horizontalAdvance("Transform"));
}

TEST_F(MainWindowLayoutTest, KeepsItsSize)
{
    window->resize(1230, 810);
    process();

    restart();

    EXPECT_EQ(window->size(), QSize(1230, 810));
}

TEST_F(MainWindowLayoutTest, KeepsWhichPanelsAreClosedAndHowWideOthersAre)
{
    open();
    const int before = window->folders().width();
    const QPoint edge(dock("foldersDock").geometry().right() + 2, dock("foldersDock").geometry().center().y());
    dragMouse(*window, edge, *window, edge + QPoint(70, 0));
    const int wide = window->folders().width();
    ASSERT_GT(wide, before + 40);
    ASSERT_TRUE(dock("detailsDock").isVisible());
    clickTitleButton("detailsDock", "qt_dockwidget_closebutton");
    ASSERT_FALSE(dock("detailsDock").isVisible());

    restart();

    EXPECT_FALSE(dock("detailsDock").isVisible());
    EXPECT_NEAR(window->folders().width(), wide, 2);
}

TEST_F(MainWindowLayoutTest, KeepsWherePanelsWereMovedTo)
{
    open();
    const QDockWidget &details = dock("detailsDock");
    ASSERT_EQ(window->dockWidgetArea(&dock("detailsDock")), Qt::RightDockWidgetArea);
    const QPoint title(details.width() / 3, 8);
    dragMouse(dock("detailsDock"), title, *window, {4, window->height() / 2});
    ASSERT_EQ(window->dockWidgetArea(&dock("detailsDock")), Qt::LeftDockWidgetArea);

    restart();

    EXPECT_EQ(window->dockWidgetArea(&dock("detailsDock")), Qt::LeftDockWidgetArea);
    EXPECT_TRUE(dock("detailsDock").isVisible());
}

TEST_F(MainWindowLayoutTest, KeepsWhichPanelsAreWindowsOfTheirOwn)
{
    open();
    clickTitleButton("detailsDock", "qt_dockwidget_floatbutton");
    ASSERT_TRUE(dock("detailsDock").isFloating());

    restart();

    EXPECT_TRUE(dock("detailsDock").isFloating());
    EXPECT_TRUE(dock("detailsDock").isVisible());
}

TEST_F(MainWindowLayoutTest, KeepsTheWidthsOfColumns)
{
    storeMaterial("Oak");
    storePlate("Logo");
    open();
    press(Qt::Key_2, Qt::ControlModifier);
    widenColumn(0, 33);
    widenColumn(1, -21);
    const int name = table().columnWidth(0);
    const int type = table().columnWidth(1);
    const int place = table().columnWidth(3);

    showKind(4); // whose last column is the fourth one, as wide as there is room
    EXPECT_EQ(table().columnWidth(0), name);
    EXPECT_EQ(table().columnWidth(1), type);
    restart();

    EXPECT_EQ(table().columnWidth(0), name);
    EXPECT_EQ(table().columnWidth(1), type);
    EXPECT_EQ(table().columnWidth(3), place);
}

TEST_F(MainWindowLayoutTest, KeepsTheSizeOfTiles)
{
    storeMaterial("Oak");
    open();
    const int before = window->browser().tileSize();
    input.turnWheel(window->browser().view().mapToGlobal({40, 40}), 2, Qt::ControlModifier);
    const int larger = window->browser().tileSize();
    ASSERT_GT(larger, before);

    restart();

    EXPECT_EQ(window->browser().tileSize(), larger);
}

} // namespace
