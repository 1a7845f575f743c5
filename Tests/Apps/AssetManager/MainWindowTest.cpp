// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/MainWindow.h"

#include "AssetManager/Settings.h"
#include "AssetManager/Tour.h"
#include "AssetManager/WelcomeDialog.h"
#include "Kernel/kxModalQuestion.h"
#include "WindowFixture.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>
#include <QTabBar>

#include <gmock/gmock.h>

#include <map>

namespace {

using testing::IsEmpty;

class MainWindowTest : public WindowFixture
{
protected:
    /// What a person can use without anything that says what it is, by class and object name.
    static std::vector<std::string> unnamed(const QWidget &parent)
    {
        std::vector<std::string> found;
        for (const QWidget *widget : parent.findChildren<QWidget *>())
            if (isUsed(*widget) && !isNamed(*widget))
                found.push_back(QString("%1 \"%2\" in \"%3\"")
                                    .arg(widget->metaObject()->className(), widget->objectName(),
                                         widget->parentWidget()->objectName())
                                    .toStdString());
        return found;
    }

private:
    static bool isUsed(const QWidget &widget)
    {
        if (widget.objectName().startsWith("qt_")) // parts of other widgets, which have the names
            return false;
        if (widget.inherits("QLineEditIconButton") || widget.inherits("QTableCornerButton")) // as well
            return false;
        if (qobject_cast<const QScrollBar *>(&widget) || qobject_cast<const QHeaderView *>(&widget))
            return false;
        return qobject_cast<const QAbstractButton *>(&widget) || qobject_cast<const QLineEdit *>(&widget) ||
               qobject_cast<const QAbstractItemView *>(&widget) || qobject_cast<const QAbstractSlider *>(&widget) ||
               qobject_cast<const QComboBox *>(&widget) || qobject_cast<const QAbstractSpinBox *>(&widget);
    }
    static bool hasBuddy(const QWidget &widget)
    {
        for (const QLabel *label : widget.window()->findChildren<QLabel *>())
            if (label->buddy() == &widget)
                return true;
        return false;
    }
    static bool isNamed(const QWidget &widget)
    {
        if (!widget.accessibleName().isEmpty() || hasBuddy(widget))
            return true;
        const auto *button = qobject_cast<const QAbstractButton *>(&widget);
        // A sign such as a star is no name.
        if (button && button->text().size() > 1)
            return true;
        return button && button->inherits("QDockWidgetTitleButton"); // Qt's own
    }
};

TEST_F(MainWindowTest, NamesEverythingForThoseWhoDoNotSeeIt)
{
    addChair("Chair");
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);

    EXPECT_THAT(unnamed(*window), IsEmpty());
}

TEST_F(MainWindowTest, NamesEverythingInItsDialogs)
{
    int dialogs = 0;
    open();
    kxModalQuestion::setDialogAnswerer([&](QDialog &dialog) {
        EXPECT_THAT(unnamed(dialog), IsEmpty());
        EXPECT_FALSE(dialog.windowTitle().isEmpty());
        ++dialogs;
        return QDialog::Rejected;
    });

    window->welcome();
    window->showTrash();
    window->importFiles({QStringLiteral(KX_TEST_MODELS "/OBJ/box.obj")}, path());

    EXPECT_EQ(dialogs, 3);
}

TEST_F(MainWindowTest, HasATextForEachActionOfItsMenus)
{
    EXPECT_GT(menuActions().size(), 20U);
    for (const QAction *action : menuActions())
        EXPECT_FALSE(action->text().isEmpty()) << action->objectName().toStdString();
}

TEST_F(MainWindowTest, GivesNoTwoActionsTheSameKeys)
{
    std::map<QString, QStringList> byKeys;
    for (const QAction *action : menuActions())
        if (!action->shortcut().isEmpty())
            byKeys[action->shortcut().toString()].append(action->text());

    for (const char *keys : {"Ctrl+N", "Ctrl+O", "Ctrl+S", "Ctrl+L", "Ctrl+I", "Ctrl+Shift+N", "F5", "Ctrl+Q", "Ctrl+Z",
                             "F2", "Del", "Ctrl+F", "Ctrl+Return", "Ctrl+D", "Ctrl+1", "Ctrl+2", "F1"})
        EXPECT_EQ(byKeys[keys].size(), 1) << keys;
    for (const auto &[keys, texts] : byKeys)
        EXPECT_EQ(texts.size(), 1) << keys.toStdString() << ": " << texts.join(", ").toStdString();
}

TEST_F(MainWindowTest, ReachesEachMenuByTheKeyboard)
{
    const int count = window->menuBar()->actions().size();
    EXPECT_EQ(count, 5);
    for (int i = 0; i < count; ++i) {
        makeWindow(); // a menu bar that was used keeps the keyboard for a while
        const QAction *title = window->menuBar()->actions().at(i);
        const int place = title->text().indexOf('&');
        ASSERT_GE(place, 0) << title->text().toStdString();

        press(static_cast<Qt::Key>(title->text().at(place + 1).toUpper().unicode()), Qt::AltModifier);

        EXPECT_EQ(QApplication::activePopupWidget(), title->menu()) << title->text().toStdString();
        while (QApplication::activePopupWidget())
            press(Qt::Key_Escape);
    }
}

TEST_F(MainWindowTest, GreetsOnceAndShowsAroundByTheKeyboard)
{
    open();
    EXPECT_TRUE(Settings::isFirstStart());
    kxModalQuestion::setDialogAnswerer([&](QDialog &dialog) {
        auto &welcome = dynamic_cast<WelcomeDialog &>(dialog);
        showForInput(welcome);
        press(Qt::Key_Escape);
        return welcome.result();
    });

    window->welcome();

    EXPECT_FALSE(Settings::isFirstStart());
    EXPECT_EQ(window->findChild<Tour *>(), nullptr); // whoever closes the dialog wants to be left alone
}

TEST_F(MainWindowTest, ToursByTheKeyboardAndThenIsUsableAgain)
{
    open();
    press(Qt::Key_F1);
    QPointer<Tour> tour = window->findChild<Tour *>();
    ASSERT_TRUE(tour);
    std::vector<QString> texts;

    while (tour && texts.size() < 10) {
        texts.push_back(tour->findChild<QLabel *>("tourText")->text());
        press(Qt::Key_Space);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    EXPECT_FALSE(tour);
    EXPECT_EQ(texts.size(), 5U);
    EXPECT_EQ(std::set<QString>(texts.begin(), texts.end()).size(), texts.size());
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(widget<QLineEdit>("search").hasFocus());
}

TEST_F(MainWindowTest, EndsTheTourByEscape)
{
    open();
    press(Qt::Key_F1);
    QPointer<Tour> tour = window->findChild<Tour *>();
    ASSERT_TRUE(tour);

    press(Qt::Key_Escape);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    EXPECT_FALSE(tour);
}

} // namespace
