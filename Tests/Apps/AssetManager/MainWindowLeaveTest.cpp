// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/SceneStore.h"
#include "Kernel/kxController.h"
#include "Kernel/kxModalQuestion.h"
#include "Kernel/kxScenegraph.h"
#include "WindowFixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;

/// A changed scene that something else is to take the place of, and a person who is asked about it.
class MainWindowLeaveTest : public WindowFixture
{
protected:
    MainWindowLeaveTest()
    {
        kxModalQuestion::setAnswerer({}); // the box is shown
        QObject::connect(&_helper, &QTimer::timeout, [this] { answer(); });
        _helper.start(5);
    }

    /// A scene with a chair, saved where the program knows, and one with a table beside it; the chair's is open.
    void openScenes()
    {
        chair = QString::fromStdString(folder.file("chair.osb"));
        table = QString::fromStdString(folder.file("table.osb"));
        store("Table", table);
        store("Chair", chair);
        window->scene().open(chair);
        settle();
    }
    void change()
    {
        addChair("Stool");
        kxController::setModified(true);
        ASSERT_TRUE(window->isWindowModified());
    }
    /// As a person does: opens the scene, and looks.
    std::vector<std::string> stored(const QString &scene)
    {
        EXPECT_EQ(SceneStore::open(scene), "");
        return childNames(root());
    }
    /// The letter that the button of the question shows.
    void answerBy(QMessageBox::StandardButton button) { _answer = button; }
    /// Types into the dialogs for files, or rejects them where it is empty.
    void chooseFile(const QString &file) { _file = file; }
    bool isLeft() const { return !window->isVisible(); }

    QString chair;
    QString table;
    int asked = 0;
    int fileDialogs = 0;

private:
    static void store(const std::string &name, const QString &file)
    {
        kxScenegraph::newDocument();
        addChair(name);
        EXPECT_EQ(SceneStore::save(file), "");
    }
    void answer()
    {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog || input.isBusy() || _isAnswering)
            return;
        _isAnswering = true;
        EXPECT_TRUE(QTest::qWaitForWindowExposed(dialog));
        showForInput(*dialog);
        if (auto *box = qobject_cast<QMessageBox *>(dialog))
            answerBox(*box);
        else
            answerFileDialog();
        _isAnswering = false;
    }
    void answerBox(QMessageBox &box)
    {
        ++asked;
        EXPECT_EQ(box.text(), "The scene was changed. Save it before it is closed?");
        EXPECT_EQ(box.defaultButton(), static_cast<QWidget *>(box.button(QMessageBox::Cancel)))
            << "no key that was pressed too much loses it";
        const QWidget *wanted = box.button(_answer);
        for (int i = 0; i < 4 && QApplication::focusWidget() != wanted; ++i)
            press(Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget(), wanted);
        press(Qt::Key_Return);
    }
    void answerFileDialog()
    {
        ++fileDialogs;
        if (_file.isEmpty()) {
            press(Qt::Key_Escape);
            return;
        }
        type(_file);
        press(Qt::Key_Return);
    }

    QTimer _helper;
    bool _isAnswering = false;
    QMessageBox::StandardButton _answer = QMessageBox::Cancel;
    QString _file;
};

} // namespace

TEST_F(MainWindowLeaveTest, AsksNothingWhereNothingWasChanged)
{
    openScenes();

    press(Qt::Key_N, Qt::ControlModifier);
    EXPECT_THAT(childNames(root()), Not(Contains("Chair")));
    press(Qt::Key_Q, Qt::ControlModifier);

    EXPECT_TRUE(isLeft());
    EXPECT_EQ(asked, 0);
}

TEST_F(MainWindowLeaveTest, SavesTheSceneBeforeANewOne)
{
    openScenes();
    change();
    answerBy(QMessageBox::Save);

    press(Qt::Key_N, Qt::ControlModifier);

    EXPECT_EQ(asked, 1);
    EXPECT_THAT(childNames(root()), Not(Contains("Chair")));
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_TRUE(window->windowTitle().startsWith("unnamed scene"));
    EXPECT_THAT(stored(chair), Contains("Stool"));
}

TEST_F(MainWindowLeaveTest, DiscardsTheSceneForANewOne)
{
    openScenes();
    change();
    answerBy(QMessageBox::Discard);

    press(Qt::Key_N, Qt::ControlModifier);

    EXPECT_EQ(asked, 1);
    EXPECT_THAT(childNames(root()), Not(Contains("Chair")));
    EXPECT_THAT(stored(chair), Not(Contains("Stool")));
}

TEST_F(MainWindowLeaveTest, KeepsTheSceneWhereANewOneIsCancelled)
{
    openScenes();
    change();

    press(Qt::Key_N, Qt::ControlModifier);

    EXPECT_EQ(asked, 1);
    EXPECT_THAT(childNames(root()), Contains("Stool"));
    EXPECT_TRUE(window->isWindowModified());
    EXPECT_TRUE(window->windowTitle().startsWith("chair"));
    EXPECT_THAT(stored(chair), Not(Contains("Stool")));
}

TEST_F(MainWindowLeaveTest, OpensAnotherSceneAfterEachAnswerButCancel)
{
    for (const auto button : {QMessageBox::Cancel, QMessageBox::Discard, QMessageBox::Save}) {
        openScenes();
        change();
        asked = fileDialogs = 0;
        answerBy(button);
        chooseFile(table);

        press(Qt::Key_O, Qt::ControlModifier);
        settle();
        activate();

        const bool isOpened = button != QMessageBox::Cancel;
        EXPECT_EQ(asked, 1);
        EXPECT_EQ(fileDialogs, isOpened ? 1 : 0);
        EXPECT_THAT(childNames(root()), Contains(isOpened ? "Table" : "Stool"));
        EXPECT_EQ(window->isWindowModified(), !isOpened);
        EXPECT_TRUE(window->windowTitle().startsWith(isOpened ? "table" : "chair"));
        EXPECT_EQ(testing::Value(stored(chair), Contains("Stool")), button == QMessageBox::Save);
    }
}

TEST_F(MainWindowLeaveTest, KeepsTheSceneWhereNoOtherIsChosen)
{
    openScenes();
    change();
    answerBy(QMessageBox::Discard);

    press(Qt::Key_O, Qt::ControlModifier);
    settle();

    EXPECT_EQ(fileDialogs, 1);
    EXPECT_THAT(childNames(root()), Contains("Stool"));
    EXPECT_TRUE(window->isWindowModified()) << "nothing was discarded";
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowLeaveTest, QuitsAfterEachAnswerButCancel)
{
    for (const auto button : {QMessageBox::Cancel, QMessageBox::Discard, QMessageBox::Save}) {
        openScenes();
        change();
        asked = 0;
        answerBy(button);

        press(Qt::Key_Q, Qt::ControlModifier);

        EXPECT_EQ(asked, 1);
        EXPECT_EQ(isLeft(), button != QMessageBox::Cancel);
        EXPECT_EQ(testing::Value(stored(chair), Contains("Stool")), button == QMessageBox::Save);
        window->show();
        activate();
    }
}

TEST_F(MainWindowLeaveTest, AsksWhenTheWindowIsClosedAndForTheNameOfASceneWithoutOne)
{
    change();
    const QString place = QString::fromStdString(folder.file("new"));
    answerBy(QMessageBox::Save);

    EXPECT_FALSE(window->close()); // the name is not given
    EXPECT_EQ(fileDialogs, 1);
    EXPECT_TRUE(window->isWindowModified());
    activate();
    chooseFile(place);
    EXPECT_TRUE(window->close());

    EXPECT_EQ(asked, 2);
    EXPECT_EQ(fileDialogs, 2);
    EXPECT_THAT(stored(place + ".osb"), Contains("Stool"));
}

TEST_F(MainWindowLeaveTest, StaysWhereTheSceneCannotBeSaved)
{
    openScenes();
    change();
    ASSERT_TRUE(QFile::remove(chair));
    QDir().mkpath(chair); // no file can be written there
    answerBy(QMessageBox::Save);

    for (const Qt::Key key : {Qt::Key_N, Qt::Key_O, Qt::Key_Q}) {
        asked = 0;
        press(key, Qt::ControlModifier);

        EXPECT_EQ(asked, 1);
        EXPECT_TRUE(takeReport().startsWith("The scene could not be saved as \"chair.osb\"")) << char(key);
        EXPECT_FALSE(isLeft());
        EXPECT_THAT(childNames(root()), Contains("Stool"));
        EXPECT_TRUE(window->isWindowModified());
    }
    EXPECT_EQ(fileDialogs, 0);
}
