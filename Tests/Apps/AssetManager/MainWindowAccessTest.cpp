// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/FailureBox.h"
#include "AssetManager/LibraryActions.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/Tour.h"
#include "Kernel/kxModalQuestion.h"
#include "SceneGraph/Light.h"
#include "WindowFixture.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDockWidget>
#include <QHeaderView>
#include <QLabel>
#include <QListView>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QScrollBar>
#include <QTabBar>
#include <QTimer>
#include <QTreeView>

#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// What the window and its dialogs say to those who do not see them.
class MainWindowAccessTest : public WindowFixture
{
protected:
    static QString spokenNameOf(const QWidget &widget)
    {
        auto *interface = QAccessible::queryAccessibleInterface(const_cast<QWidget *>(&widget));
        return interface ? interface->text(QAccessible::Name) : QString();
    }
    /// What can have the keyboard or tells something, and has no name of at least two letters. A sign such as a star is none.
    static std::vector<std::string> unnamed(const QWidget &parent)
    {
        std::vector<std::string> found;
        for (const QWidget *widget : parent.findChildren<QWidget *>())
            if (isUsed(*widget) && spokenNameOf(*widget).size() < 2)
                found.push_back(QString("%1 \"%2\" in \"%3\"")
                                    .arg(widget->metaObject()->className(), widget->objectName(),
                                         widget->parentWidget()->objectName())
                                    .toStdString());
        return found;
    }
    /// The names of what can be edited in the properties.
    QStringList editorNames() const
    {
        QStringList names;
        for (const QWidget *widget : widget<QWidget>("propertyPanel").findChildren<QWidget *>())
            if (isUsed(*widget))
                names.append(spokenNameOf(*widget));
        return names;
    }
    void clickRow(const char *view, const QString &name)
    {
        auto &list = widget<QAbstractItemView>(view);
        clickItem(list, rowOf(list, name));
        settle();
    }
    /// Each dialog that \a open leads to, which is rejected then.
    static int checkDialogs(const std::function<void()> &open)
    {
        int count = 0;
        kxModalQuestion::setDialogAnswerer([&count](QDialog &dialog) {
            EXPECT_THAT(unnamed(dialog), IsEmpty());
            EXPECT_FALSE(dialog.windowTitle().isEmpty());
            ++count;
            return QDialog::Rejected;
        });
        open();
        return count;
    }

private:
    static bool isUsed(const QWidget &widget)
    {
        if (widget.objectName().startsWith("qt_")) // parts of other widgets, which have the names
            return false;
        if (widget.inherits("QTableCornerButton") || widget.inherits("QLineEditIconButton") ||
            widget.inherits("QDockWidgetTitleButton") || widget.inherits("QComboBoxPrivateContainer") ||
            widget.parentWidget()->inherits("QComboBoxPrivateContainer"))
            return false;
        if (qobject_cast<const QScrollBar *>(&widget) || qobject_cast<const QHeaderView *>(&widget))
            return false;
        if (const auto *tabs = qobject_cast<const QTabBar *>(&widget))
            return tabs->count() > 0; // Qt keeps those that it does not use
        return widget.focusPolicy() != Qt::NoFocus || qobject_cast<const QAbstractButton *>(&widget) ||
               qobject_cast<const QProgressBar *>(&widget) || qobject_cast<const QDockWidget *>(&widget);
    }
};

TEST_F(MainWindowAccessTest, NamesEverythingWhateverIsSelected)
{
    addChair("Chair");
    add(osg::Light::create(), root(), "Lamp");
    addPlate("Logo");
    const std::string oak = storeMaterial("Oak");
    const std::string sky = storeEnvironment("Sky");
    open();
    clickAsset(oak);
    press(Qt::Key_Return, Qt::ControlModifier);
    settle();
    clickAsset(sky);
    press(Qt::Key_Return, Qt::ControlModifier);
    settle();
    EXPECT_THAT(unnamed(*window), IsEmpty());

    clickRow("sceneTree", "Chair");
    EXPECT_THAT(editorNames(), Contains("Translation X"));
    EXPECT_THAT(unnamed(*window), IsEmpty());
    clickRow("sceneTree", "Lamp");
    EXPECT_THAT(editorNames(), Not(Contains("Translation X")));
    EXPECT_THAT(unnamed(*window), IsEmpty());
    raise("materialDock");
    clickRow("materialList", "Oak");
    EXPECT_THAT(unnamed(*window), IsEmpty());
    raise("environmentDock");
    clickRow("environmentList", "Sky");
    EXPECT_THAT(unnamed(*window), IsEmpty());
    raise("plateDock");
    clickRow("plateTree", "Logo");
    EXPECT_THAT(unnamed(*window), IsEmpty());
}

TEST_F(MainWindowAccessTest, NamesWhatShowsTheSceneAndThePanels)
{
    open();

    EXPECT_EQ(spokenNameOf(widget<QWidget>("sceneView")), "Viewport");
    EXPECT_EQ(spokenNameOf(widget<QDockWidget>("detailsDock")), "Details");
    EXPECT_EQ(spokenNameOf(*widget<QWidget>("scanProgress").findChild<QProgressBar *>()), "Reading libraries");
}

TEST_F(MainWindowAccessTest, NamesEverythingWhereAFolderIsChosen)
{
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);

    EXPECT_EQ(checkDialogs([this] { window->moveChosen(); }), 1);
}

TEST_F(MainWindowAccessTest, NamesEverythingWhereAColorIsChosen)
{
    storeMaterial("Oak");
    open();
    clickAsset(window->libraries().assets().entry(0).uuid);
    press(Qt::Key_Return, Qt::ControlModifier);
    settle();
    raise("materialDock");
    clickRow("materialList", "Oak");
    auto *button = widget<QWidget>("propertyPanel").findChild<QAbstractButton *>("color");
    ASSERT_NE(button, nullptr);

    EXPECT_EQ(checkDialogs([&] { button->click(); }), 1);
    kxModalQuestion::setDialogAnswerer([&](QDialog &dialog) {
        EXPECT_EQ(dialog.windowTitle(), button->accessibleName()); // what it is the color of
        return QDialog::Rejected;
    });
    button->click();
}

TEST_F(MainWindowAccessTest, NamesEverythingInAListOfFailures)
{
    QStringList messages;
    for (int i = 0; i < 9; ++i)
        messages.append("Failure " + QString::number(i));
    FailureBox box(window.get());
    box.add(messages);

    EXPECT_THAT(unnamed(box), IsEmpty());
    EXPECT_FALSE(box.windowTitle().isEmpty());
}

TEST_F(MainWindowAccessTest, NamesEverythingWhileSomethingGoesOn)
{
    const std::string oak = storeMaterial("Oak");
    open();
    int seen = 0;
    QTimer helper;
    QObject::connect(&helper, &QTimer::timeout, [&] {
        const auto *progress = window->findChild<QProgressDialog *>("previewProgress");
        if (!progress || seen++ > 0)
            return;
        EXPECT_THAT(unnamed(*progress), IsEmpty());
        EXPECT_EQ(spokenNameOf(*progress->findChild<QProgressBar *>()), "Rendering previews");
    });
    helper.start(0);

    window->libraries().assetActions().renderPreviews({id(oak)});

    EXPECT_GT(seen, 0);
}

TEST_F(MainWindowAccessTest, NamesEverythingWhileFilesAreImported)
{
    open();
    kxModalQuestion::setDialogAnswerer([](QDialog &) { return QDialog::Accepted; });
    int seen = 0;
    QTimer helper;
    QObject::connect(&helper, &QTimer::timeout, [&] {
        auto *progress = window->findChild<QProgressDialog *>("importProgress");
        if (!progress || seen++ > 0)
            return;
        EXPECT_THAT(unnamed(*progress), IsEmpty());
        EXPECT_EQ(spokenNameOf(*progress->findChild<QProgressBar *>()), "Importing");
        progress->cancel();
    });
    helper.start(0);

    window->importFiles({QStringLiteral(KX_TEST_MODELS "/OBJ/box.obj")}, path());

    EXPECT_GT(seen, 0);
}

TEST_F(MainWindowAccessTest, ReadsTheTour)
{
    open();
    press(Qt::Key_F1);
    const auto *tour = window->findChild<Tour *>();
    ASSERT_NE(tour, nullptr);
    const QWidget *button = QApplication::focusWidget();
    ASSERT_EQ(button->objectName(), "tourNext");
    const auto described = [&] {
        return QAccessible::queryAccessibleInterface(const_cast<QWidget *>(button))->text(QAccessible::Description);
    };

    EXPECT_THAT(unnamed(*tour), IsEmpty());
    EXPECT_THAT(described().toStdString(), HasSubstr("These are your libraries"));
    press(Qt::Key_Space);
    EXPECT_THAT(described().toStdString(), HasSubstr("Here are the assets"));
    press(Qt::Key_Escape);
}

} // namespace
