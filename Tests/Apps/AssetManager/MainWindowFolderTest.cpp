// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/FolderTree.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/Settings.h"
#include "Kernel/kxModalQuestion.h"
#include "WindowFixture.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QTreeView>

#include <gmock/gmock.h>

namespace {

/// What a person does to the folders of a library in their tree.
class MainWindowFolderTest : public WindowFixture
{
protected:
    /// Opens a library with these folders.
    void openWith(const QStringList &folders)
    {
        for (const QString &name : folders)
            ASSERT_TRUE(QDir().mkpath(path(name)));
        open();
    }
    void clickAlso(const QString &directory, Qt::KeyboardModifiers modifiers = Qt::ControlModifier)
    {
        clickItem(window->folders(), window->libraries().folders().indexOf(directory), modifiers);
    }
    bool hasFolder(const QString &name) const
    {
        const bool isShown = window->libraries().folders().indexOf(path(name)).isValid();
        EXPECT_EQ(isShown, QFileInfo(path(name)).isDir()) << name.toStdString();
        return isShown;
    }
    /// Has these keys pressed in the dialog that asks for a folder.
    void answerWith(const std::vector<Qt::Key> &keys)
    {
        kxModalQuestion::setDialogAnswerer([this, keys](QDialog &dialog) {
            ++asked;
            showForInput(dialog);
            for (const Qt::Key key : keys)
                press(key);
            return dialog.result();
        });
    }
    void undo()
    {
        activate();
        press(Qt::Key_Z, Qt::ControlModifier);
        settle();
    }

    int asked = 0;
};

TEST_F(MainWindowFolderTest, MovesByTheKeyboardToAFolderThatIsChosen)
{
    openWith({"All", "Wood"});
    clickFolder(path("Wood"));
    answerWith({Qt::Key_Down, Qt::Key_Return}); // from the library, in which it is

    press(Qt::Key_M, Qt::ControlModifier);
    settle();

    EXPECT_TRUE(hasFolder("All/Wood"));
    EXPECT_FALSE(hasFolder("Wood"));
    undo();
    EXPECT_TRUE(hasFolder("Wood"));
    EXPECT_FALSE(hasFolder("All/Wood"));
    EXPECT_EQ(window->folders().folder(), path("Wood")) << "it is chosen again";
}

TEST_F(MainWindowFolderTest, MergesByTheKeyboardAfterAsking)
{
    openWith({"A/Wood/Dark", "Wood/Light"});
    clickFolder(path("A/Wood"));
    answerWith({Qt::Key_Up, Qt::Key_Return}); // from its folder to the library
    QString question;
    kxModalQuestion::setAnswerer([&](const kxModalQuestion::Question &shown) {
        question = shown.text;
        return QMessageBox::Yes;
    });

    press(Qt::Key_M, Qt::ControlModifier);
    settle();

    EXPECT_TRUE(question.contains("Wood")) << question.toStdString();
    EXPECT_TRUE(hasFolder("Wood/Dark"));
    EXPECT_TRUE(hasFolder("Wood/Light"));
    EXPECT_FALSE(hasFolder("A/Wood"));
    undo();
    EXPECT_TRUE(hasFolder("A/Wood/Dark"));
    EXPECT_FALSE(hasFolder("Wood/Dark"));
}

TEST_F(MainWindowFolderTest, MovesByTheMenuOfTheFolderButNeverIntoItself)
{
    openWith({"All", "Wood/Inner"});
    kxModalQuestion::setDialogAnswerer([this](QDialog &dialog) {
        showForInput(dialog);
        auto *tree = dialog.findChild<QTreeView *>("folders");
        const QPushButton *move = dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok);
        clickItem(*tree, rowOf(*tree, "Wood"));
        EXPECT_FALSE(move->isEnabled());
        tree->expandAll();
        clickItem(*tree, rowOf(*tree, "Inner"));
        EXPECT_FALSE(move->isEnabled());
        clickItem(*tree, rowOf(*tree, "All"));
        EXPECT_TRUE(move->isEnabled());
        press(Qt::Key_Return);
        return dialog.result();
    });

    openMenu(*window->folders().viewport(), placeOfFolder(path("Wood")),
             [this](QMenu &menu) { clickInMenu(menu, "Move to folder..."); });
    settle();

    EXPECT_TRUE(hasFolder("All/Wood/Inner"));
    EXPECT_FALSE(hasFolder("Wood"));
}

TEST_F(MainWindowFolderTest, AsksForNoFolderWhereThereIsNothingToMove)
{
    openWith({"Wood"});
    answerWith({Qt::Key_Return});

    clickFolder(path());
    press(Qt::Key_M, Qt::ControlModifier); // a library stays
    window->browser().setFocus();
    press(Qt::Key_M, Qt::ControlModifier); // no asset is selected

    EXPECT_EQ(asked, 0);
    EXPECT_FALSE(window->undoStack().canUndo());
}

TEST_F(MainWindowFolderTest, DeletesSeveralAsOneStep)
{
    openWith({"A/Inner", "B", "C"});
    clickFolder(path("A"));
    clickAlso(path("C"));

    press(Qt::Key_Delete);
    settle();

    EXPECT_FALSE(hasFolder("A"));
    EXPECT_TRUE(hasFolder("B"));
    EXPECT_FALSE(hasFolder("C"));
    EXPECT_EQ(window->undoStack().undoText(), "Deletion of 2 folder(s)");
    undo();
    EXPECT_TRUE(hasFolder("A/Inner"));
    EXPECT_TRUE(hasFolder("C"));
    EXPECT_FALSE(window->undoStack().canUndo());
}

TEST_F(MainWindowFolderTest, DeletesSeveralByTheMenu)
{
    openWith({"A", "B", "C"});
    clickFolder(path("A"));
    clickAlso(path("B"), Qt::ShiftModifier);

    openMenu(*window->folders().viewport(), placeOfFolder(path("A")), [this](QMenu &menu) {
        for (const QAction *action : menu.actions())
            EXPECT_NE(action->text(), "Re&name") << "that is of one";
        clickInMenu(menu, "Delete");
    });
    settle();

    EXPECT_FALSE(hasFolder("A"));
    EXPECT_FALSE(hasFolder("B"));
    EXPECT_TRUE(hasFolder("C"));
}

TEST_F(MainWindowFolderTest, MovesSeveralByTheKeyboard)
{
    openWith({"A/Inner", "B", "C"});
    window->folders().expandAll();
    clickFolder(path("A"));
    clickAlso(path("A/Inner")); // goes with the one that it is in
    clickAlso(path("B"));
    answerWith({Qt::Key_End, Qt::Key_Return});

    press(Qt::Key_M, Qt::ControlModifier);
    settle();

    EXPECT_EQ(reported(), "");
    EXPECT_TRUE(hasFolder("C/A/Inner"));
    EXPECT_TRUE(hasFolder("C/B"));
    EXPECT_FALSE(hasFolder("A"));
    undo();
    EXPECT_TRUE(hasFolder("A/Inner"));
    EXPECT_TRUE(hasFolder("B"));
}

TEST_F(MainWindowFolderTest, DragsSeveral)
{
    openWith({"A", "B", "C"});
    clickFolder(path("A"));
    clickAlso(path("B"));

    dragMouse(*window->folders().viewport(), placeOfFolder(path("B")), *window->folders().viewport(),
              placeOfFolder(path("C")));

    EXPECT_TRUE(hasFolder("C/A"));
    EXPECT_TRUE(hasFolder("C/B"));
    undo();
    EXPECT_TRUE(hasFolder("A"));
    EXPECT_TRUE(hasFolder("B"));
    EXPECT_FALSE(window->undoStack().canUndo());
}

TEST_F(MainWindowFolderTest, ChangesNothingByASlip)
{
    openWith({"A/Inner", "B"});
    window->folders().expandAll();
    QWidget &tree = *window->folders().viewport();
    const QPoint away(QApplication::startDragDistance() + 2, 2);
    const QPoint from = tree.mapToGlobal(placeOfFolder(path("B")));
    const QPoint to = tree.mapToGlobal(placeOfFolder(path("A")));

    input.dragAndEscape({from, from + away, to});
    settle();
    dragMouse(tree, placeOfFolder(path("B")), tree, placeOfFolder(path("B")) + QPoint(1, 1)); // on itself
    dragMouse(tree, placeOfFolder(path("A")), tree, placeOfFolder(path("A/Inner")));          // on what is in it
    dragMouse(tree, placeOfFolder(path("A/Inner")), tree, placeOfFolder(path("A")));          // where it is
    dragMouse(tree, placeOfFolder(path()), tree, placeOfFolder(path("B")));                   // a library

    EXPECT_TRUE(hasFolder("A/Inner"));
    EXPECT_TRUE(hasFolder("B"));
    EXPECT_EQ(reported(), "");
    EXPECT_FALSE(window->undoStack().canUndo());
}

TEST_F(MainWindowFolderTest, ShowsTheFolderThatWasChosenLastAgain)
{
    openWith({"All/Wood"});
    window->folders().expandAll();
    clickFolder(path("All/Wood"));
    window->close();
    makeWindow();

    window->openLibraries({});
    settle();

    EXPECT_EQ(window->folders().folder(), path("All/Wood"));
    EXPECT_TRUE(window->folders().selectionModel()->isSelected(window->folders().currentIndex()));
}

TEST_F(MainWindowFolderTest, LeavesWhatAPersonChoseBeforeTheLastFolderWasRead)
{
    openWith({"Wood", "Zinc"});
    Settings::setFolder(path("Zinc"));
    makeWindow();
    const auto choice = QObject::connect(&window->libraries().scan(), &LibraryScan::folderFound, window.get(),
                                         [this](const QString &, const QString &found) {
                                             if (found == path("Wood"))
                                                 clickFolder(found);
                                         });

    window->openLibraries({path()});
    settle();
    QObject::disconnect(choice);

    EXPECT_EQ(window->folders().folder(), path("Wood"));
}

} // namespace
