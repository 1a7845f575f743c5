// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetGrid.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/DetailsPane.h"
#include "AssetManager/DragData.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/FolderTree.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/ScanProgress.h"
#include "AssetManager/Settings.h"
#include "AssetManager/Trash.h"
#include "AssetManager/TrashDialog.h"
#include "Kernel/kxController.h"
#include "Kernel/kxMessage.h"
#include "Kernel/kxModalQuestion.h"
#include "WindowFixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QTabBar>
#include <QTableView>
#include <QTest>
#include <QTreeView>
#include <QTreeWidget>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

class MainWindowLibraryTest : public WindowFixture
{
protected:
    QAbstractButton *button(const QString &name) const { return window->findChild<QAbstractButton *>(name); }
    void addTagsTo(const std::vector<std::string> &uuids, const QString &tags)
    {
        clickAsset(uuids.front());
        for (std::size_t i = 1; i < uuids.size(); ++i)
            clickAsset(uuids[i], Qt::ControlModifier);
        auto &edit = widget<QLineEdit>("newTag");
        click(edit, edit.rect().center());
        type(tags);
        press(Qt::Key_Return);
    }
    void clickIn(QDialog &dialog, const char *name)
    {
        auto *button = dialog.findChild<QAbstractButton *>(name);
        click(*button, button->rect().center());
    }
    QStringList tagsOf(const std::string &uuid) const { return window->libraries().assets().find(uuid)->tags; }
};

TEST_F(MainWindowLibraryTest, ShowsTheAssetsOfTheFolderThatIsClicked)
{
    QDir().mkpath(path("Wood"));
    const std::string oak = storeMaterial("Oak");
    storeMaterial("Steel");
    open();
    dropOnFolder(path("Wood"), *dragged({oak}));

    clickFolder(path("Wood"));
    EXPECT_THAT(names(), ElementsAre("Oak"));
    clickFolder(path());
    EXPECT_THAT(names(), ElementsAre("Oak", "Steel"));
}

TEST_F(MainWindowLibraryTest, ShowsTheKindThatIsClicked)
{
    storeMaterial("Oak");
    storeGeometry("Chair");
    storeEnvironment("Sky");
    storePlate("Logo");
    open();
    auto &tabs = widget<QTabBar>("categories");
    std::vector<QString> shown;

    for (int tab = 1; tab < tabs.count(); ++tab) {
        click(tabs, tabs.tabRect(tab).center());
        ASSERT_EQ(names().size(), 1U) << tab;
        shown.push_back(names().front());
    }
    EXPECT_THAT(shown, testing::UnorderedElementsAre("Oak", "Chair", "Sky", "Logo"));
    click(tabs, tabs.tabRect(0).center());
    EXPECT_EQ(names().size(), 4U);
}

TEST_F(MainWindowLibraryTest, SearchesWithEachLetterAndEscapeEndsTheSearch)
{
    storeMaterial("Oak");
    storeMaterial("Oat straw");
    storeMaterial("Steel");
    open();

    press(Qt::Key_F, Qt::ControlModifier);
    type("oa");
    EXPECT_THAT(names(), ElementsAre("Oak", "Oat straw"));
    type("k");
    EXPECT_THAT(names(), ElementsAre("Oak"));
    press(Qt::Key_Escape);

    EXPECT_EQ(names().size(), 3U);
}

TEST_F(MainWindowLibraryTest, SaysWhatToDoWhereNothingIsShown)
{
    open();
    auto &text = widget<QLabel>("emptyText");
    EXPECT_TRUE(text.isVisible());
    EXPECT_TRUE(text.text().contains("Drop models or pictures here"));
    const QString before = text.text();

    press(Qt::Key_F, Qt::ControlModifier);
    type("nothing is called that");

    EXPECT_EQ(widget<QLabel>("emptyText").text(), before); // there are none at all, which is more to know
}

TEST_F(MainWindowLibraryTest, SaysWhereLibrariesComeFromWhereNoneIsOpen)
{
    auto &text = widget<QLabel>("emptyText");
    EXPECT_TRUE(text.text().contains("No library is open"));

    open();
    EXPECT_FALSE(text.text().contains("No library is open"));

    window->libraries().close(path());
    settle();
    EXPECT_TRUE(text.text().contains("No library is open"));
}

TEST_F(MainWindowLibraryTest, ShowsTheFoldersOfALibraryAtOnce)
{
    QDir().mkpath(path("Wood"));
    open();

    EXPECT_TRUE(window->folders().isExpanded(window->libraries().folders().indexOf(path())));
}

TEST_F(MainWindowLibraryTest, ShowsOfSeveralAssetsOnlyWhatTheyCanHaveInCommon)
{
    const std::string oak = storeMaterial("Oak");
    const std::string ash = storeMaterial("Ash");
    open();
    auto &state = *window->details().findChild<QLabel *>("state");
    const auto &preview = *window->details().findChild<QLabel *>("preview");

    clickAsset(oak);
    EXPECT_TRUE(state.isVisible());
    EXPECT_EQ(preview.pixmap(Qt::ReturnByValue).size(), preview.size()) << "nothing of it is cut off";

    clickAsset(ash, Qt::ControlModifier);
    settle();
    EXPECT_FALSE(state.isVisible());
    EXPECT_TRUE(window->details().findChild<QLabel *>("type")->isVisible());
    EXPECT_EQ(preview.pixmap(Qt::ReturnByValue).size(), preview.size());
}

TEST_F(MainWindowLibraryTest, NarrowsDownByTheTagsThatAreClicked)
{
    const std::string oak = storeMaterial("Oak");
    const std::string ash = storeMaterial("Ash");
    storeMaterial("Steel");
    open();
    addTagsTo({oak, ash}, "wood");
    addTagsTo({oak}, "dark");
    ASSERT_TRUE(QTest::qWaitFor([&] { return button("tag:wood") && button("tag:dark"); }, Patience));

    clickButton("tag:wood");
    EXPECT_THAT(names(), ElementsAre("Ash", "Oak"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return button("tag:dark")->text() == "dark (1)"; }, Patience));
    clickButton("tag:dark");
    EXPECT_THAT(names(), ElementsAre("Oak"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return button("tag:dark")->isChecked(); }, Patience));
    clickButton("tag:dark");
    EXPECT_THAT(names(), ElementsAre("Ash", "Oak"));
}

TEST_F(MainWindowLibraryTest, ShowsFavouritesAndWhatWasUsedLately)
{
    const std::string oak = storeMaterial("Oak");
    const std::string ash = storeMaterial("Ash");
    storeMaterial("Steel");
    open();
    clickAsset(oak);
    press(Qt::Key_D, Qt::ControlModifier);
    clickAsset(ash);
    press(Qt::Key_Return, Qt::ControlModifier); // into the scene

    clickButton("favourites");
    EXPECT_THAT(names(), ElementsAre("Oak"));
    clickButton("recent");
    EXPECT_FALSE(button("favourites")->isChecked());
    EXPECT_THAT(names(), ElementsAre("Ash"));
    clickButton("recent");
    EXPECT_EQ(names().size(), 3U);
}

TEST_F(MainWindowLibraryTest, SwitchesBetweenTilesAndListAndKeepsTheSelection)
{
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);

    clickButton("showLines");
    EXPECT_TRUE(widget<QTableView>("assetTable").isVisible());
    EXPECT_THAT(window->browser().selected(), ElementsAre(oak));
    press(Qt::Key_1, Qt::ControlModifier);

    EXPECT_TRUE(widget<AssetGrid>("assetGrid").isVisible());
    EXPECT_TRUE(button("showTiles")->isChecked());
    EXPECT_THAT(window->browser().selected(), ElementsAre(oak));
}

TEST_F(MainWindowLibraryTest, SortsByTheHeaderThatIsClicked)
{
    storeMaterial("Ash");
    storeMaterial("Oak");
    storeGeometry("Beam");
    open();
    press(Qt::Key_2, Qt::ControlModifier);
    QHeaderView &header = *widget<QTableView>("assetTable").horizontalHeader();
    const auto place = [&](int column) {
        return QPoint(header.sectionViewportPosition(column) + 20, header.height() / 2);
    };

    click(*header.viewport(), place(0));
    EXPECT_THAT(names(), ElementsAre("Oak", "Beam", "Ash"));
    click(*header.viewport(), place(0));
    EXPECT_THAT(names(), ElementsAre("Ash", "Beam", "Oak"));
    click(*header.viewport(), place(1)); // types
    EXPECT_NE(names()[1], "Beam");
}

TEST_F(MainWindowLibraryTest, MakesTilesLargerBySliderKeysAndWheel)
{
    storeMaterial("Oak");
    open();
    auto &slider = widget<QSlider>("tileSize");
    const int before = window->browser().tileSize();

    slider.setFocus();
    press(Qt::Key_PageUp);
    const int bySlider = window->browser().tileSize();
    EXPECT_GT(bySlider, before);
    press(Qt::Key_Minus, Qt::ControlModifier);
    EXPECT_LT(window->browser().tileSize(), bySlider);
    EXPECT_EQ(slider.value(), window->browser().tileSize());
    slider.setFocus();
    press(Qt::Key_Home);
    EXPECT_EQ(window->browser().tileSize(), AssetGrid::MinTile);
}

TEST_F(MainWindowLibraryTest, RenamesWhereTheNameStands)
{
    for (const bool isList : {false, true}) {
        const std::string uuid = storeMaterial("Oak");
        open();
        window->libraries().refresh();
        settle();
        press(isList ? Qt::Key_2 : Qt::Key_1, Qt::ControlModifier);
        clickAsset(uuid);

        press(Qt::Key_F2);
        type("Bog oak");
        press(Qt::Key_Return);
        settle();
        EXPECT_EQ(window->libraries().assets().find(uuid)->name, "Bog oak");
        press(Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(window->libraries().assets().find(uuid)->name, "Oak");
    }
}

TEST_F(MainWindowLibraryTest, KeepsTheNameWhenEscapeEndsTyping)
{
    const std::string uuid = storeMaterial("Oak");
    open();
    clickAsset(uuid);

    press(Qt::Key_F2);
    type("Bog oak");
    press(Qt::Key_Escape);
    settle();

    EXPECT_THAT(names(), ElementsAre("Oak"));
    EXPECT_FALSE(window->undoStack().canUndo());
}

TEST_F(MainWindowLibraryTest, DeletesByKeyAndBringsBackByUndo)
{
    const std::string oak = storeMaterial("Oak");
    storeMaterial("Steel");
    open();
    clickAsset(oak);

    press(Qt::Key_Delete);
    settle();
    EXPECT_THAT(names(), ElementsAre("Steel"));
    press(Qt::Key_Z, Qt::ControlModifier);
    settle();
    EXPECT_THAT(names(), ElementsAre("Oak", "Steel"));
    pressRedo();
    settle();

    EXPECT_THAT(names(), ElementsAre("Steel"));
    EXPECT_EQ(Trash(path()).entries().size(), 1U);
}

TEST_F(MainWindowLibraryTest, LeavesTextAloneWhereDeleteIsPressedInALine)
{
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);
    press(Qt::Key_F, Qt::ControlModifier);
    type("Oak");
    press(Qt::Key_Home);

    press(Qt::Key_Delete);

    EXPECT_EQ(widget<QLineEdit>("search").text(), "ak");
    EXPECT_TRUE(QFileInfo(directoryOf(oak)).isDir());
    EXPECT_TRUE(Trash(path()).entries().empty());
}

TEST_F(MainWindowLibraryTest, EditsTheTagsOfSeveralInTheDetails)
{
    const std::string oak = storeMaterial("Oak");
    const std::string ash = storeMaterial("Ash");
    open();

    addTagsTo({oak, ash}, "wood old");
    EXPECT_EQ(tagsOf(oak), (QStringList{"old", "wood"}));
    EXPECT_EQ(tagsOf(ash), (QStringList{"old", "wood"}));
    clickButton("removeTag:old");
    EXPECT_EQ(tagsOf(ash), QStringList{"wood"});
    clickAsset(oak); // a line has steps of its own
    press(Qt::Key_Z, Qt::ControlModifier);
    press(Qt::Key_Z, Qt::ControlModifier);

    EXPECT_TRUE(tagsOf(oak).isEmpty());
    EXPECT_TRUE(tagsOf(ash).isEmpty());
}

TEST_F(MainWindowLibraryTest, RenamesInTheDetails)
{
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);
    auto &name = *window->details().findChild<QLineEdit *>("name");

    click(name, name.rect().center());
    press(Qt::Key_A, Qt::ControlModifier);
    type("Bog oak");
    press(Qt::Key_Return);

    EXPECT_THAT(names(), ElementsAre("Bog oak"));
    EXPECT_EQ(name.text(), "Bog oak");
}

TEST_F(MainWindowLibraryTest, MovesAssetsThatAreDroppedOnAFolder)
{
    QDir().mkpath(path("Wood"));
    const std::string oak = storeMaterial("Oak");
    const std::string ash = storeMaterial("Ash");
    open();
    const QString before = directoryOf(oak);

    ASSERT_TRUE(dropOnFolder(path("Wood"), *dragged({oak, ash})));
    EXPECT_EQ(QFileInfo(directoryOf(oak)).path(), path("Wood"));
    EXPECT_EQ(QFileInfo(directoryOf(ash)).path(), path("Wood"));
    press(Qt::Key_Z, Qt::ControlModifier);
    settle();

    EXPECT_EQ(directoryOf(oak), before);
    EXPECT_TRUE(QFileInfo(before).isDir());
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowLibraryTest, MovesFoldersThatAreDroppedOnAFolder)
{
    QDir().mkpath(path("Wood"));
    QDir().mkpath(path("All"));
    const std::string oak = storeMaterial("Oak");
    open();
    dropOnFolder(path("Wood"), *dragged({oak}));
    FolderModel &folders = window->libraries().folders();
    const std::unique_ptr<QMimeData> wood(folders.mimeData({folders.indexOf(path("Wood"))}));

    EXPECT_FALSE(dropOnFolder(path("Wood"), *wood)); // not into itself
    ASSERT_TRUE(dropOnFolder(path("All"), *wood));

    EXPECT_EQ(QFileInfo(directoryOf(oak)).path(), path("All/Wood"));
    EXPECT_TRUE(folders.indexOf(path("All/Wood")).isValid());
    EXPECT_FALSE(folders.indexOf(path("Wood")).isValid());
}

TEST_F(MainWindowLibraryTest, RenamesAndDeletesTheChosenFolder)
{
    QDir().mkpath(path("Wood"));
    open();
    clickFolder(path("Wood"));

    press(Qt::Key_F2);
    type("Timber");
    press(Qt::Key_Return);
    settle();
    EXPECT_TRUE(QFileInfo(path("Timber")).isDir());
    ASSERT_TRUE(window->libraries().folders().indexOf(path("Timber")).isValid());
    clickFolder(path("Timber"));
    press(Qt::Key_Delete);
    settle();

    EXPECT_FALSE(QFileInfo(path("Timber")).exists());
    EXPECT_FALSE(window->libraries().folders().indexOf(path("Timber")).isValid());
    EXPECT_EQ(Trash(path()).entries().size(), 1U);
}

TEST_F(MainWindowLibraryTest, PutsBackFromTheTrash)
{
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);
    press(Qt::Key_Delete);
    settle();
    kxModalQuestion::setDialogAnswerer([&](QDialog &dialog) {
        showForInput(dialog);
        auto *list = dialog.findChild<QTreeWidget *>("deleted");
        EXPECT_EQ(list->topLevelItemCount(), 1);
        EXPECT_EQ(list->topLevelItem(0)->text(0), "Oak");
        EXPECT_FALSE(dialog.findChild<QAbstractButton *>("restore")->isEnabled()) << "nothing is chosen";
        clickItem(*list, list->model()->index(0, 0));
        clickIn(dialog, "restore");
        EXPECT_EQ(list->topLevelItemCount(), 0);
        return QDialog::Rejected;
    });

    clickInMenuBar("fileMenu", "Deleted assets...");
    settle();

    EXPECT_THAT(names(), ElementsAre("Oak"));
}

TEST_F(MainWindowLibraryTest, AsksBeforeTheTrashIsEmptied)
{
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);
    press(Qt::Key_Delete);
    settle();
    auto answer = QMessageBox::Cancel;
    QStringList asked;
    kxModalQuestion::setAnswerer([&](const kxModalQuestion::Question &question) {
        asked.append(question.text);
        EXPECT_EQ(question.defaultButton, QMessageBox::Cancel);
        return answer;
    });
    kxModalQuestion::setDialogAnswerer([&](QDialog &dialog) {
        showForInput(dialog);
        clickIn(dialog, "empty");
        return QDialog::Rejected;
    });

    window->showTrash();
    EXPECT_EQ(Trash(path()).entries().size(), 1U);
    answer = QMessageBox::Ok;
    window->showTrash();

    EXPECT_TRUE(Trash(path()).entries().empty());
    ASSERT_EQ(asked.size(), 2);
    EXPECT_TRUE(asked.first().contains("cannot be undone"));
}

TEST_F(MainWindowLibraryTest, SelectsWhatAMessageAsksFor)
{
    storeMaterial("Ash");
    const std::string oak = storeMaterial("Oak");
    open();
    kxMessage message;
    message.set("uuid", oak);
    message.set("clearSelection", true);

    kxController::call("selectAssetByUUID", message);
    process();

    EXPECT_TRUE(message.get<bool>("found").value_or(false));
    EXPECT_THAT(window->browser().selected(), ElementsAre(oak));
    EXPECT_EQ(window->details().findChild<QLineEdit *>("name")->text(), "Oak");
}

TEST_F(MainWindowLibraryTest, StopsReadingByTheButton)
{
    for (int i = 0; i < 30; ++i)
        storeMaterial("Oak " + std::to_string(i));
    window->openLibraries({library().toLocalFile()});
    ASSERT_TRUE(window->libraries().scan().isRunning());
    EXPECT_TRUE(widget<ScanProgress>("scanProgress").isVisible());

    auto &stop = widget<QAbstractButton>("cancelScan");
    click(stop, stop.rect().center());

    EXPECT_FALSE(window->libraries().scan().isRunning());
    EXPECT_FALSE(widget<ScanProgress>("scanProgress").isVisible());
    press(Qt::Key_F5); // reads all of it
    settle();
    EXPECT_EQ(names().size(), 30U);
}

TEST_F(MainWindowLibraryTest, OpensALibraryOnceHoweverItIsSpelt)
{
    storeMaterial("Oak");
    open();

    window->openLibraries({path() + "/../lib/."});
    settle();

    EXPECT_EQ(window->libraries().folders().libraries(), QStringList{path()});
    EXPECT_THAT(names(), ElementsAre("Oak"));
}

TEST_F(MainWindowLibraryTest, RemembersEverythingForTheNextWindow)
{
    const std::string oak = storeMaterial("Oak");
    storeMaterial("Ash");
    open();
    clickAsset(oak);
    press(Qt::Key_D, Qt::ControlModifier);
    press(Qt::Key_2, Qt::ControlModifier);
    window->browser().setTileSize(200);
    window->resize(1200, 800);
    process();

    ASSERT_TRUE(window->close());
    makeWindow();
    window->openLibraries({});
    settle();

    EXPECT_EQ(window->libraries().folders().libraries(), QStringList{path()});
    EXPECT_EQ(window->browser().look(), AssetBrowser::Look::Lines);
    EXPECT_EQ(window->browser().tileSize(), 200);
    clickButton("favourites");
    EXPECT_THAT(names(), ElementsAre("Oak"));
}

TEST_F(MainWindowLibraryTest, MovesByTheKeyboardToAFolderThatIsChosen)
{
    const std::string oak = storeMaterial("Oak");
    QDir().mkpath(path("Wood"));
    open();
    clickAsset(oak);
    kxModalQuestion::setDialogAnswerer([this](QDialog &dialog) {
        auto *tree = dialog.findChild<QTreeView *>("folders");
        EXPECT_NE(tree, nullptr);
        showForInput(dialog);
        press(Qt::Key_Down); // from the library, which was shown
        EXPECT_EQ(tree->currentIndex().data().toString(), "Wood");
        press(Qt::Key_Return);
        return dialog.result();
    });

    press(Qt::Key_M, Qt::ControlModifier);

    EXPECT_EQ(QFileInfo(directoryOf(oak)).path(), path("Wood"));
    activate();
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(QFileInfo(directoryOf(oak)).path(), path());
}

TEST_F(MainWindowLibraryTest, MovesNothingWhereNoFolderIsChosen)
{
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);
    kxModalQuestion::setDialogAnswerer([](QDialog &dialog) {
        dialog.findChild<QTreeView *>("folders")->setCurrentIndex({});
        EXPECT_FALSE(dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->isEnabled());
        return QDialog::Accepted;
    });

    press(Qt::Key_M, Qt::ControlModifier);

    EXPECT_EQ(QFileInfo(directoryOf(oak)).path(), path());
    EXPECT_FALSE(window->undoStack().canUndo());
}

TEST_F(MainWindowLibraryTest, RendersPreviewsAnewAndSaysWhichItCannot)
{
    const std::string oak = storeMaterial("Oak");
    const std::string chair = storeGeometry("Chair");
    open();
    const QString file = QDir(directoryOf(oak)).filePath(QDir(directoryOf(oak)).entryList({"*.png"}).value(0));
    ASSERT_TRUE(QFile::remove(file));
    clickAsset(oak);
    clickAsset(chair, Qt::ControlModifier);

    press(Qt::Key_P, Qt::ControlModifier);

    EXPECT_TRUE(QFile::exists(file));
    EXPECT_EQ(takeReport(), "No new preview could be made of \"Chair\".");
}

} // namespace
