// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ScriptSide.h"

#include "SceneFixture.h"

#include <QDockWidget>
#include <QFile>
#include <QMainWindow>
#include <QMenu>
#include <QSignalSpy>

namespace {

class ScriptSideTest : public SceneFixture
{
protected:
    QMainWindow window;
    ScriptSide scripts{window, stack};
    QMenu menu;
};

#if defined(KX_WITH_PYTHON)

TEST_F(ScriptSideTest, HasADockThatIsHiddenAtFirst)
{
    auto *dock = window.findChild<QDockWidget *>("pythonDock");
    ASSERT_NE(dock, nullptr);

    window.show();
    EXPECT_FALSE(dock->isVisible());
    EXPECT_EQ(dock->toggleViewAction()->shortcut(), QKeySequence("Ctrl+`"));
    dock->toggleViewAction()->trigger();

    EXPECT_TRUE(dock->isVisible());
}

TEST_F(ScriptSideTest, RunsFilesAndSaysSo)
{
    QFile file(QString::fromStdString(folder.file("exit.py")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("import sys\nsys.exit(len(sys.argv))\n");
    file.close();
    QSignalSpy finished(&scripts, &ScriptSide::finished);

    EXPECT_TRUE(ScriptSide::isAvailable());
    EXPECT_EQ(scripts.runFile(file.fileName(), {"a", "b"}), 3);

    EXPECT_EQ(finished.count(), 1);
}

TEST_F(ScriptSideTest, OffersToRunAFile)
{
    scripts.addActions(menu);

    ASSERT_EQ(menu.actions().size(), 1);
    EXPECT_TRUE(menu.actions().first()->isEnabled());
}

#else

TEST_F(ScriptSideTest, SaysThatThereIsNoPython)
{
    scripts.addActions(menu);

    EXPECT_FALSE(ScriptSide::isAvailable());
    EXPECT_EQ(window.findChild<QDockWidget *>("pythonDock"), nullptr);
    ASSERT_EQ(menu.actions().size(), 1);
    EXPECT_FALSE(menu.actions().first()->isEnabled());
    EXPECT_EQ(menu.actions().first()->text(), "Python (this build comes without it)");
    EXPECT_EQ(scripts.runFile("any.py", {}), 1);
}

#endif

} // namespace
