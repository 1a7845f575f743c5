// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ScriptLine.h"
#include "WindowFixture.h"

#include <QDockWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include <gmock/gmock.h>

namespace {

using testing::Contains;

/// What a person enters in the console.
class MainWindowConsoleTest : public WindowFixture
{
protected:
    MainWindowConsoleTest()
    {
        open();
        press(Qt::Key_QuoteLeft, Qt::ControlModifier);
        EXPECT_TRUE(QTest::qWaitFor([this] { return line().isVisible() && line().hasFocus(); }, Patience));
    }
    ScriptLine &line() { return widget<ScriptLine>("scriptInput"); }
    QString output() { return widget<QPlainTextEdit>("scriptOutput").toPlainText(); }
    void enter(const QString &text)
    {
        type(text);
        press(Qt::Key_Return);
    }
};

TEST_F(MainWindowConsoleTest, RunsWhatIsTypedInTheSceneThatIsOpen)
{
    enter("import kx");
    enter("chair = kx.scene.add(kx.Node('Stool'))");
    enter("for i in range(2):");
    enter("print(i)");
    press(Qt::Key_Return); // ends the block

    EXPECT_EQ(output().toStdString(), ">>> import kx\n>>> chair = kx.scene.add(kx.Node('Stool'))\n"
                                      ">>> for i in range(2):\n...     print(i)\n... \n0\n1\n");
    EXPECT_THAT(childNames(root()), Contains("Stool"));
    EXPECT_TRUE(rowOf(widget<QTreeView>("sceneTree"), "Stool").isValid());
    EXPECT_TRUE(line().hasFocus());
}

TEST_F(MainWindowConsoleTest, BringsBackAndCompletesWhatWasTyped)
{
    enter("throne_of_oak = 6");
    type("thr");
    press(Qt::Key_Tab);
    EXPECT_EQ(line().toPlainText(), "throne_of_oak");
    enter(" * 7");
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    EXPECT_EQ(line().toPlainText(), "throne_of_oak = 6");
    press(Qt::Key_Down);

    EXPECT_EQ(line().toPlainText(), "throne_of_oak * 7");
    EXPECT_EQ(output(), ">>> throne_of_oak = 6\n>>> throne_of_oak * 7\n42\n");
    auto &clear = widget<QPushButton>("scriptClear");
    click(clear, clear.rect().center());
    EXPECT_EQ(output(), "");
}

TEST_F(MainWindowConsoleTest, StopsAScriptByTheMouse)
{
    auto &stop = widget<QPushButton>("scriptStop");
    QTimer helper; // the script runs while the key is handled
    QObject::connect(&helper, &QTimer::timeout, [&] {
        if (stop.isEnabled() && !input.isBusy())
            input.click(stop.mapToGlobal(stop.rect().center()), Qt::LeftButton, Qt::NoModifier);
    });
    helper.start(20);

    enter("while True: pass");
    press(Qt::Key_Return);
    helper.stop();

    EXPECT_TRUE(output().endsWith("KeyboardInterrupt\n")) << output().toStdString();
    EXPECT_FALSE(stop.isEnabled());
    enter("6 * 7");
    EXPECT_TRUE(output().endsWith("42\n")) << "it goes on in the line that had the focus";
}

TEST_F(MainWindowConsoleTest, GoesAwayByItsKeysAndLeavesTheKeyboardToTheRest)
{
    press(Qt::Key_QuoteLeft, Qt::ControlModifier);
    EXPECT_FALSE(widget<QDockWidget>("pythonDock").isVisible());

    press(Qt::Key_F, Qt::ControlModifier);
    type("6 * 7");

    EXPECT_EQ(output(), "");
}

} // namespace
