// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/FolderTree.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/Trash.h"
#include "AssetManager/TrashDialog.h"
#include "Kernel/kxModalQuestion.h"
#include "WindowFixture.h"

#include <QAbstractButton>
#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QTest>
#include <QToolTip>

namespace {

/// What cannot be taken back, or leaves nothing to take back, says so where it is chosen.
class MainWindowWarningTest : public WindowFixture
{
protected:
    static QAction *actionIn(const QMenu &menu, const QString &text)
    {
        for (QAction *action : menu.actions())
            if (QString(action->text()).remove('&') == text)
                return action;
        ADD_FAILURE() << "no action: " << text.toStdString();
        return nullptr;
    }
    /// What appears beside the pointer on an action of an open menu.
    QString tipOf(QMenu &menu, const QString &text)
    {
        QToolTip::hideText();
        input.moveTo(menu.mapToGlobal(menu.actionGeometry(actionIn(menu, text)).center()));
        EXPECT_TRUE(QTest::qWaitFor([] { return QToolTip::isVisible(); }, Patience)) << text.toStdString();
        return QToolTip::text();
    }
    QString tipInMenuBar(const char *menu, const QString &text)
    {
        auto &opened = widget<QMenu>(menu);
        QMenuBar &bar = *window->menuBar();
        click(bar, bar.actionGeometry(opened.menuAction()).center());
        for (int i = 0; i < opened.actions().size() && opened.activeAction() != actionIn(opened, text); ++i)
            press(Qt::Key_Down);
        const QString status = window->statusBar()->currentMessage();
        QString tip = tipOf(opened, text);
        EXPECT_EQ(status, tip) << "for those who use the keys";
        press(Qt::Key_Escape);
        press(Qt::Key_Escape);
        return tip;
    }
};

} // namespace

TEST_F(MainWindowWarningTest, SaysThatPreviewsAreReplaced)
{
    open();

    EXPECT_EQ(tipInMenuBar("assetMenu", "Render previews anew"),
              "Replaces the previews that are there, also those that were painted by hand. Undo brings them back.");
}

TEST_F(MainWindowWarningTest, SaysThatAnotherSceneLeavesNothingToUndo)
{
    open();

    EXPECT_EQ(tipInMenuBar("fileMenu", "New scene"), "Undo forgets what was done in the scene before.");
}

TEST_F(MainWindowWarningTest, SaysWhatClosingALibraryMeans)
{
    open();
    QString tip;

    openMenu(*window->folders().viewport(), placeOfFolder(path()),
             [&](QMenu &menu) { tip = tipOf(menu, "Close library"); });

    EXPECT_EQ(tip, "Its files stay as they are. What was done in it can be undone only while it is open.");
}

TEST_F(MainWindowWarningTest, SaysThatEmptyingTheTrashTakesFormerVersionsToo)
{
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);
    press(Qt::Key_Delete);
    settle();
    QString asked;
    kxModalQuestion::setAnswerer([&](const kxModalQuestion::Question &question) {
        asked = question.text;
        return QMessageBox::Cancel;
    });
    QString tip;
    kxModalQuestion::setDialogAnswerer([&](QDialog &dialog) {
        showForInput(dialog);
        auto &button = *dialog.findChild<QAbstractButton *>("empty");
        tip = button.toolTip();
        click(button, button.rect().center());
        return QDialog::Rejected;
    });

    window->showTrash();

    const QString sentence =
        "What Undo keeps of assets that were saved over, and of previews and tags that were changed, "
        "goes as well.";
    EXPECT_TRUE(asked.endsWith(sentence)) << asked.toStdString();
    EXPECT_TRUE(asked.contains("cannot be undone")) << asked.toStdString();
    EXPECT_EQ(tip, "Also removes the former versions that Undo would bring back.");
    EXPECT_EQ(Trash(path()).entries().size(), 1U);
}
