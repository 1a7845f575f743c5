// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ScriptLine.h"
#include "LibraryContent.h"
#include "WindowFixture.h"

#include <QAction>
#include <QDockWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What scripts leave of the steps that can be undone, and what is said about it.
class MainWindowForgettingTest : public WindowFixture
{
protected:
    void showConsole()
    {
        press(Qt::Key_QuoteLeft, Qt::ControlModifier);
        EXPECT_TRUE(QTest::qWaitFor([this] { return line().hasFocus(); }, Patience));
    }
    void enter(const QString &text)
    {
        type(text);
        press(Qt::Key_Return);
        settle();
    }
    ScriptLine &line() { return widget<ScriptLine>("scriptInput"); }
    QString output() { return widget<QPlainTextEdit>("scriptOutput").toPlainText(); }
    void undo()
    {
        window->undoStack().undo(); // the keys would undo in the line
        settle();
    }

    const QString forgotten =
        "What was done in the scene before cannot be undone any more: the script has changed it.\n";
};

} // namespace

TEST_F(MainWindowForgettingTest, SaysWhenAScriptLeavesNothingToUndo)
{
    const osg::NodePtr throne = addChair("Throne");
    open();
    window->scene().actions().renameNode(throne, "Bench");
    showConsole();

    enter("import kx");
    enter("6 * 7");
    EXPECT_FALSE(output().contains(forgotten)) << "nothing was changed";
    EXPECT_TRUE(window->undoStack().canUndo());
    enter("node = kx.scene.add(kx.Node('Stool'))");

    EXPECT_TRUE(output().endsWith(forgotten)) << output().toStdString();
    EXPECT_FALSE(window->undoStack().canUndo());
    enter("node.name = 'Chair'");
    EXPECT_EQ(output().count(forgotten), 1) << "there was nothing to forget";
    window->scene().actions().renameNode(throne, "Throne");
    enter("kx.scene.new()");
    EXPECT_EQ(output().count(forgotten), 2) << output().toStdString();
}

TEST_F(MainWindowForgettingTest, KeepsWhatWasDoneToLibrariesWhateverAScriptDoes)
{
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);
    press(Qt::Key_Delete);
    settle();
    showConsole();

    enter("import kx");
    enter("node = kx.scene.add(kx.Node('Stool'))");
    EXPECT_FALSE(output().contains(forgotten)) << "there was nothing to forget";
    undo();
    EXPECT_THAT(names(), ElementsAre("Oak"));
    window->undoStack().redo();
    settle();
    EXPECT_THAT(names(), IsEmpty());
    enter("kx.scene.new()");
    EXPECT_FALSE(output().contains(forgotten));
    undo();

    EXPECT_THAT(names(), ElementsAre("Oak"));
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowForgettingTest, SaysSoAlsoWhereTheScriptLeftAStepOfItsOwn)
{
    const std::string chair = storeGeometry("Chair");
    open();
    load(chair); // a step in the scene
    showConsole();

    enter("import kx");
    enter("n = kx.scene.node('Chair'); arm = n.add(kx.Node('Arm')); kx.assets.overwrite([n]); kx.scene.new()");

    EXPECT_EQ(window->undoStack().undoText(), "Saving over 1 asset(s)") << output().toStdString();
    EXPECT_EQ(output().count(forgotten), 1) << output().toStdString();
}

TEST_F(MainWindowForgettingTest, SaysBeforehandThatScriptsMayDoSo)
{
    open();
    const QString sentence = "Undo forgets what was done in it before.";

    EXPECT_TRUE(line().toolTip().contains(sentence));
    EXPECT_TRUE(widget<QPushButton>("scriptRunFile").toolTip().contains(sentence));
    EXPECT_TRUE(widget<QAction>("runPythonFile").toolTip().contains(sentence));
    EXPECT_TRUE(widget<QAction>("runPythonFile").statusTip().contains(sentence));
}

TEST_F(MainWindowForgettingTest, KeepsWhatAScriptSavedOver)
{
    const std::string chair = storeGeometry("Chair");
    open();
    load(chair);
    const LibraryContent before = contentOf(path());
    showConsole();

    enter("import kx");
    enter("n = kx.scene.node('Chair'); arm = n.add(kx.Node('Arm')); kx.assets.overwrite([n]); n.add(kx.Node('Leg'))");
    const LibraryContent after = contentOf(path());

    EXPECT_NE(differenceOf(before, after), "") << output().toStdString();
    ASSERT_EQ(window->undoStack().count(), 1) << output().toStdString();
    EXPECT_EQ(window->undoStack().undoText(), "Saving over 1 asset(s)");
    undo();
    EXPECT_EQ(differenceOf(before, contentOf(path())), "");
    window->undoStack().redo();
    settle();
    EXPECT_EQ(differenceOf(after, contentOf(path())), "");
    EXPECT_THAT(names(), ElementsAre("Chair"));
    EXPECT_EQ(reported(), "");
}
