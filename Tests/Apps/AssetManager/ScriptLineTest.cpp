// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ScriptLine.h"

#include <QApplication>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace {

class ScriptLineTest : public testing::Test
{
protected:
    QStringList entered()
    {
        QStringList all;
        for (const QList<QVariant> &call : spy)
            all.append(call.first().toString());
        return all;
    }
    void type(const QString &text) { QTest::keyClicks(&line, text); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&line, key, modifiers);
    }

    QStringList words;
    QString asked;
    ScriptLine line{{[](const QString &text) { return !text.endsWith(':') && !text.endsWith("    x"); },
                     [this](const QString &text) {
                         asked = text;
                         return words;
                     }}};
    QSignalSpy spy{&line, &ScriptLine::entered};
};

TEST_F(ScriptLineTest, EntersWhatIsComplete)
{
    type("x = 1");
    press(Qt::Key_Return);

    EXPECT_EQ(entered(), QStringList{"x = 1"});
    EXPECT_EQ(line.toPlainText(), "");
    press(Qt::Key_Return);
    EXPECT_EQ(entered().size(), 1); // nothing to enter
}

TEST_F(ScriptLineTest, GoesOnWithWhatIsNotComplete)
{
    const int height = line.height();
    type("  for a in b:");
    press(Qt::Key_Return);

    EXPECT_EQ(line.toPlainText(), "  for a in b:\n      ");
    EXPECT_GT(line.height(), height);
    EXPECT_EQ(entered(), QStringList());

    type("y");
    press(Qt::Key_Return);
    EXPECT_EQ(entered(), QStringList{"  for a in b:\n      y"});
    EXPECT_EQ(line.height(), height);
}

TEST_F(ScriptLineTest, EndsABlockWithALineOfSpaces)
{
    line.insertPlainText("if a:\n    b\n    ");
    press(Qt::Key_Return);

    EXPECT_EQ(entered(), QStringList{"if a:\n    b\n"});
}

TEST_F(ScriptLineTest, TakesSeveralLinesFromElsewhere)
{
    line.insertPlainText("a = 1\nb = 2\n");
    press(Qt::Key_Return);

    EXPECT_EQ(entered(), QStringList{"a = 1\nb = 2\n"});
}

TEST_F(ScriptLineTest, BeginsALineWithShift)
{
    type("a");
    press(Qt::Key_Return, Qt::ShiftModifier);
    type("b");
    press(Qt::Key_Return);

    ASSERT_EQ(entered().size(), 1);
    EXPECT_EQ(entered().first().split(QRegularExpression("[\n\u2028]")), (QStringList{"a", "b"}));
}

TEST_F(ScriptLineTest, GoesThroughWhatWasEntered)
{
    for (const char *text : {"one", "two", "two"}) {
        type(text);
        press(Qt::Key_Return);
    }
    type("unfin");

    press(Qt::Key_Up);
    EXPECT_EQ(line.toPlainText(), "two");
    press(Qt::Key_Up);
    EXPECT_EQ(line.toPlainText(), "one");
    press(Qt::Key_Up);
    EXPECT_EQ(line.toPlainText(), "one");
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_EQ(line.toPlainText(), "unfin");
    press(Qt::Key_Down);
    EXPECT_EQ(line.toPlainText(), "unfin");
}

TEST_F(ScriptLineTest, MovesInSeveralLinesBeforeItGoesBack)
{
    type("one");
    press(Qt::Key_Return);
    line.insertPlainText("a\nb");

    press(Qt::Key_Up);
    EXPECT_EQ(line.toPlainText(), "a\nb");
    press(Qt::Key_Up);
    EXPECT_EQ(line.toPlainText(), "one");
}

TEST_F(ScriptLineTest, CompletesTheOnlyWord)
{
    words = QStringList{"kx.scene"};
    type("print(kx.sc");
    press(Qt::Key_Tab);

    EXPECT_EQ(asked, "print(kx.sc");
    EXPECT_EQ(line.toPlainText(), "print(kx.scene");
}

TEST_F(ScriptLineTest, OffersSeveralWords)
{
    QSignalSpy offered(&line, &ScriptLine::offered);
    words = QStringList{"selection", "select_all"};
    type("s");
    press(Qt::Key_Tab);

    EXPECT_EQ(line.toPlainText(), "select");
    ASSERT_EQ(offered.count(), 1);
    EXPECT_EQ(offered.first().first().toStringList(), words);
}

TEST_F(ScriptLineTest, IndentsWhereNothingIsToBeCompleted)
{
    line.insertPlainText("if x:\n");
    press(Qt::Key_Tab);

    EXPECT_EQ(line.toPlainText(), "if x:\n    ");
    EXPECT_EQ(asked, "");
}

TEST_F(ScriptLineTest, LetsTheFocusGoWhereItIsEmpty)
{
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    auto *other = new QLineEdit;
    layout->addWidget(&line);
    layout->addWidget(other);
    window.show();
    QApplication::setActiveWindow(&window);
    line.setFocus();
    ASSERT_TRUE(line.hasFocus());

    press(Qt::Key_Tab);

    EXPECT_TRUE(other->hasFocus());
    line.setParent(nullptr);
}

} // namespace
