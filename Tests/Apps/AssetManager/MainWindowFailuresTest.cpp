// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/FailureBox.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/FolderTree.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/Trash.h"
#include "Kernel/kxMaterials.h"
#include "Kernel/kxModalQuestion.h"
#include "Kernel/kxSelectionManager.h"
#include "LibraryContent.h"
#include "SceneGraph/EditCP.h"
#include "SceneGraph/Geometry.h"
#include "Support/FileSizeLimit.h"
#include "WindowFixture.h"

#include <QAbstractButton>
#include <QDir>
#include <QFileInfo>
#include <QListView>
#include <QMimeData>
#include <QTest>
#include <QTextEdit>
#include <QTimer>
#include <QTreeWidget>

#include <gmock/gmock.h>

#include <cmath>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// One that fails between others that do not.
class MainWindowFailuresTest : public WindowFixture
{
protected:
    QStringList foldersIn(const QString &directory) const
    {
        return QDir(path(directory)).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    }
    void select(const std::vector<std::string> &uuids)
    {
        for (const std::string &uuid : uuids)
            clickAsset(uuid, uuid == uuids.front() ? Qt::NoModifier : Qt::ControlModifier);
    }
    /// More than there is room for.
    static osg::NodePtr addLargeChair(const std::string &name)
    {
        osg::NodePtr chair = addChair(name);
        const auto mesh = osg::GeometryPtr::dcast(chair->getChild(0)->getCore());
        const osg::CPEditor edit(mesh, osg::AllFieldMask);
        for (int i = 0; i < Room; ++i) {
            const auto at = static_cast<float>(i); // which does not get smaller when it is compressed
            mesh->editPositions().push_back({{std::sin(at), std::cos(2 * at), std::sin(3 * at)}});
        }
        return chair;
    }

    static constexpr int Room = 20000; // bytes of each file
};

} // namespace

TEST_F(MainWindowFailuresTest, MovesTheOtherAssets)
{
    const std::string ash = storeMaterial("Ash");
    const std::string elm = storeMaterial("Elm");
    const std::string oak = storeMaterial("Oak");
    QDir().mkpath(path("Wood"));
    open();
    ASSERT_TRUE(QDir(directoryOf(elm)).removeRecursively());

    dragAssets({ash, elm, oak}, *window->folders().viewport(), placeOfFolder(path("Wood")));

    EXPECT_EQ(takeReport(), "\"Elm\" could not be moved: it is not there any more.");
    EXPECT_THAT(foldersIn("Wood"), ElementsAre("MAT_Ash", "MAT_Oak"));
    undo();
    EXPECT_THAT(foldersIn("Wood"), IsEmpty());
    EXPECT_THAT(names(), ElementsAre("Ash", "Oak"));
}

TEST_F(MainWindowFailuresTest, MovesTheOtherFolders)
{
    for (const char *name : {"All", "Ash", "Elm", "Oak"})
        QDir().mkpath(path(name));
    open();
    FolderModel &folders = window->libraries().folders();
    const std::unique_ptr<QMimeData> data(
        folders.mimeData({folders.indexOf(path("Ash")), folders.indexOf(path("Elm")), folders.indexOf(path("Oak"))}));
    ASSERT_TRUE(QDir(path("Elm")).removeRecursively());

    ASSERT_TRUE(dropOnFolder(path("All"), *data));

    EXPECT_EQ(takeReport(), "\"Elm\" could not be moved: it is not there any more.");
    EXPECT_THAT(foldersIn("All"), ElementsAre("Ash", "Oak"));
    undo();
    EXPECT_THAT(foldersIn(""), ElementsAre("All", "Ash", "Oak"));
}

TEST_F(MainWindowFailuresTest, SavesTheOtherObjects)
{
    open();
    kxSelectionManager::selectNodes({addChair("Bench"), addLargeChair("Throne"), addChair("Chair")});
    {
        const kxtest::FileSizeLimit full(Room, kxtest::FileSizeLimit::Fails);
        press(Qt::Key_O, Qt::ControlModifier | Qt::ShiftModifier);
    }
    settle();

    EXPECT_THAT(names(), ElementsAre("Bench", "Chair"));
    EXPECT_EQ(takeReport(), "\"Throne\" was not saved. The disk is full.");
    undo();
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(MainWindowFailuresTest, SavesTheOtherMaterials)
{
    const std::string ash = storeMaterial("Ash");
    const std::string elm = storeMaterial("Elm");
    const std::string oak = storeMaterial("Oak");
    QDir().mkpath(path("Wood"));
    open();
    select({ash, elm, oak});
    press(Qt::Key_Return, Qt::ControlModifier);
    settle();
    const std::string large(2 * Room, 'x');
    kxMaterials::setName(kxMaterials::findAssetMaterial(elm), large, false);
    auto &list = widget<QListView>("materialList");
    clickItem(list, list.model()->index(0, 0));
    press(Qt::Key_A, Qt::ControlModifier);
    clickFolder(path("Wood"));
    {
        const kxtest::FileSizeLimit full(Room, kxtest::FileSizeLimit::Fails);
        press(Qt::Key_M, Qt::ControlModifier | Qt::ShiftModifier);
    }
    settle();

    EXPECT_EQ(foldersIn("Wood").size(), 2);
    EXPECT_EQ(takeReport(),
              "The material \"" + QString::fromStdString(large) + "\" could not be saved. The disk is full.");
    undo();
    EXPECT_THAT(foldersIn("Wood"), IsEmpty());
}

TEST_F(MainWindowFailuresTest, PutsBackTheOthersAsOneStepAndTellsAboveTheDialog)
{
    const std::vector<std::string> uuids{storeMaterial("Ash"), storeMaterial("Elm"), storeMaterial("Oak")};
    open();
    select(uuids);
    press(Qt::Key_Delete);
    settle();
    const QDir trash(path(".kx-trash"));
    for (const QString &place : trash.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        if (QDir(trash.filePath(place)).exists("MAT_Elm")) {
            QFile file(trash.filePath(place) + "/.origin");
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write("MAT_Elm/MAT_Elm.txt"); // where no folder can be made
            QDir().mkpath(path("MAT_Elm"));
            QFile obstacle(path("MAT_Elm/MAT_Elm.txt"));
            ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
        }
    QString told;
    kxModalQuestion::setDialogAnswerer({});
    QTimer helper; // the dialog has a loop of its own
    QObject::connect(&helper, &QTimer::timeout, [&] {
        auto *dialog = window->findChild<QDialog *>("trashDialog");
        auto *box = window->findChild<FailureBox *>();
        if (!dialog || !dialog->isVisible() || input.isBusy())
            return;
        helper.stop();
        auto &list = *dialog->findChild<QTreeWidget *>("deleted");
        auto &restore = *dialog->findChild<QAbstractButton *>("restore");
        showForInput(*dialog);
        clickItem(list, list.model()->index(0, 0));
        press(Qt::Key_A, Qt::ControlModifier);
        EXPECT_EQ(box, nullptr);
        click(restore, restore.rect().center());
        box = window->findChild<FailureBox *>();
        EXPECT_TRUE(box && box->isVisible());
        told = reported();
        if (box) {
            EXPECT_TRUE(QTest::qWaitForWindowExposed(box));
            QAbstractButton &close = *box->button(QMessageBox::Close);
            click(close, close.rect().center());
            EXPECT_FALSE(box->isVisible()) << "the dialog below does not hold it off";
        }
        dialog->reject();
    });
    helper.start(5);

    window->showTrash();
    settle();
    activate();

    EXPECT_EQ(told, QString("\"Elm\" could not be put back: \"%1\" cannot be made.").arg(path("MAT_Elm/MAT_Elm.txt")));
    EXPECT_THAT(names(), ElementsAre("Ash", "Oak"));
    undo();
    EXPECT_THAT(names(), IsEmpty()) << "it is one step";
    window->report({"Something later."});
    EXPECT_EQ(takeReport(), "Something later.") << "although the dialog is gone";
}

TEST_F(MainWindowFailuresTest, UndoesAndRedoesTheOthers)
{
    const std::string ash = storeMaterial("Ash");
    const std::string elm = storeMaterial("Elm");
    const std::string oak = storeMaterial("Oak");
    QDir().mkpath(path("Wood"));
    open();
    dragAssets({ash, elm, oak}, *window->folders().viewport(), placeOfFolder(path("Wood")));
    const LibraryContent moved = contentOf(path());
    QDir().mkpath(path("MAT_Elm"));

    undo();

    EXPECT_EQ(takeReport(), "\"Elm\" could not be put back: something else is at its place now.");
    EXPECT_THAT(foldersIn("Wood"), ElementsAre("MAT_Elm"));
    EXPECT_THAT(foldersIn(""), UnorderedElementsAre("MAT_Ash", "MAT_Elm", "MAT_Oak", "Wood"));
    QDir().rmdir(path("MAT_Elm"));
    pressRedo();
    settle();
    EXPECT_EQ(reported(), "") << "what stayed there needs no redo";
    EXPECT_EQ(differenceOf(moved, contentOf(path())), "");
    ASSERT_TRUE(QDir(path("Wood/MAT_Ash")).removeRecursively());
    undo();
    EXPECT_EQ(takeReport(), "\"Ash\" could not be moved: it is not there any more.");
    EXPECT_THAT(foldersIn(""), ElementsAre("MAT_Elm", "MAT_Oak", "Wood"));
    QDir().mkpath(path("Wood/MAT_Oak"));
    pressRedo();
    settle();
    EXPECT_EQ(takeReport(), "\"Oak\" could not be put back: something else is at its place now.");
    EXPECT_THAT(foldersIn("Wood"), ElementsAre("MAT_Elm", "MAT_Oak"));
}

TEST_F(MainWindowFailuresTest, ListsTheFirstOfManyAndTheOthersBehindAButton)
{
    std::vector<std::string> uuids;
    for (int i = 0; i < 9; ++i)
        uuids.push_back(storeMaterial("Oak " + std::to_string(i)));
    open();
    select(uuids);
    for (std::size_t i = 0; i < 8; ++i)
        ASSERT_TRUE(QDir(directoryOf(uuids.at(i))).removeRecursively());

    press(Qt::Key_Delete);
    settle();

    EXPECT_THAT(names(), IsEmpty());
    auto &box = *window->findChild<FailureBox *>();
    const QStringList shown = reported().split("\n\n");
    ASSERT_EQ(shown.size(), 7);
    EXPECT_EQ(shown.at(5), "\"Oak 5\" could not be moved: it is not there any more.");
    EXPECT_EQ(shown.at(6), "... and 2 more.");
    QAbstractButton *details = nullptr;
    for (QAbstractButton *button : box.buttons())
        if (box.buttonRole(button) == QMessageBox::ActionRole)
            details = button;
    ASSERT_NE(details, nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&box));
    click(*details, details->rect().center());
    auto *all = box.findChild<QTextEdit *>();
    ASSERT_TRUE(all && all->isVisible());
    EXPECT_EQ(all->toPlainText().split('\n').size(), 8);
    EXPECT_TRUE(all->toPlainText().endsWith("\"Oak 7\" could not be moved: it is not there any more."));

    takeReport();
    window->report({"One alone."});

    EXPECT_EQ(reported(), "One alone.");
    EXPECT_EQ(box.detailedText(), "") << "of the time before";
}
