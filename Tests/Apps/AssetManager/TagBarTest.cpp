// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/TagBar.h"

#include "RealInput.h"

#include <QApplication>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Three tags that are counted, in a bar that is shown.
class TagBarTest : public testing::Test
{
protected:
    void show(int width)
    {
        bar.resize(width, bar.sizeHint().height());
        bar.setTags({{"wood", 5}, {"dark", 3}, {"matt", 1}});
        bar.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&bar));
        process();
    }

    static void process()
    {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    std::vector<QString> buttons() const
    {
        std::vector<QString> texts;
        for (const QToolButton *button : bar.findChildren<QToolButton *>())
            texts.push_back(button->text());
        return texts;
    }

    std::vector<QString> menu() const
    {
        std::vector<QString> texts;
        for (const QAction *action : more()->menu()->actions())
            texts.push_back(action->text());
        return texts;
    }

    QPushButton *more() const { return bar.findChild<QPushButton *>(); }

    TagBar bar;
};

TEST_F(TagBarTest, HasButtonsWhereThereIsRoom)
{
    show(800);

    EXPECT_THAT(buttons(), ElementsAre("wood (5)", "dark (3)", "matt (1)"));
    EXPECT_FALSE(more()->isVisible());
}

TEST_F(TagBarTest, KeepsInAMenuWhatFindsNoRoom)
{
    show(800);

    bar.resize(bar.findChild<QToolButton *>("tag:wood")->width() + more()->sizeHint().width() + 20, bar.height());
    process();

    EXPECT_THAT(buttons(), ElementsAre("wood (5)"));
    EXPECT_TRUE(more()->isVisible());
    EXPECT_THAT(menu(), ElementsAre("dark (3)", "matt (1)"));
    EXPECT_LE(more()->geometry().right(), bar.rect().right());
    EXPECT_EQ(bar.minimumSizeHint().width(), 0) << "panels beside it get what room they want";

    bar.resize(800, bar.height());
    process();
    EXPECT_THAT(menu(), IsEmpty());
}

TEST_F(TagBarTest, OffersTheRarestOfHundredsByItsName)
{
    show(300);
    std::vector<std::pair<QString, int>> counts;
    counts.reserve(201);
    for (int i = 0; i < 200; ++i)
        counts.emplace_back(QString("tag %1").arg(i, 3, 10, QChar('0')), 1000 - i);
    counts.emplace_back("black & white", 1);

    bar.setTags(counts);
    process();

    QMenu *last = nullptr;
    std::vector<QString> titles;
    for (const QAction *action : more()->menu()->actions())
        if (action->menu()) {
            titles.push_back(action->text());
            last = last ? last : action->menu();
        }
    ASSERT_TRUE(last);
    EXPECT_TRUE(titles.front().startsWith("black && white – tag ")) << titles.front().toStdString();
    EXPECT_TRUE(titles.back().endsWith(" – tag 199")) << titles.back().toStdString();
    EXPECT_LE(more()->menu()->actions().size(), 40);
    EXPECT_LE(last->actions().size(), 30);
    EXPECT_EQ(last->actions().front()->text(), "black && white (1)");
    last->actions().front()->trigger();
    EXPECT_EQ(bar.chosen(), QStringList{"black & white"});
}

TEST_F(TagBarTest, AlwaysHasButtonsForWhatIsChosen)
{
    show(800);
    QSignalSpy changes(&bar, &TagBar::chosenChanged);
    bar.resize(60, bar.height());
    process();

    more()->menu()->actions().back()->trigger();
    ASSERT_EQ(changes.count(), 1);
    EXPECT_EQ(changes[0][0].toStringList(), QStringList("matt"));
    bar.setTags({{"wood", 2}, {"matt", 1}});
    process();

    EXPECT_EQ(buttons().front(), "matt");
    EXPECT_EQ(bar.chosen(), QStringList("matt"));
}

TEST_F(TagBarTest, KeepsItsMenuOpenWhileTagsAreCounted)
{
    show(800);
    bar.resize(60, bar.height());
    process();
    RealInput input;
    QTimer helper; // the menu has a loop of its own
    int seen = 0;
    bool staysOpen = false;
    QObject::connect(&helper, &QTimer::timeout, [&] {
        if (!QApplication::activePopupWidget() || input.isBusy() || ++seen > 1)
            return;
        bar.setTags({{"wood", 6}});
        process();
        staysOpen = QApplication::activePopupWidget() == more()->menu();
        input.press(Qt::Key_Escape, Qt::NoModifier);
    });
    helper.start(5);

    input.click(more()->mapToGlobal(more()->rect().center()), Qt::LeftButton, Qt::NoModifier);
    process();

    EXPECT_EQ(seen, 1);
    EXPECT_TRUE(staysOpen);
    EXPECT_FALSE(QApplication::activePopupWidget());
    EXPECT_THAT(buttons(), ElementsAre("wood (6)")) << "what is left needs no menu";
}

} // namespace
