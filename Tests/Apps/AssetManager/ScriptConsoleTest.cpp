// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ScriptConsole.h"

#include "AssetManager/ScriptLine.h"
#include "AssetManager/ScriptRunner.h"
#include "SceneFixture.h"

#include <QFile>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTextBlock>
#include <QTimer>

namespace {

class ScriptConsoleTest : public SceneFixture
{
protected:
    void enter(const QString &text)
    {
        QTest::keyClicks(input(), text);
        QTest::keyClick(input(), Qt::Key_Return);
    }
    QString output() const { return console.findChild<QPlainTextEdit *>("scriptOutput")->toPlainText(); }
    ScriptLine *input() const { return console.findChild<ScriptLine *>("scriptInput"); }
    QPushButton *button(const char *name) const { return console.findChild<QPushButton *>(name); }
    QColor colorOf(const QString &line) const
    {
        const QTextDocument *text = console.findChild<QPlainTextEdit *>("scriptOutput")->document();
        for (QTextBlock block = text->begin(); block.isValid(); block = block.next())
            if (block.text() == line)
                return block.begin().fragment().charFormat().foreground().color();
        ADD_FAILURE() << "no line " << line.toStdString();
        return {};
    }

    ScriptRunner runner{stack};
    ScriptConsole console{runner};
};

TEST_F(ScriptConsoleTest, ShowsWhatWasEnteredAndWhatCameOfIt)
{
    enter("6 * 7");
    enter("for i in range(2):");
    enter("print(i)");
    QTest::keyClick(input(), Qt::Key_Return);

    EXPECT_EQ(output().toStdString(), ">>> 6 * 7\n42\n>>> for i in range(2):\n...     print(i)\n... \n0\n1\n");
}

TEST_F(ScriptConsoleTest, TellsErrorsFromResultsOnAnyGround)
{
    for (const QColor &ground : {QColor(Qt::white), QColor(30, 30, 30)}) {
        QPalette palette = console.palette();
        palette.setColor(QPalette::Base, ground);
        palette.setColor(QPalette::Text, ground.lightness() > 128 ? Qt::black : Qt::white);
        console.setPalette(palette);
        button("scriptClear")->click();

        enter("print('fine')");
        enter("1 / 0");

        const QColor error = colorOf("ZeroDivisionError: division by zero");
        EXPECT_NE(error, colorOf("fine"));
        EXPECT_EQ(colorOf("fine"), palette.color(QPalette::Text));
        EXPECT_GT(std::abs(qGray(error.rgb()) - qGray(ground.rgb())), 80);
    }
}

TEST_F(ScriptConsoleTest, StopsAScriptByItsButton)
{
    QPushButton *stop = button("scriptStop");
    EXPECT_FALSE(stop->isEnabled());
    bool wasEnabled = false;
    bool couldBeEntered = true;
    QObject::connect(&runner, &ScriptRunner::started, &console, [&] {
        QTimer::singleShot(0, &console, [&] {
            wasEnabled = stop->isEnabled();
            couldBeEntered = !input()->isReadOnly();
            stop->click();
        });
    });

    enter("while True: pass");
    QTest::keyClick(input(), Qt::Key_Return);

    EXPECT_TRUE(wasEnabled);
    EXPECT_FALSE(couldBeEntered);
    EXPECT_TRUE(output().endsWith("KeyboardInterrupt\n"));
    EXPECT_FALSE(stop->isEnabled());
    EXPECT_FALSE(input()->isReadOnly());
}

TEST_F(ScriptConsoleTest, RunsFiles)
{
    QFile file(QString::fromStdString(folder.file("hello.py")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("print('hello')\n");
    file.close();

    console.runFile(file.fileName());

    EXPECT_EQ(output(), "Running " + file.fileName() + "\nhello\n");
}

TEST_F(ScriptConsoleTest, CompletesWithTab)
{
    enter("throne_of_oak = 1");
    QTest::keyClicks(input(), "throne_");
    QTest::keyClick(input(), Qt::Key_Tab);
    EXPECT_EQ(input()->toPlainText(), "throne_of_oak");

    enter("; throne_of_ash = 2");
    QTest::keyClicks(input(), "thr");
    QTest::keyClick(input(), Qt::Key_Tab);
    EXPECT_EQ(input()->toPlainText(), "throne_of_");
    EXPECT_TRUE(output().endsWith("throne_of_ash  throne_of_oak\n"));
}

TEST_F(ScriptConsoleTest, HasNamesForThoseWhoDoNotSee)
{
    for (const char *name : {"scriptOutput", "scriptInput"})
        EXPECT_FALSE(console.findChild<QWidget *>(name)->accessibleName().isEmpty()) << name;
    for (const char *name : {"scriptRunFile", "scriptStop", "scriptClear"}) {
        EXPECT_FALSE(button(name)->text().isEmpty()) << name;
        EXPECT_FALSE(button(name)->accessibleDescription().isEmpty()) << name;
    }
}

TEST_F(ScriptConsoleTest, KeepsTheLastLinesOnly)
{
    enter("for i in range(12000): print(i)");
    QTest::keyClick(input(), Qt::Key_Return);

    EXPECT_TRUE(output().endsWith("11998\n11999\n"));
    EXPECT_LE(output().count('\n'), 10000);
}

} // namespace
