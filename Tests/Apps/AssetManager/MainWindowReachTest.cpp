// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/Language.h"
#include "AssetManager/SceneView.h"
#include "WindowFixture.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QDockWidget>
#include <QKeySequence>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTabBar>
#include <QTranslator>

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <set>

namespace {

using testing::IsEmpty;

/// Whether everything can be reached without a mouse.
class MainWindowReachTest : public WindowFixture
{
protected:
    /// The actions of a menu and of those inside it.
    static void collect(const QMenu &menu, std::set<const QAction *> &found)
    {
        for (const QAction *action : menu.actions()) {
            found.insert(action);
            if (action->menu())
                collect(*action->menu(), found);
        }
    }
    /// Those of the bar, which its letters open, and those of the menus that the key for menus opens on parts of the window.
    std::set<const QAction *> inMenus()
    {
        std::set<const QAction *> found;
        for (const QAction *title : window->menuBar()->actions()) {
            EXPECT_TRUE(title->text().contains('&')) << title->text().toStdString();
            collect(*title->menu(), found);
        }
        return found;
    }
    std::set<const QAction *> inMenuOf(QWidget &part)
    {
        part.setFocus();
        std::set<const QAction *> found;
        openMenuByKey([&found](QMenu &menu) { collect(menu, found); });
        return found;
    }
    static std::string describe(const QWidget &widget)
    {
        std::string text = widget.metaObject()->className();
        for (const QWidget *part = &widget; part; part = part->parentWidget())
            text += " < " + part->objectName().toStdString();
        return text;
    }
    /// Whether people do something with it, and it is no part of another that takes keys for it.
    static bool takesInput(const QWidget &widget)
    {
        if (!widget.isVisible() || !widget.isEnabled() || widget.focusProxy())
            return false;
        const QWidget *parent = widget.parentWidget();
        if (qobject_cast<const QScrollBar *>(&widget) || qobject_cast<const QAbstractSpinBox *>(parent) ||
            qobject_cast<const QComboBox *>(parent) || qobject_cast<const QLineEdit *>(parent) ||
            qobject_cast<const QTabBar *>(parent))
            return false; // the arrows beside tabs, the cross in a line: keys of what they belong to
        if (qobject_cast<const QDockWidget *>(parent) && qobject_cast<const QAbstractButton *>(&widget))
            return false; // the menu has the docks
        if (widget.metaObject()->className() == QByteArray("QHeaderView") ||
            qobject_cast<const QAbstractItemView *>(parent))
            return false;
        return qobject_cast<const QAbstractButton *>(&widget) || qobject_cast<const QAbstractItemView *>(&widget) ||
               qobject_cast<const QLineEdit *>(&widget) || qobject_cast<const QAbstractSlider *>(&widget) ||
               qobject_cast<const QAbstractSpinBox *>(&widget) || qobject_cast<const QComboBox *>(&widget) ||
               qobject_cast<const QTabBar *>(&widget) || qobject_cast<const QPlainTextEdit *>(&widget) ||
               qobject_cast<const kxViewport *>(&widget);
    }
    /// Of buttons one of which is on, that one is led to, and the arrows lead on.
    static bool isBesideOneOf(const std::set<const QWidget *> &reached, const QWidget &part)
    {
        const auto *button = qobject_cast<const QAbstractButton *>(&part);
        return button && button->autoExclusive() &&
               std::any_of(reached.begin(), reached.end(), [button](const QWidget *other) {
                   const auto *beside = qobject_cast<const QAbstractButton *>(other);
                   return beside && beside->autoExclusive() && beside->parent() == button->parent();
               });
    }
    /// What the key for the next control does not lead to.
    std::vector<std::string> notReached(Qt::Key key)
    {
        std::set<const QWidget *> reached;
        while (QApplication::focusWidget() && reached.insert(QApplication::focusWidget()).second)
            input.press(key, Qt::NoModifier);
        std::vector<std::string> missing;
        for (const QWidget *part : window->findChildren<QWidget *>())
            if (part->window() == window.get() && takesInput(*part) && reached.count(part) == 0 &&
                !isBesideOneOf(reached, *part))
                missing.push_back(describe(*part));
        return missing;
    }
    void openWithEverything()
    {
        const std::string stool = storeGeometry("Stool");
        const std::string oak = storeMaterial("Oak");
        addChair("Chair");
        addPlate("Logo");
        open();
        clickAsset(stool);
        auto &tag = widget<QLineEdit>("newTag");
        click(tag, tag.rect().center());
        type("wood");
        press(Qt::Key_Return);
        clickAsset(oak);
        press(Qt::Key_Return, Qt::ControlModifier);
        settle();
        clickAsset(stool);
        widget<QWidget>("scanProgress").show(); // as while libraries are read
    }
};

TEST_F(MainWindowReachTest, GivesEveryActionAKeyOrAPlaceInAMenu)
{
    openWithEverything();
    std::set<const QAction *> reached = inMenus();
    for (const char *dock : {"treeDock", "materialDock", "environmentDock", "plateDock"}) {
        auto &docked = widget<QDockWidget>(dock);
        if (dock != std::string("treeDock"))
            raise(dock);
        auto *view = docked.findChild<QAbstractItemView *>();
        clickItem(*view, view->model()->index(0, 0));
        reached.merge(inMenuOf(*view));
    }

    std::vector<std::string> missing;
    for (const QAction *action : window->findChildren<QAction *>())
        if (!action->text().isEmpty() && !action->menu() && !action->isSeparator() && action->shortcuts().isEmpty() &&
            reached.count(action) == 0 && !qobject_cast<const QLineEdit *>(action->parent()))
            missing.push_back(action->text().toStdString() + " of " + action->parent()->objectName().toStdString());

    EXPECT_THAT(missing, IsEmpty());
}

/// The letters are chosen by hand, in each language.
TEST_F(MainWindowReachTest, GivesEachEntryOfAMenuALetterOfItsOwnInEachLanguage)
{
    const QLocale before;
    for (const char *language : {"en", "de"}) {
        window.reset();
        Language::install(QLocale(QLatin1String(language)));
        makeWindow();
        std::vector<QMenu *> menus;
        std::map<QString, QString> titles;
        for (const QAction *title : window->menuBar()->actions()) {
            menus.push_back(title->menu());
            const QString letter = QKeySequence::mnemonic(title->text()).toString();
            EXPECT_NE(letter, "") << title->text().toStdString();
            EXPECT_EQ(titles[letter], "") << title->text().toStdString();
            titles[letter] = title->text();
        }
        for (const QMenu *menu : menus) {
            std::map<QString, QString> letters;
            for (const QAction *action : menu->actions()) {
                const QString letter = QKeySequence::mnemonic(action->text()).toString();
                if (letter.isEmpty())
                    continue; // panels, which say what the panel's title says
                EXPECT_EQ(letters[letter], "")
                    << language << ": " << letter.toStdString() << " for " << action->text().toStdString();
                letters[letter] = action->text();
            }
        }
        for (QTranslator *translator : QCoreApplication::instance()->findChildren<QTranslator *>())
            delete translator;
    }
    QLocale::setDefault(before);
}

TEST_F(MainWindowReachTest, LeadsToEveryControlByTab)
{
    openWithEverything();

    EXPECT_THAT(notReached(Qt::Key_Tab), IsEmpty());
    raise("propertyDock");
    raise("plateDock");
    EXPECT_THAT(notReached(Qt::Key_Backtab), IsEmpty());
    raise("environmentDock");
    press(Qt::Key_2, Qt::ControlModifier); // the list
    EXPECT_THAT(notReached(Qt::Key_Tab), IsEmpty());
}

TEST_F(MainWindowReachTest, LeadsFromTilesToTheListByTheArrows)
{
    storeMaterial("Oak");
    open();
    auto &tiles = widget<QAbstractButton>("showTiles");
    tiles.setFocus();

    press(Qt::Key_Right);

    EXPECT_TRUE(widget<QAbstractButton>("showLines").hasFocus());
    EXPECT_EQ(window->browser().look(), AssetBrowser::Look::Lines);
    press(Qt::Key_Left);
    EXPECT_TRUE(tiles.hasFocus());
    EXPECT_EQ(window->browser().look(), AssetBrowser::Look::Tiles);
}

} // namespace
