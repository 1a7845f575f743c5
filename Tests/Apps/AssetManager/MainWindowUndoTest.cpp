// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/FolderTree.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/Trash.h"
#include "Kernel/kxController.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxMessage.h"
#include "Kernel/kxModalQuestion.h"
#include "LibraryContent.h"
#include "WindowFixture.h"

#include <QAbstractButton>
#include <QAction>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QTreeWidget>

#include <gmock/gmock.h>

#include <set>

namespace {

using testing::ElementsAre;

/// Whatever is done to the disk is taken back to the byte, and done again to the byte.
class MainWindowUndoTest : public WindowFixture
{
protected:
    LibraryContent content() const { return contentOf(path()); }
    /// Takes the deed back, does it again, and takes it back again.
    void expectReversible(const char *name, const std::function<void()> &deed)
    {
        const LibraryContent before = content();
        deed();
        settle();
        activate();
        const LibraryContent after = content();
        EXPECT_NE(before, after) << name << " does nothing";
        undo();
        EXPECT_EQ(differenceOf(before, content()), "") << name << ", after undo";
        redo();
        EXPECT_EQ(differenceOf(after, content()), "") << name << ", after redo";
        undo();
        EXPECT_EQ(differenceOf(before, content()), "") << name << ", after undo again";
        EXPECT_EQ(reported(), "") << name;
    }
    QAction &action(const char *menu, const QString &text) const
    {
        for (QAction *found : widget<QMenu>(menu).actions())
            if (QString(found->text()).remove('&') == text)
                return *found;
        ADD_FAILURE() << "no action: " << text.toStdString();
        return *new QAction(window.get());
    }
    void clickIn(QDialog &dialog, const char *name)
    {
        auto *button = dialog.findChild<QAbstractButton *>(name);
        click(*button, button->rect().center());
    }
};

} // namespace

TEST_F(MainWindowUndoTest, RenamesAFolderBack)
{
    const std::string oak = storeMaterial("Oak");
    QDir().mkpath(path("Wood/Hard"));
    open();
    dropOnFolder(path("Wood/Hard"), *dragged({oak}));
    clickFolder(path("Wood"));
    const LibraryContent before = content();

    press(Qt::Key_F2);
    type("Timber");
    press(Qt::Key_Return);
    settle();
    const LibraryContent after = content();
    EXPECT_EQ(directoryOf(oak), path("Timber/Hard/MAT_Oak"));
    undo();

    EXPECT_EQ(differenceOf(before, content()), "");
    EXPECT_EQ(directoryOf(oak), path("Wood/Hard/MAT_Oak"));
    FolderModel &folders = window->libraries().folders();
    EXPECT_TRUE(folders.indexOf(path("Wood/Hard")).isValid());
    EXPECT_FALSE(folders.indexOf(path("Timber")).isValid());
    redo();
    EXPECT_EQ(differenceOf(after, content()), "");
    EXPECT_EQ(directoryOf(oak), path("Timber/Hard/MAT_Oak"));
    EXPECT_TRUE(folders.indexOf(path("Timber/Hard")).isValid());
    EXPECT_FALSE(folders.indexOf(path("Wood")).isValid());
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowUndoTest, BringsADeletedFolderBackWithWhatWasInIt)
{
    const std::string oak = storeMaterial("Oak");
    QDir().mkpath(path("Wood/Hard"));
    QDir().mkpath(path("Wood/Soft"));
    open();
    dropOnFolder(path("Wood/Hard"), *dragged({oak}));
    const LibraryContent before = content();
    clickFolder(path("Wood"));

    press(Qt::Key_Delete);
    settle();
    EXPECT_TRUE(content().empty());
    undo();

    EXPECT_EQ(differenceOf(before, content()), "");
    EXPECT_EQ(directoryOf(oak), path("Wood/Hard/MAT_Oak"));
    EXPECT_TRUE(window->libraries().folders().indexOf(path("Wood/Soft")).isValid());
    EXPECT_TRUE(Trash(path()).entries().empty());
    clickFolder(path());
    EXPECT_THAT(names(), ElementsAre("Oak"));
    redo();
    EXPECT_TRUE(content().empty());
    EXPECT_TRUE(names().empty());
    EXPECT_FALSE(window->libraries().folders().indexOf(path("Wood")).isValid());
    EXPECT_EQ(Trash(path()).entries().size(), 1U);
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowUndoTest, BringsBackWhatAMessageSavedOver)
{
    const std::string oak = storeMaterial("Oak");
    open();
    load(oak);
    const osg::MaterialPtr material = kxMaterials::findAssetMaterial(oak);
    kxMaterials::setName(material, "Bog oak", false);
    QStringList failed{"none yet"};

    expectReversible("the message", [&] {
        kxMessage message;
        message.set("containerIds", std::vector<std::uint32_t>{material.getFieldContainerId()});
        EXPECT_TRUE(kxController::call("overwriteAssets", message));
        failed = message.get<QStringList>("failures").value_or(QStringList{"no answer"});
        settle();
        EXPECT_THAT(names(), ElementsAre("Bog oak"));
    });

    EXPECT_EQ(failed, QStringList());
    EXPECT_THAT(names(), ElementsAre("Oak"));
}

TEST_F(MainWindowUndoTest, TakesBackWhatIsDoneToAssets)
{
    const std::string ash = storeMaterial("Ash");
    const std::string oak = storeMaterial("Oak");
    QDir().mkpath(path("Wood"));
    open();

    expectReversible("rename", [&] {
        clickAsset(ash);
        press(Qt::Key_F2);
        type("Elm");
        press(Qt::Key_Return);
    });
    expectReversible("delete", [&] {
        clickAsset(ash);
        clickAsset(oak, Qt::ControlModifier);
        press(Qt::Key_Delete);
    });
    expectReversible("tags", [&] {
        clickAsset(ash);
        clickAsset(oak, Qt::ControlModifier);
        auto &edit = widget<QLineEdit>("newTag");
        click(edit, edit.rect().center());
        type("wood");
        press(Qt::Key_Return);
        clickAsset(oak); // the field has an undo of its own
    });
    expectReversible("drag to a folder", [&] {
        dragAssets({ash, oak}, *window->folders().viewport(), placeOfFolder(path("Wood")));
    });
    kxModalQuestion::setDialogAnswerer([this](QDialog &dialog) {
        showForInput(dialog);
        press(Qt::Key_Down);
        press(Qt::Key_Return);
        return dialog.result();
    });
    clickFolder(path());
    expectReversible("Move to folder...", [&] {
        clickAsset(ash);
        press(Qt::Key_M, Qt::ControlModifier);
    });
    const QString preview = directoryOf(oak) + "/" + QDir(directoryOf(oak)).entryList({"*.png"}).value(0);
    QFile file(preview);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("painted by hand");
    file.close();
    expectReversible("Render previews anew", [&] {
        clickAsset(oak);
        press(Qt::Key_P, Qt::ControlModifier);
    });
}

TEST_F(MainWindowUndoTest, TakesBackWhatIsDoneToFolders)
{
    const std::string oak = storeMaterial("Oak");
    for (const char *name : {"Wood", "All/Wood", "Other"})
        QDir().mkpath(path(name));
    open();
    dropOnFolder(path("Wood"), *dragged({oak}));
    FolderModel &folders = window->libraries().folders();

    expectReversible("New folder", [&] {
        clickFolder(path("Wood"));
        press(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    });
    expectReversible("rename", [&] {
        clickFolder(path("Wood"));
        press(Qt::Key_F2);
        type("Timber");
        press(Qt::Key_Return);
    });
    expectReversible("delete", [&] {
        clickFolder(path("Wood"));
        press(Qt::Key_Delete);
    });
    expectReversible("drag", [&] {
        dragItem(window->folders(), folders.indexOf(path("Wood")), *window->folders().viewport(),
                 placeOfFolder(path("Other")));
    });
    kxModalQuestion::setAnswerer([](const kxModalQuestion::Question &) { return QMessageBox::Yes; });
    expectReversible("merge", [&] {
        const std::unique_ptr<QMimeData> wood(folders.mimeData({folders.indexOf(path("Wood"))}));
        EXPECT_TRUE(dropOnFolder(path("All"), *wood));
    });
}

TEST_F(MainWindowUndoTest, TakesBackWhatBringsAssetsIn)
{
    const std::string oak = storeMaterial("Oak");
    storeMaterial("Elm");
    addChair("Chair");
    QDir().mkpath(path("Wood"));
    open();
    load(oak);
    kxMaterials::setName(kxMaterials::findAssetMaterial(oak), "Bog oak", false);
    kxModalQuestion::setAnswerer([](const kxModalQuestion::Question &) { return QMessageBox::Save; });
    expectReversible("Save the scene's copy over it...", [&] {
        clickAsset(oak);
        action("assetMenu", "Save the scene's copy over it...").trigger();
    });
    clickFolder(path("Wood"));

    expectReversible("Save selected objects as assets", [&] {
        auto &tree = widget<QAbstractItemView>("sceneTree");
        clickItem(tree, rowOf(tree, "Chair"));
        press(Qt::Key_O, Qt::ControlModifier | Qt::ShiftModifier);
    });
    expectReversible("Save selected materials as assets", [&] {
        auto &list = widget<QListView>("materialList");
        clickItem(list, list.model()->index(0, 0));
        press(Qt::Key_M, Qt::ControlModifier | Qt::ShiftModifier);
    });
    clickFolder(path());
    kxModalQuestion::setDialogAnswerer([this](QDialog &dialog) {
        showForInput(dialog);
        QWidget &choice = *dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok);
        click(choice, choice.rect().center());
        return dialog.result();
    });
    const QString box = QString::fromStdString(folder.write("box.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n"));
    expectReversible("import", [&] { window->importFiles({box}, path()); });
    clickFolder(path());
    clickItem(window->browser().view(), window->libraries().assets().index(0, 0));
    press(Qt::Key_Delete);
    settle();
    kxModalQuestion::setDialogAnswerer([this](QDialog &dialog) {
        showForInput(dialog);
        auto *list = dialog.findChild<QTreeWidget *>("deleted");
        clickItem(*list, list->model()->index(0, 0));
        clickIn(dialog, "restore");
        return QDialog::Rejected;
    });
    expectReversible("Put back", [&] { window->showTrash(); });
}

/// Whoever adds an action sees here that it has to be one of those that can be taken back.
TEST_F(MainWindowUndoTest, KnowsOfEachActionWhetherItChangesLibraries)
{
    const std::set<QString> reversible{"New folder",
                                       "Import files...",
                                       "Deleted assets...",
                                       "Rename",
                                       "Delete",
                                       "Move to folder...",
                                       "Save the scene's copy over it...",
                                       "Render previews anew",
                                       "Save selected objects as assets",
                                       "Save selected materials as assets"}; // in the tests above
    const std::set<QString> harmless{"New scene",
                                     "Open scene...",
                                     "Save scene",
                                     "Save scene as...",
                                     "Add library...",
                                     "Read libraries again",
                                     "Quit",
                                     "Undo",
                                     "Redo",
                                     "Search",
                                     "Load into the scene",
                                     "Favourite",
                                     "Load below the selected object"};
    for (const char *menu : {"fileMenu", "editMenu", "assetMenu"})
        for (const QAction *found : widget<QMenu>(menu).actions()) {
            const QString text = QString(found->text()).remove('&');
            EXPECT_TRUE(found->isSeparator() || reversible.count(text) + harmless.count(text) == 1)
                << "does it change what is on the disk, and can that be undone? " << text.toStdString();
        }
}
