// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ScriptRunner.h"

#include "Assets/kxAssetItemFactory.h"
#include "Kernel/kxController.h"
#include "Kernel/kxNodeUtils.h"
#include "Kernel/kxScenegraph.h"
#include "Kernel/kxScenegraphNotifier.h"
#include "Kernel/kxSelectionManager.h"
#include "SceneFixture.h"

#include <QCursor>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTimer>

#include <gmock/gmock.h>

#include <utility>

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr int Patience = 10000; // milliseconds

class ScriptRunnerTest : public SceneFixture
{
protected:
    ScriptRunnerTest()
    {
        QObject::connect(&runner, &ScriptRunner::written, [this](const QString &text, bool isError) {
            (isError ? errors : output) += text.toStdString();
        });
    }

    int run(const std::string &text) { return runner.runText(QString::fromStdString(text)); }
    QString write(const std::string &name, const std::string &text) const
    {
        QString path = QString::fromStdString(folder.file(name));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray::fromStdString(text));
        return path;
    }
    /// Presses Stop as a person does, while the script runs.
    void stopIn(int milliseconds)
    {
        QTimer::singleShot(milliseconds, &runner, [this] { runner.stop(); });
    }
    static std::vector<std::string> selectedNames()
    {
        std::vector<std::string> names;
        for (const osg::NodePtr &node : kxSelectionManager::getSelectedNodes())
            names.push_back(kxNodeUtils::getName(node));
        return names;
    }
    static int overrideCursors()
    {
        std::vector<QCursor> cursors;
        while (const QCursor *cursor = QGuiApplication::overrideCursor()) {
            cursors.push_back(*cursor);
            QGuiApplication::restoreOverrideCursor();
        }
        for (auto cursor = cursors.rbegin(); cursor != cursors.rend(); ++cursor)
            QGuiApplication::setOverrideCursor(*cursor);
        return static_cast<int>(cursors.size());
    }

    ScriptRunner runner{stack};
    std::string output;
    std::string errors;
};

TEST_F(ScriptRunnerTest, UsesTheSceneThatIsThere)
{
    addChair("Throne");

    EXPECT_EQ(run("import kx\nkx.scene.add(kx.Node('Stool'))\nprint([n.name for n in kx.scene.root.children])"), 0);

    EXPECT_THAT(output, HasSubstr("'Throne', 'Stool']"));
    EXPECT_THAT(childNames(root()), Contains("Stool"));
    EXPECT_EQ(errors, "");
}

TEST_F(ScriptRunnerTest, LeavesTheHostAsItIsAtTheEndOfScripts)
{
    {
        ScriptRunner first(stack);
        ASSERT_EQ(first.runText("import kx, atexit\nkx.scene.add(kx.Node('Stool'))\n"
                                "atexit.register(lambda: kx.scene.add(kx.Node('Last')))"),
                  0);
    }

    EXPECT_TRUE(kxScenegraph::getRoot());
    EXPECT_THAT(childNames(root()), Contains("Stool"));
    EXPECT_THAT(childNames(root()), Contains("Last"));
    EXPECT_EQ(run("import kx\nkx.scene.node('Stool').name"), 0);
    EXPECT_EQ(output, "'Stool'\n");
}

TEST_F(ScriptRunnerTest, LeavesAssetsThatTheProgramKnewWhenAScriptClosesALibrary)
{
    const std::string uuid = storeMaterial("Oak");
    const QString script = write("close.py", "import kx, sys\nwith kx.library(sys.argv[1]) as library:\n"
                                             "    print(len(library))\n");

    EXPECT_EQ(runner.runFile(script, {library().toLocalFile()}), 0) << errors;

    EXPECT_EQ(output, "1\n");
    EXPECT_NE(kxAssetItemFactory::the().findItem(uuid), nullptr);
}

TEST_F(ScriptRunnerTest, KeepsItsNamespace)
{
    const QString script = write("names.py", "import os\nnumber = 41\ndef grown(): return number + 1\n");

    EXPECT_EQ(runner.runFile(script), 0);
    EXPECT_EQ(run("grown()"), 0);
    EXPECT_EQ(run("number = 1"), 0);
    EXPECT_EQ(run("grown(), __name__, os.sep"), 0);

    EXPECT_EQ(output, "42\n(2, '__main__', '/')\n");
}

TEST_F(ScriptRunnerTest, RunsSeveralStatementsAtOnce)
{
    EXPECT_EQ(run("x = 2\nfor i in range(2):\n    print(i)\nx * 3"), 0);

    EXPECT_EQ(output, "0\n1\n6\n");
}

TEST_F(ScriptRunnerTest, HandsArgumentsOver)
{
    const QString script = write("ar gs ü.py", "import sys\nprint(sys.argv[1:], sys.argv[0] == __file__)\n");

    EXPECT_EQ(runner.runFile(script, {"--all", QString::fromUtf8("Lack ü")}), 0);

    EXPECT_EQ(output, "['--all', 'Lack ü'] True\n");
}

TEST_F(ScriptRunnerTest, FindsModulesBesideTheFile)
{
    write("neighbour_of_script.py", "value = 'near'\n");
    const QString script = write("main.py", "import neighbour_of_script\nprint(neighbour_of_script.value)\n");

    EXPECT_EQ(runner.runFile(script), 0) << errors;
    EXPECT_EQ(run("import sys\nprint(any(p.endswith('" + folder.path().string() + "') for p in sys.path))"), 0);

    EXPECT_EQ(output, "near\nFalse\n");
}

TEST_F(ScriptRunnerTest, ShowsTheTracebackOfAnException)
{
    const QString script = write("bad.py", "def inner():\n    raise ValueError('no good')\ninner()\n");

    EXPECT_EQ(runner.runFile(script), 1);

    EXPECT_EQ(errors, "Traceback (most recent call last):\n  File \"" + script.toStdString() +
                          "\", line 3, in <module>\n    inner()\n  File \"" + script.toStdString() +
                          "\", line 2, in inner\n    raise ValueError('no good')\nValueError: no good\n");
    EXPECT_EQ(output, "");
}

TEST_F(ScriptRunnerTest, ShowsWhatCannotBeRun)
{
    EXPECT_EQ(run("1 +* 2"), 1);
    EXPECT_THAT(errors, HasSubstr("SyntaxError: invalid syntax"));
    EXPECT_THAT(errors, Not(HasSubstr("<asset-manager>")));

    errors.clear();
    EXPECT_EQ(runner.runFile("/nowhere/none.py"), 1);
    EXPECT_EQ(errors, "FileNotFoundError: [Errno 2] No such file or directory: '/nowhere/none.py'\n");

    errors.clear();
    EXPECT_EQ(runner.runFile(write("zero.py", std::string("a = 1\0", 6))), 1);
    EXPECT_THAT(errors, HasSubstr("null bytes"));
}

TEST_F(ScriptRunnerTest, SurvivesExceptionsThatAreHardToShow)
{
    EXPECT_EQ(run("class Bad(Exception):\n    def __str__(self): raise RuntimeError('twice')\nraise Bad()"), 1);
    EXPECT_THAT(errors, HasSubstr("Bad: <exception str() failed>"));

    EXPECT_EQ(run("def f(): f()\nf()"), 1);
    EXPECT_THAT(errors, HasSubstr("RecursionError: maximum recursion depth exceeded"));

    errors.clear();
    EXPECT_EQ(run("import sys\nsys.stdout.close()\nsys.stderr = 3\nraise ValueError('shown')"), 1);
    EXPECT_THAT(errors, HasSubstr("ValueError: shown"));
    EXPECT_EQ(run("print('again \\udcff')"), 0);
    EXPECT_EQ(output, "again \\udcff\n");
}

TEST_F(ScriptRunnerTest, EndsOnlyTheScriptWithSystemExit)
{
    EXPECT_EQ(run("import sys\nsys.exit(7)"), 7);
    EXPECT_EQ(run("exit()"), 0);
    EXPECT_EQ(run("raise SystemExit"), 0);
    EXPECT_EQ(run("quit(True)"), 1);
    EXPECT_EQ(errors, "");

    EXPECT_EQ(run("sys.exit('that was it')"), 1);

    EXPECT_EQ(errors, "that was it\n");
    EXPECT_EQ(output, "");
    EXPECT_EQ(run("print('still here')"), 0);
    EXPECT_EQ(output, "still here\n");
}

TEST_F(ScriptRunnerTest, RefusesInput)
{
    EXPECT_EQ(run("input('name? ')"), 1);

    EXPECT_THAT(errors, HasSubstr("EOFError: scripts in this program cannot ask for input"));
}

TEST_F(ScriptRunnerTest, StopsAScriptThatLoops)
{
    stopIn(0);

    EXPECT_EQ(run("while True: pass"), 1);

    EXPECT_THAT(errors, testing::EndsWith("KeyboardInterrupt\n"));
    EXPECT_FALSE(runner.isRunning());
    EXPECT_EQ(run("sum(range(3_000_000)) > 0"), 0); // is not stopped by what was left
    EXPECT_EQ(output, "True\n");
}

TEST_F(ScriptRunnerTest, StopsAScriptThatSleeps)
{
    QElapsedTimer clock;
    clock.start();
    stopIn(0);

    EXPECT_EQ(run("import time\ntime.sleep(60)"), 1);

    EXPECT_LT(clock.elapsed(), 30000);
    EXPECT_THAT(errors, HasSubstr("KeyboardInterrupt"));
    EXPECT_EQ(run("time.sleep(-1)"), 1);
    EXPECT_THAT(errors, HasSubstr("ValueError: sleep length must be non-negative"));
}

TEST_F(ScriptRunnerTest, StopsAScriptThatCatchesEverythingTheSecondTime)
{
    int caught = 0;
    bool hasBegun = false; // Python does not catch what reaches it at the first instruction of a try
    QObject::connect(&runner, &ScriptRunner::written, [&](const QString &text) {
        if ((text == "begun" && !std::exchange(hasBegun, true)) || (text == "caught" && ++caught == 1))
            stopIn(0);
    });

    EXPECT_EQ(run("while True:\n    try:\n        print('begun')\n        while True: len('')\n"
                  "    except BaseException:\n        print('caught')"),
              1);

    EXPECT_EQ(caught, 1) << errors;
    EXPECT_THAT(errors, HasSubstr("KeyboardInterrupt"));
    EXPECT_EQ(run("1 + 1"), 0);
}

TEST_F(ScriptRunnerTest, StopsARendering)
{
    addChair("Throne");
    stopIn(0);

    EXPECT_EQ(run("import kx\nkx.render(width=4000, height=4000, samples=100000)"), 1);

    EXPECT_THAT(errors, HasSubstr("KeyboardInterrupt"));
}

TEST_F(ScriptRunnerTest, RefusesASecondScriptMeanwhile)
{
    int second = -1;
    QTimer::singleShot(0, &runner, [&] {
        second = runner.runText("print('never')");
        runner.stop();
    });

    EXPECT_EQ(run("while True: pass"), 1);

    EXPECT_EQ(second, 1);
    EXPECT_THAT(errors, StartsWith("Another script is running.\n"));
    EXPECT_EQ(output, "");
}

TEST_F(ScriptRunnerTest, PutsUpdatesAndThePointerBack)
{
    QGuiApplication::setOverrideCursor(Qt::ForbiddenCursor);
    QTimer::singleShot(0, &runner, [&] { // what a part of the library does that a script breaks off
        kxScenegraph::enableUpdate(false);
        kxController::enableRenderUpdate(false);
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        runner.stop();
    });

    EXPECT_EQ(run("while True: pass"), 1);

    EXPECT_TRUE(kxScenegraph::isUpdateEnabled());
    EXPECT_TRUE(kxController::isRenderUpdateEnabled());
    EXPECT_EQ(overrideCursors(), 1);
    EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::ForbiddenCursor);
    QGuiApplication::restoreOverrideCursor();
}

TEST_F(ScriptRunnerTest, LeavesUpdatesOffThatWereOff)
{
    kxScenegraph::enableUpdate(false);

    EXPECT_EQ(run("1"), 0);

    EXPECT_FALSE(kxScenegraph::isUpdateEnabled());
    kxScenegraph::enableUpdate(true);
}

TEST_F(ScriptRunnerTest, PutsTheSelectionBackAfterAFailureOnly)
{
    const osg::NodePtr throne = addChair("Throne");
    const osg::NodePtr stool = addChair("Stool");
    kxSelectionManager::selectNodes({stool, throne});

    EXPECT_EQ(run("import kx\nkx.scene.selection = [kx.scene.node('Throne/Seat')]\n1 / 0"), 1);
    EXPECT_EQ(selectedNames(), (std::vector<std::string>{"Stool", "Throne"}));

    EXPECT_EQ(run("kx.scene.selection = []\nraise SystemExit(2)"), 2);
    EXPECT_EQ(selectedNames(), (std::vector<std::string>{"Stool", "Throne"}));

    EXPECT_EQ(run("kx.scene.selection = [kx.scene.node('Throne/Seat')]"), 0);
    EXPECT_EQ(selectedNames(), (std::vector<std::string>{"Seat"}));
    EXPECT_EQ(run("raise SystemExit"), 0);
    EXPECT_EQ(selectedNames(), (std::vector<std::string>{"Seat"}));
}

TEST_F(ScriptRunnerTest, EmptiesTheUndoStackWhenTheSceneChanged)
{
    const osg::NodePtr throne = addChair("Throne");
    actions.renameNode(throne, "Chair");
    ASSERT_EQ(stack.count(), 1);

    EXPECT_EQ(run("import kx\n[n.name for n in kx.scene.root.children]"), 0);
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(run("kx.scene.modified = False\nkx.scene.node('Chair').name = 'Bench'\n1 / 0"), 1);

    EXPECT_EQ(stack.count(), 0);
    EXPECT_TRUE(kxController::isModified());
    stack.undo();
    EXPECT_EQ(kxNodeUtils::getName(throne), "Bench");
}

TEST_F(ScriptRunnerTest, KeepsTheUndoStackWhenOnlyAssetsChanged)
{
    storeMaterial("Oak");
    actions.renameNode(addChair("Throne"), "Chair");
    kxController::setModified(false);
    const std::string open = "import kx\nlib = kx.library('" + library().toLocalFile().toStdString() + "')\n";

    EXPECT_EQ(run(open + "len(lib)"), 0);
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(run("lib['Oak'].tags = ['wood']"), 0) << errors;

    EXPECT_EQ(stack.count(), 1);
    EXPECT_FALSE(kxController::isModified());
    stack.undo();
    EXPECT_THAT(childNames(root()), Contains("Throne"));
    EXPECT_EQ(run("kx.scene.new()\nkx.scene.add(kx.Node('Stool'))"), 0) << errors;
    EXPECT_TRUE(kxController::isModified()) << "the new scene is not empty any more";
}

TEST_F(ScriptRunnerTest, TellsViewsOfWhatAScriptChanged)
{
    addChair("Throne");
    process();
    QSignalSpy updates(&kxScenegraph::notifier(), &kxScenegraphNotifier::updateRequested);

    EXPECT_EQ(run("import kx\nkx.scene.node('Throne').name = 'Bench'"), 0);
    process();

    EXPECT_GE(updates.count(), 1);
}

TEST_F(ScriptRunnerTest, KnowsWhatIsComplete)
{
    EXPECT_TRUE(runner.isComplete("x = 1"));
    EXPECT_TRUE(runner.isComplete("x = 1\ny = 2"));
    EXPECT_TRUE(runner.isComplete("x = )"));
    EXPECT_FALSE(runner.isComplete("for i in range(3):"));
    EXPECT_FALSE(runner.isComplete("print(1,"));
    EXPECT_TRUE(runner.isComplete("for i in range(3):\n    print(i)\n"));
}

TEST_F(ScriptRunnerTest, CompletesWords)
{
    ASSERT_EQ(run("import kx\nthrone = 'x'\nclass Bad:\n    def __dir__(self): raise ValueError\nbad = Bad()"), 0);

    EXPECT_EQ(runner.completions("print(thr"), QStringList{"throne"});
    EXPECT_TRUE(runner.completions("kx.sc").contains("kx.scene"));
    EXPECT_TRUE(runner.completions("kx.scene.sel").contains("kx.scene.selection"));
    EXPECT_EQ(runner.completions("bad.x"), QStringList());
    EXPECT_EQ(runner.completions("nothing.here"), QStringList());
    EXPECT_EQ(runner.completions(""), QStringList());
}

TEST_F(ScriptRunnerTest, ShowsWhatThreadsOfAScriptPrint)
{
    QSignalSpy written(&runner, &ScriptRunner::written);

    EXPECT_EQ(run("import threading\nt = threading.Thread(target=print, args=('from afar',))\nt.start()\nt.join()"), 0)
        << errors;
    while (written.count() < 2)
        ASSERT_TRUE(written.wait(Patience));

    EXPECT_EQ(output, "from afar\n");
}

TEST_F(ScriptRunnerTest, AnnouncesBeginningAndEnd)
{
    QSignalSpy started(&runner, &ScriptRunner::started);
    QSignalSpy finished(&runner, &ScriptRunner::finished);

    run("raise SystemExit(3)");

    EXPECT_EQ(started.count(), 1);
    ASSERT_EQ(finished.count(), 1);
    EXPECT_EQ(finished.first().first().toInt(), 3);
}

} // namespace
