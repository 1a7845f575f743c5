// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/FolderTree.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/Trash.h"
#include "Assets/kxAssetItemFactory.h"
#include "LibraryContent.h"
#include "WindowFixture.h"

#include <QAbstractItemView>
#include <QDir>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

namespace {

using testing::IsEmpty;

/// What is done to many assets while a person looks on.
class MainWindowBatchTest : public WindowFixture
{
protected:
    MainWindowBatchTest()
    {
        for (int i = 0; i < Count; ++i)
            uuids.push_back(storeMaterial("Oak " + std::to_string(i)));
        QDir().mkpath(path("Wood"));
        open();
        window->libraries().actions().batches().setPatience(0);
        before = contentOf(path());
    }

    void selectAll()
    {
        clickAsset(uuids.front());
        press(Qt::Key_A, Qt::ControlModifier);
        ASSERT_EQ(window->browser().selected().size(), uuids.size());
    }
    /// Calls \a use once while the progress is seen and \a isTime.
    void during(const std::function<bool()> &isTime, const std::function<void(QProgressDialog &)> &use)
    {
        QObject::connect(&_helper, &QTimer::timeout, [this, isTime, use] {
            auto *dialog = window->findChild<QProgressDialog *>("batchProgress");
            if (!dialog || !dialog->isVisible() || isSeen || !isTime())
                return;
            isSeen = true;
            EXPECT_TRUE(QTest::qWaitFor([this] { return !input.isBusy(); }, Patience)) << "with what began it all";
            EXPECT_TRUE(QTest::qWaitForWindowExposed(dialog));
            use(*dialog);
        });
        _helper.start(0);
    }
    void cancelWhen(const std::function<bool()> &isTime)
    {
        during(isTime, [this](QProgressDialog &dialog) {
            auto *button = dialog.findChild<QPushButton *>();
            input.click(button->mapToGlobal(button->rect().center()), Qt::LeftButton, Qt::NoModifier);
        });
    }
    int countIn(const QString &directory) const
    {
        return QDir(path(directory)).entryList({"MAT_*"}, QDir::Dirs).size();
    }
    /// The progress was seen, was stopped, and is gone.
    void expectStopped()
    {
        _helper.stop();
        settle();
        activate();
        EXPECT_TRUE(isSeen);
        EXPECT_EQ(window->findChild<QProgressDialog *>("batchProgress"), nullptr);
        EXPECT_EQ(reported(), "");
    }

    static constexpr int Count = 6;
    std::vector<std::string> uuids;
    LibraryContent before;
    bool isSeen = false;

private:
    QTimer _helper;
};

} // namespace

TEST_F(MainWindowBatchTest, StopsAMoveByTheButtonAndTakesBackWhatWasMoved)
{
    selectAll();
    cancelWhen([this] { return countIn("Wood") == 2; });

    const QPoint place = placeOfFolder(path("Wood"));
    dragItem(window->browser().view(), window->libraries().assets().indexOf(uuids.front()),
             *window->folders().viewport(), place);
    expectStopped();

    EXPECT_EQ(countIn("Wood"), 2);
    EXPECT_EQ(window->undoStack().undoText(), "Move of 2 asset(s)");
    const LibraryContent stopped = contentOf(path());
    undo();
    EXPECT_EQ(differenceOf(before, contentOf(path())), "") << "it is one step";
    pressRedo();
    settle();
    EXPECT_EQ(differenceOf(stopped, contentOf(path())), "");
}

TEST_F(MainWindowBatchTest, StopsADeletionByTheButton)
{
    selectAll();
    cancelWhen([this] { return countIn("") == Count - 2; });

    press(Qt::Key_Delete);
    expectStopped();

    EXPECT_EQ(countIn(""), Count - 2);
    EXPECT_EQ(Trash(path()).entries().size(), 2U);
    EXPECT_EQ(names().size(), Count - 2U);
    undo();
    EXPECT_EQ(differenceOf(before, contentOf(path())), "");
}

TEST_F(MainWindowBatchTest, StopsAnEditOfTagsByTheButton)
{
    selectAll();
    const auto countTagged = [this] {
        return std::count_if(uuids.begin(), uuids.end(), [this](const std::string &uuid) {
            return window->libraries().assets().find(uuid)->tags.contains("wood");
        });
    };
    cancelWhen([&] { return countTagged() == 2; });
    auto &edit = widget<QLineEdit>("newTag");
    click(edit, edit.rect().center());
    type("wood");

    press(Qt::Key_Return);
    expectStopped();

    EXPECT_EQ(countTagged(), 2);
    clickAsset(uuids.front()); // the field for tags has an undo of its own
    undo();
    EXPECT_EQ(countTagged(), 0);
}

TEST_F(MainWindowBatchTest, ShowsHowFarItIs)
{
    selectAll();
    QString text;
    int value = -1;
    during([this] { return countIn("") == Count - 3; },
           [&](QProgressDialog &dialog) {
               text = dialog.labelText();
               value = dialog.value();
               EXPECT_EQ(dialog.maximum(), Count);
               EXPECT_TRUE(dialog.isModal()) << "nothing else is begun meanwhile";
           });

    press(Qt::Key_Delete);
    expectStopped();

    EXPECT_EQ(text, "Deletion of 6 asset(s)");
    EXPECT_EQ(value, 3);
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(MainWindowBatchTest, ShowsNothingOfWhatTakesNoTime)
{
    window->libraries().actions().batches().setPatience(600000);
    selectAll();
    during([] { return true; }, [](QProgressDialog &) {});

    press(Qt::Key_Delete);
    settle();

    EXPECT_FALSE(isSeen);
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(MainWindowBatchTest, DoesLaterWhatIsAskedForMeanwhile)
{
    const std::string ash = storeMaterial("Ash");
    press(Qt::Key_F5);
    settle();
    before = contentOf(path());
    LibraryActions &library = window->libraries().actions();
    QStringList moved;
    for (const std::string &uuid : uuids)
        moved.append(id(uuid));
    during([this] { return countIn("Wood") == 2; },
           [&](QProgressDialog &) {
               library.trashAssets({id(ash), id(uuids.back())});
               EXPECT_EQ(countIn("Wood"), 2) << "not within the other";
               EXPECT_TRUE(Trash(path()).entries().empty());
           });

    library.moveAssets(moved, path("Wood"));
    expectStopped();

    EXPECT_EQ(countIn("Wood"), Count - 1);
    EXPECT_EQ(Trash(path()).entries().size(), 2U);
    EXPECT_EQ(window->undoStack().undoText(), "Deletion of 2 asset(s)");
    undo();
    EXPECT_EQ(countIn("Wood"), Count);
    undo();
    EXPECT_EQ(differenceOf(before, contentOf(path())), "");
}

TEST_F(MainWindowBatchTest, GoesOnWhereAssetsVanishMeanwhile)
{
    selectAll();
    during([this] { return Trash(path()).entries().size() == 2; },
           [&](QProgressDialog &) {
               for (std::size_t i : {3U, 4U})
                   EXPECT_TRUE(QDir(directoryOf(uuids.at(i))).removeRecursively());
               window->libraries().refresh();
               EXPECT_TRUE(QTest::qWaitFor([this] { return !window->libraries().scan().isRunning(); }, Patience));
               EXPECT_EQ(kxAssetItemFactory::the().findItem(uuids.at(3)), nullptr);
           });

    press(Qt::Key_Delete);
    settle();

    EXPECT_TRUE(isSeen);
    EXPECT_EQ(takeReport(), "\"MAT_Oak 3\" could not be moved: it is not there any more.\n\n"
                            "\"MAT_Oak 4\" could not be moved: it is not there any more.");
    EXPECT_THAT(names(), IsEmpty());
    undo();
    EXPECT_EQ(names().size(), Count - 2U);
}
