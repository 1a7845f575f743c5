// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ScriptOptions.h"

#include "HeadlessProgram.h"

#include <QFile>
#include <QProcess>

#include <gmock/gmock.h>

namespace {

using testing::EndsWith;
using testing::HasSubstr;

/// The program as a person starts it, with settings of its own.
class ScriptOptionsTest : public testing::Test
{
protected:
    using Result = HeadlessProgram::Result;

    QString write(const std::string &name, const char *text) const
    {
        QFile file(QString::fromStdString(folder.file(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        return file.fileName();
    }

    Result run(const QStringList &arguments) const { return program.run(arguments); }

    kxtest::TemporaryFolder folder;
    const HeadlessProgram program{folder};
};

#if defined(KX_WITH_PYTHON)

TEST_F(ScriptOptionsTest, RunsAScriptAndEnds)
{
    write("hello.py", "import kx, sys\nprint(sys.argv, kx.scene.root is not None)\n");

    const Result result = run({"--script", "hello.py", "--", "--all", QString::fromUtf8("Lack ü"), "--", "x"});

    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_EQ(result.output, "['hello.py', '--all', 'Lack ü', '--', 'x'] True\n");
}

TEST_F(ScriptOptionsTest, EndsWithWhatTheScriptEndedWith)
{
    write("exit.py", "import sys\nsys.exit(7)\n");
    write("bad.py", "raise ValueError('no good')\n");
    write("fine.py", "exit()\n");

    EXPECT_EQ(run({"--script", "exit.py"}).code, 7);
    EXPECT_EQ(run({"--script", "fine.py"}).code, 0);
    const Result bad = run({"--script", "bad.py"});

    EXPECT_EQ(bad.code, 1);
    EXPECT_EQ(bad.output, "");
    EXPECT_THAT(bad.errors, HasSubstr("File \"bad.py\", line 1, in <module>"));
    EXPECT_THAT(bad.errors, EndsWith("ValueError: no good\n"));
    EXPECT_EQ(run({"--script", "none.py"}).code, 1);
}

TEST_F(ScriptOptionsTest, RunsTheScriptOnceTheLibrariesAreRead)
{
    write("make.py", "import kx, sys\nkx.set_previews(size=16, samples=1)\nlibrary = kx.library('lib', create=True)\n"
                     "for i in range(5): library.save(kx.Node(f'Stool {i}'))\n");
    write("count.py", "import kx\nprint(kx.library('lib').assets(name='Stool 3'))\n");
    ASSERT_EQ(run({"--script", "make.py"}).code, 0);

    const Result result = run({"lib", "--script", "count.py"});

    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("Stool 3"));
}

TEST_F(ScriptOptionsTest, TakesThePictureAfterwards)
{
    write("red.py", "print('before')\nimport os\nassert not os.path.exists('shot.png')\n");
    write("bad.py", "import os; os.remove('shot.png')\n1 / 0\n");

    EXPECT_EQ(run({"--script", "red.py", "--screenshot", "shot.png"}).code, 0);
    EXPECT_TRUE(QFile::exists(QString::fromStdString(folder.file("shot.png"))));

    EXPECT_EQ(run({"--script", "bad.py", "--screenshot", "shot.png"}).code, 1);
    EXPECT_TRUE(QFile::exists(QString::fromStdString(folder.file("shot.png"))));
}

TEST_F(ScriptOptionsTest, StaysWhenItIsToldTo)
{
    // Only a program that goes on after the script lets the thread get that far.
    write("hello.py", "import os, threading\nthreading.Timer(1, os.write, (1, b'still there')).start()\n");
    QProcess process;
    program.start(process, {"--script", "hello.py", "--keep-open"});

    QByteArray output;
    while (!output.contains("still there")) {
        ASSERT_TRUE(process.waitForReadyRead(HeadlessProgram::Patience));
        output += process.readAllStandardOutput();
    }

    EXPECT_EQ(process.state(), QProcess::Running);
    process.kill();
    EXPECT_TRUE(process.waitForFinished(HeadlessProgram::Patience));
}

TEST_F(ScriptOptionsTest, EndsWellWhateverAScriptLeavesRunning)
{
    write("thread.py", "import kx, threading, time\n"
                       "def forever():\n    while True: time.sleep(0.001)\n"
                       "threading.Thread(target=forever).start()\n"
                       "kx.assets.on_changed(print)\nkept = kx.Node('Kept')\nkx.scene.add(kept)\n");

    EXPECT_EQ(run({"--script", "thread.py"}).code, 0);
}

TEST_F(ScriptOptionsTest, HasTheWholeModule)
{
    write("import.py", "import kx\nkx.scene.add(kx.Node('Stool'))\nkx.scene.save('stool.osb', kx.scene.root.children)\n"
                       "print(kx.render(width=8, height=8, samples=1).width)\n");

    const Result result = run({"--script", "import.py"});

    EXPECT_EQ(result.code, 0) << result.errors;
    EXPECT_EQ(result.output, "8\n");
    EXPECT_TRUE(QFile::exists(QString::fromStdString(folder.file("stool.osb"))));
}

#else

TEST_F(ScriptOptionsTest, SaysThatThereIsNoPython)
{
    const Result result = run({"--script", "any.py"});

    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.errors, EndsWith("asset-manager: this build comes without Python and runs no scripts\n"));
}

#endif

} // namespace
