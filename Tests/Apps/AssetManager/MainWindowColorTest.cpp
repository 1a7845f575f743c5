// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/Appearance.h"
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/FolderTree.h"
#include "AssetManager/LibrarySide.h"
#include "WindowFixture.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QImage>
#include <QStatusBar>
#include <QStyle>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace {

/// The colours of the desktop, in pixels.
class MainWindowColorTest : public WindowFixture
{
protected:
    ~MainWindowColorTest() override
    {
        window.reset();
        QApplication::setStyle(styleBefore);
        QApplication::setPalette(before);
    }

    static QPalette desktop(const QColor &window, const QColor &base, const QColor &text)
    {
        QPalette palette(window);
        palette.setColor(QPalette::Window, window);
        palette.setColor(QPalette::Base, base);
        for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            palette.setColor(role, text);
        return palette;
    }
    /// As the desktop has it.
    void change(const QPalette &palette)
    {
        QApplication::setPalette(palette);
        process();
        settle();
    }
    /// The colour of most pixels.
    static QColor ground(const QImage &image)
    {
        std::map<QRgb, int> counts;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                ++counts[image.pixel(x, y)];
        const auto most = std::max_element(counts.begin(), counts.end(),
                                           [](const auto &a, const auto &b) { return a.second < b.second; });
        return QColor(most->first);
    }
    QImage seen(const QWidget &widget) const
    {
        return window->grab(QRect(widget.mapTo(window.get(), QPoint(0, 0)), widget.size())).toImage();
    }
    /// Whether that colour is in the line with the name of a tile.
    bool isWrittenIn(const std::string &uuid, const QColor &color) const
    {
        const QAbstractItemView &tiles = window->browser().view();
        const QRect tile = tiles.visualRect(window->libraries().assets().indexOf(uuid));
        const QImage all = seen(*tiles.viewport());
        for (int y = tile.bottom() - 16; y < tile.bottom(); ++y)
            for (int x = tile.left(); x < tile.right(); ++x)
                if (all.pixel(x, y) == color.rgb())
                    return true;
        return false;
    }
    QWidget *tip(const std::string &uuid)
    {
        const QAbstractItemView &tiles = window->browser().view();
        const QPoint place = tiles.visualRect(window->libraries().assets().indexOf(uuid)).center();
        input.moveTo(tiles.viewport()->mapToGlobal(place + QPoint(2, 2)));
        input.moveTo(tiles.viewport()->mapToGlobal(place));
        QWidget *found = nullptr;
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                for (QWidget *top : QApplication::topLevelWidgets())
                    if (top->inherits("QTipLabel") && top->isVisible())
                        found = top;
                return found != nullptr;
            },
            Patience));
        return found;
    }

    const QPalette before = QApplication::palette();
    const QString styleBefore = QApplication::style()->objectName();
    const QPalette dark = desktop(QColor(40, 42, 44), QColor(20, 22, 24), QColor(230, 232, 234));
    const QPalette light = desktop(QColor(240, 238, 236), QColor(255, 254, 252), QColor(10, 12, 14));
};

TEST_F(MainWindowColorTest, FollowsTheDesktopWhileItRuns)
{
    const std::string oak = storeMaterial("Oak");
    Appearance::apply(Appearance::Kind::Desktop);
    change(light);
    open();
    clickFolder(path()); // the tile is not the current one
    EXPECT_EQ(ground(seen(*window->statusBar())), light.color(QPalette::Window));

    change(dark);
    EXPECT_EQ(ground(seen(*window->statusBar())), dark.color(QPalette::Window));
    EXPECT_EQ(ground(seen(*window->browser().view().viewport())), dark.color(QPalette::Base));
    EXPECT_EQ(ground(seen(*window->folders().viewport())), dark.color(QPalette::Base));
    EXPECT_TRUE(isWrittenIn(oak, dark.color(QPalette::Text)));
    change(light);

    EXPECT_EQ(ground(seen(*window->browser().view().viewport())), light.color(QPalette::Base));
    EXPECT_TRUE(isWrittenIn(oak, light.color(QPalette::Text)));
}

TEST_F(MainWindowColorTest, HasToolTipsInTheColoursOfTheDesktop)
{
    const std::string oak = storeMaterial("Oak");
    Appearance::apply(Appearance::Kind::Desktop);
    QPalette tips = dark;
    tips.setColor(QPalette::ToolTipBase, QColor(60, 30, 10));
    tips.setColor(QPalette::ToolTipText, QColor(250, 240, 230));
    change(tips);
    open();

    QWidget *shown = tip(oak);

    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(ground(shown->grab().toImage()), tips.color(QPalette::ToolTipBase));
}

} // namespace
