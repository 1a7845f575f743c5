// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetModel.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/Trash.h"
#include "Kernel/kxController.h"
#include "Kernel/kxMaterials.h"
#include "RealDialogs.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Transform3D.h"
#include "WindowFixture.h"

#include <QAbstractButton>
#include <QDialog>
#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QTreeView>
#include <QTreeWidget>

#include <gmock/gmock.h>

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

/// What menus and keys lead to, with the dialogs that a person sees and answers.
class MainWindowDialogTest : public WindowFixture
{
protected:
    void pressAndSettle(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        press(key, modifiers);
        finish();
    }
    void choose(const char *menu, const QString &text)
    {
        clickInMenuBar(menu, text);
        finish();
    }
    /// A window manager gives the keyboard back when a dialog closes.
    void finish()
    {
        settle();
        activate();
        settle();
    }
    /// Whose text goes on with what it is about.
    void chooseUndo()
    {
        for (const QAction *action : widget<QMenu>("editMenu").actions())
            if (const QString text = QString(action->text()).remove('&'); text.startsWith("Undo")) {
                choose("editMenu", text);
                return;
            }
        ADD_FAILURE() << "no entry";
    }
    void loadIntoScene(const std::string &uuid)
    {
        clickAsset(uuid);
        pressAndSettle(Qt::Key_Return, Qt::ControlModifier);
    }
    QString sceneFile() const { return QString::fromStdString(folder.file("Room one.osb")); }

    RealDialogs dialogs{input};
};

TEST_F(MainWindowDialogTest, ImportsByTheKeyboardAlone)
{
    open();
    dialogs.nextByPath(QStringLiteral(KX_TEST_MODELS "/OBJ/box.obj"));
    dialogs.nextByKey(Qt::Key_Return);

    pressAndSettle(Qt::Key_I, Qt::ControlModifier);
    EXPECT_THAT(names(), ElementsAre("box"));
    dialogs.nextByKey(Qt::Key_Escape);
    pressAndSettle(Qt::Key_I, Qt::ControlModifier);

    EXPECT_THAT(names(), ElementsAre("box"));
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowDialogTest, AddsALibraryByTheKeyboardAndByTheMenu)
{
    storeMaterial("Oak");
    dialogs.nextByKey(Qt::Key_Escape);
    pressAndSettle(Qt::Key_L, Qt::ControlModifier);
    EXPECT_THAT(window->libraries().folders().libraries(), IsEmpty());

    dialogs.nextByPath(path());
    pressAndSettle(Qt::Key_L, Qt::ControlModifier);
    EXPECT_THAT(names(), ElementsAre("Oak"));
    const QString other = QString::fromStdString(folder.makeFolder("other"));
    dialogs.nextByPath(other);
    choose("fileMenu", "Add library...");

    EXPECT_THAT(window->libraries().folders().libraries(), ElementsAre(path(), QFileInfo(other).canonicalFilePath()));
}

TEST_F(MainWindowDialogTest, SavesOpensAndLeavesScenes)
{
    const std::string stool = storeGeometry("Stool");
    open();
    loadIntoScene(stool);
    dialogs.nextByPath(sceneFile().chopped(4));
    choose("fileMenu", "Save scene as...");
    EXPECT_TRUE(QFileInfo::exists(sceneFile())) << "the suffix is added";
    EXPECT_EQ(window->windowTitle(), "Room one[*] - Asset Manager");

    choose("fileMenu", "New scene"); // which is saved: nothing asks
    EXPECT_THAT(childNames(root()), Not(Contains("Stool")));
    dialogs.nextByPath(sceneFile());
    pressAndSettle(Qt::Key_O, Qt::ControlModifier);

    EXPECT_THAT(childNames(root()), Contains("Stool"));
    EXPECT_FALSE(kxController::isModified());
}

TEST_F(MainWindowDialogTest, AsksBeforeAChangedSceneIsLeft)
{
    const QString question = QStringLiteral("The scene was changed. Save it before it is closed?");
    const std::string stool = storeGeometry("Stool");
    open();
    loadIntoScene(stool);

    dialogs.nextByKey(Qt::Key_Escape);
    pressAndSettle(Qt::Key_N, Qt::ControlModifier);
    EXPECT_THAT(childNames(root()), Contains("Stool")) << "Escape leaves it as it is";
    dialogs.nextByButton(question, "Save");
    dialogs.nextByPath(sceneFile());
    pressAndSettle(Qt::Key_N, Qt::ControlModifier);
    EXPECT_THAT(childNames(root()), Not(Contains("Stool")));
    EXPECT_TRUE(QFileInfo::exists(sceneFile()));
    loadIntoScene(stool);
    dialogs.nextByButton(question, "Discard");
    choose("fileMenu", "New scene");

    EXPECT_THAT(childNames(root()), Not(Contains("Stool")));
}

TEST_F(MainWindowDialogTest, StaysWhereTheQuestionAtTheEndIsCancelled)
{
    const std::string stool = storeGeometry("Stool");
    open();
    loadIntoScene(stool);

    dialogs.nextByKey(Qt::Key_Escape);
    pressAndSettle(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_TRUE(window->isVisible());
    dialogs.nextByButton("The scene was changed.", "Discard");
    press(Qt::Key_Q, Qt::ControlModifier);

    EXPECT_FALSE(window->isVisible());
}

TEST_F(MainWindowDialogTest, SavesOverAnAssetByTheMenuAndTakesItBack)
{
    const QString entry = QStringLiteral("Save the scene's copy over it...");
    const std::string oak = storeMaterial("Oak");
    open();
    loadIntoScene(oak);
    kxMaterials::setName(kxMaterials::findAssetMaterial(oak), "Bog oak", false);
    clickAsset(oak);

    dialogs.nextByKey(Qt::Key_Return); // at first it leaves everything as it is
    choose("assetMenu", entry);
    EXPECT_THAT(names(), ElementsAre("Oak"));
    dialogs.nextByButton("1 stored asset(s) will be replaced by what the scene has of them.", "Save");
    choose("assetMenu", entry);
    EXPECT_THAT(names(), ElementsAre("Bog oak"));
    chooseUndo();

    EXPECT_THAT(names(), ElementsAre("Oak"));
}

TEST_F(MainWindowDialogTest, PutsSeveralBackFromTheTrash)
{
    const std::string oak = storeMaterial("Oak");
    const std::string ash = storeMaterial("Ash");
    const std::string elm = storeMaterial("Elm");
    open();
    for (const std::string &uuid : {oak, ash, elm}) {
        clickAsset(uuid);
        pressAndSettle(Qt::Key_Delete);
    }
    ASSERT_THAT(names(), IsEmpty());

    dialogs.next([this](QDialog &dialog) {
        auto &deleted = *dialog.findChild<QTreeWidget *>("deleted");
        const auto place = [&](int row) { return deleted.visualItemRect(deleted.topLevelItem(row)).center(); };
        click(*deleted.viewport(), place(0));
        click(*deleted.viewport(), place(1), Qt::ControlModifier);
        dialogs.click(*dialog.findChild<QAbstractButton *>("restore"));
        EXPECT_EQ(deleted.topLevelItemCount(), 1);
        press(Qt::Key_Escape);
    });
    choose("fileMenu", "Deleted assets...");

    EXPECT_EQ(names().size(), 2U);
    chooseUndo();
    EXPECT_EQ(names().size(), 0U) << "both are one step";
}

TEST_F(MainWindowDialogTest, EmptiesTheTrashAfterAsking)
{
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);
    pressAndSettle(Qt::Key_Delete);
    const auto empty = [this](QDialog &dialog) {
        dialogs.click(*dialog.findChild<QAbstractButton *>("empty"));
        press(Qt::Key_Escape);
    };

    dialogs.next(empty);
    dialogs.nextByKey(Qt::Key_Return); // no key that was pressed too much removes anything
    choose("fileMenu", "Deleted assets...");
    EXPECT_EQ(Trash(path()).entries().size(), 1U);
    dialogs.next(empty);
    dialogs.nextByButton("This cannot be undone.", "OK");
    choose("fileMenu", "Deleted assets...");

    EXPECT_EQ(Trash(path()).entries().size(), 0U);
    EXPECT_THAT(QDir(path()).entryList({"MAT_*"}, QDir::Dirs), IsEmpty());
}

TEST_F(MainWindowDialogTest, SearchesAndFramesByKeysFromAnywhere)
{
    addChair("Chair");
    {
        const auto place = osg::Transform3DPtr::dcast(addChair("Far away")->getCore());
        const osg::CPEditor edit(place, osg::Transform3D::TranslationFieldMask);
        place->setTranslation({100, 0, 0});
    }
    storeMaterial("Oak");
    storeMaterial("Ash");
    open();
    QTreeView &tree = widget<QTreeView>("sceneTree");
    press(Qt::Key_F4, Qt::ControlModifier);
    settle();
    const double everything = distance();

    clickItem(tree, rowOf(tree, "Far away"));
    press(Qt::Key_F3, Qt::ControlModifier);
    settle();
    EXPECT_LT(distance(), 0.2 * everything);
    EXPECT_NEAR(camera()->getAt()[0], 100.5, 0.6);
    press(Qt::Key_F4, Qt::ControlModifier);
    settle();
    EXPECT_NEAR(distance(), everything, 1e-6 * everything);
    press(Qt::Key_F, Qt::ControlModifier);
    type("as");

    EXPECT_TRUE(widget<QLineEdit>("search").hasFocus());
    EXPECT_THAT(names(), ElementsAre("Ash"));
}

TEST_F(MainWindowDialogTest, ShowsAndHidesEachPanelByTheMenu)
{
    open();
    for (QDockWidget *dock : window->findChildren<QDockWidget *>()) {
        const bool isShown = !dock->isHidden();
        const QString entry = dock->toggleViewAction()->text().remove('&');

        choose("viewMenu", entry);
        EXPECT_EQ(dock->isHidden(), isShown) << entry.toStdString();
        choose("viewMenu", entry);

        EXPECT_EQ(!dock->isHidden(), isShown) << entry.toStdString();
    }
}

} // namespace
