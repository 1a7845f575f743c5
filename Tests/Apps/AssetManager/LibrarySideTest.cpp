// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/LibrarySide.h"

#include "AssetManager/Settings.h"
#include "AssetManager/Trash.h"
#include "Assets/kxAssetItem.h"
#include "Assets/kxAssetItemFactory.h"
#include "Kernel/kxModalQuestion.h"
#include "SceneFixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

#include <set>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int Patience = 10000; // milliseconds

class LibrarySideTest : public SceneFixture
{
protected:
    LibrarySideTest()
    {
        QSettings(QStringLiteral("kxAssets"), QStringLiteral("asset-manager")).clear();
        QDir().mkpath(library().toLocalFile());
        QObject::connect(&side, &LibrarySide::failed, [this](const QStringList &texts) { reported += texts; });
    }

    QString path(const QString &relative = {}) const
    {
        const QString root = QFileInfo(library().toLocalFile()).canonicalFilePath();
        return relative.isEmpty() ? root : root + '/' + relative;
    }
    void open()
    {
        ASSERT_EQ(side.open(library().toLocalFile()), QString());
        finishScan();
    }
    void finishScan()
    {
        if (side.scan().isRunning()) {
            EXPECT_TRUE(QSignalSpy(&side.scan(), &LibraryScan::finished).wait(Patience));
        }
    }
    std::vector<QString> names() const
    {
        std::vector<QString> found;
        AssetModel &assets = const_cast<LibrarySideTest *>(this)->side.assets();
        for (int row = 0; row < assets.rowCount(); ++row)
            found.push_back(assets.entry(row).name);
        return found;
    }
    QString directoryOf(const std::string &uuid)
    {
        const AssetEntry *entry = side.assets().find(uuid);
        return entry ? entry->directory : QString();
    }
    static QString id(const std::string &uuid) { return QString::fromStdString(uuid); }

    LibrarySide side{stack};
    QStringList reported;
};

TEST_F(LibrarySideTest, ShowsWhatALibraryHoldsByName)
{
    storeMaterial("Oak 10");
    storeMaterial("ash");
    storeMaterial("Oak 9");

    open();

    EXPECT_THAT(names(), ElementsAre("ash", "Oak 9", "Oak 10"));
}

TEST_F(LibrarySideTest, AnnouncesThatItReads)
{
    storeMaterial("Oak");
    QSignalSpy started(&side.scan(), &LibraryScan::started);
    QSignalSpy finished(&side.scan(), &LibraryScan::finished);

    side.open(path());

    EXPECT_TRUE(side.scan().isRunning());
    EXPECT_EQ(started.count(), 1);
    finishScan();
    ASSERT_EQ(finished.count(), 1);
    EXPECT_FALSE(finished.first().first().toBool());
    EXPECT_EQ(side.scan().assetCount(), 1);
}

TEST_F(LibrarySideTest, StopsReadingWhenItIsTold)
{
    for (int i = 0; i < 5; ++i)
        storeMaterial("Oak " + std::to_string(i));
    QSignalSpy finished(&side.scan(), &LibraryScan::finished);
    side.open(path());

    side.scan().cancel();

    ASSERT_EQ(finished.count(), 1);
    EXPECT_TRUE(finished.first().first().toBool());
    EXPECT_FALSE(side.scan().isRunning());
    side.scan().cancel(); // nothing more to stop
    EXPECT_EQ(finished.count(), 1);
}

TEST_F(LibrarySideTest, SaysWhichLibraryIsNotThere)
{
    side.open(path("gone"));
    finishScan();

    ASSERT_EQ(reported.size(), 1);
    EXPECT_TRUE(reported.first().contains("gone"));
    EXPECT_EQ(side.folders().libraries(), QStringList{path("gone")});
}

TEST_F(LibrarySideTest, RefusesALibraryInsideAnother)
{
    open();
    QDir().mkpath(path("Inner"));

    EXPECT_NE(side.open(path("Inner")), QString());

    EXPECT_EQ(side.folders().libraries(), QStringList{path()});
}

TEST_F(LibrarySideTest, ShowsFoldersAlsoWhenTheyAreEmpty)
{
    QDir().mkpath(path("Metals/Polished"));
    storeMaterial("Oak");

    open();

    EXPECT_TRUE(side.folders().indexOf(path("Metals")).isValid());
    EXPECT_TRUE(side.folders().indexOf(path("Metals/Polished")).isValid());
    EXPECT_EQ(side.folders().rowCount(side.folders().indexOf(path())), 1); // assets are no folders
}

TEST_F(LibrarySideTest, FindsWhatComesFromOutside)
{
    open();
    const std::string uuid = storeMaterial("Oak");
    kxAssetItemFactory::the().deleteItem(uuid); // as if another program had saved it

    EXPECT_TRUE(QTest::qWaitFor([&] { return side.assets().find(uuid) != nullptr; }, Patience));
}

TEST_F(LibrarySideTest, DropsWhatGoesFromOutside)
{
    const std::string uuid = storeMaterial("Oak");
    storeMaterial("Ash");
    open();

    ASSERT_TRUE(QDir(directoryOf(uuid)).removeRecursively());

    EXPECT_TRUE(QTest::qWaitFor([&] { return side.assets().find(uuid) == nullptr; }, Patience));
    EXPECT_EQ(kxAssetItemFactory::the().findItem(uuid), nullptr);
    EXPECT_THAT(names(), ElementsAre("Ash"));
}

TEST_F(LibrarySideTest, ReadsOnlyWhatChangedWhenItLooksAgain)
{
    const std::string oak = storeMaterial("Oak");
    storeMaterial("Ash");
    open();
    // Written later than it was read, as the file system counts.
    QFile changed(directoryOf(oak) + "/later.txt");
    ASSERT_TRUE(changed.open(QIODevice::WriteOnly));
    std::vector<std::string> read;
    QObject::connect(&side.scan(), &LibraryScan::assetsChanged, [&](const std::vector<std::string> &uuids) {
        read.insert(read.end(), uuids.begin(), uuids.end());
    });

    side.refresh();
    finishScan();

    EXPECT_THAT(read, ElementsAre(oak));
}

TEST_F(LibrarySideTest, RenamesAndTakesItBack)
{
    const std::string uuid = storeMaterial("Oak");
    open();

    side.actions().renameAsset(id(uuid), "Bog oak");
    EXPECT_THAT(names(), ElementsAre("Bog oak"));
    stack.undo();
    EXPECT_THAT(names(), ElementsAre("Oak"));
    stack.redo();
    EXPECT_THAT(names(), ElementsAre("Bog oak"));
    EXPECT_TRUE(reported.isEmpty());
}

TEST_F(LibrarySideTest, MovesSeveralAssetsOfOneNameAndTakesThatBack)
{
    const std::string one = storeMaterial("Oak");
    const std::string two = storeMaterial("Oak");
    open();
    QDir().mkpath(path("Wood"));
    const QString before = directoryOf(one);
    std::set<QString> taken;

    side.actions().moveAssets({id(one), id(two)}, path("Wood"));

    for (const std::string &uuid : {one, two}) {
        EXPECT_EQ(QFileInfo(directoryOf(uuid)).path(), path("Wood"));
        EXPECT_TRUE(QFileInfo(directoryOf(uuid)).isDir());
        taken.insert(directoryOf(uuid));
    }
    EXPECT_EQ(taken.size(), 2U);
    stack.undo();
    EXPECT_EQ(directoryOf(one), before);
    EXPECT_TRUE(QFileInfo(before).isDir());
    finishScan();
    EXPECT_EQ(side.assets().rowCount(), 2);
}

TEST_F(LibrarySideTest, KeepsAFolderWhoseLastAssetWasMovedOut)
{
    const std::string uuid = storeMaterial("Oak");
    open();
    QDir().mkpath(path("Wood"));
    QDir().mkpath(path("Other"));
    side.actions().moveAssets({id(uuid)}, path("Wood"));
    finishScan();

    side.actions().moveAssets({id(uuid)}, path("Other"));
    finishScan();

    EXPECT_TRUE(QFileInfo(path("Wood")).isDir());
    EXPECT_TRUE(side.folders().indexOf(path("Wood")).isValid());
}

TEST_F(LibrarySideTest, DeletesIntoTheTrashAndBringsBack)
{
    const std::string uuid = storeMaterial("Oak");
    open();
    const QString before = directoryOf(uuid);

    side.actions().trashAssets({id(uuid)});

    EXPECT_TRUE(names().empty());
    EXPECT_EQ(kxAssetItemFactory::the().findItem(uuid), nullptr);
    EXPECT_EQ(Trash(path()).entries().size(), 1U);
    finishScan();
    EXPECT_TRUE(names().empty()); // reading does not find the trash
    stack.undo();
    EXPECT_THAT(names(), ElementsAre("Oak"));
    EXPECT_EQ(directoryOf(uuid), before);
    EXPECT_TRUE(Trash(path()).entries().empty());
    stack.redo();
    EXPECT_TRUE(names().empty());
}

TEST_F(LibrarySideTest, NeverTakesWhatIsInTheTrashForAnAsset)
{
    // Reading the places that a step touched found it there, and had it back in the list.
    const std::string uuid = storeMaterial("Oak");
    open();
    side.actions().trashAssets({id(uuid)});
    for (int round = 0; round < 3; ++round) {
        finishScan();
        EXPECT_EQ(kxAssetItemFactory::the().findItem(uuid), nullptr);
        EXPECT_TRUE(names().empty());
        stack.undo();
        finishScan();
        EXPECT_THAT(names(), ElementsAre("Oak"));
        stack.redo();
    }
}

TEST_F(LibrarySideTest, RestoresFromTheTrashLater)
{
    const std::string uuid = storeMaterial("Oak");
    open();
    side.actions().trashAssets({id(uuid)});
    const Trash::Entry entry = Trash(path()).entries().front();

    side.actions().restore({entry});
    finishScan();

    EXPECT_THAT(names(), ElementsAre("Oak"));
}

TEST_F(LibrarySideTest, LeavesWhatIsInAClosedLibraryAsItIs)
{
    const std::string oak = storeMaterial("Oak");
    const std::string elm = storeMaterial("Elm");
    const QString started = QDir::currentPath();
    QDir::setCurrent(QString::fromStdString(folder.string())); // where nothing is left of others
    open();
    const QString directory = directoryOf(oak);
    side.actions().remember({oak}, "Import"); // undo would put it into the trash
    const QString made = side.actions().createFolder(path());
    side.actions().trashAssets({id(elm)});
    const QString trashed = Trash(path()).entries().front().path;
    finishScan();
    side.close(path());

    stack.undo();
    stack.undo();
    stack.undo();

    EXPECT_EQ(reported, QStringList({"\"Elm\" was left as it is: its library is not open any more.",
                                     "\"New folder\" was left as it is: its library is not open any more.",
                                     "\"Oak\" was left as it is: its library is not open any more."}));
    EXPECT_TRUE(QFileInfo(directory).isDir());
    EXPECT_TRUE(QFileInfo(made).isDir());
    EXPECT_TRUE(QFileInfo(trashed).isDir());
    EXPECT_FALSE(QFileInfo::exists(".kx-trash")) << "below wherever the program was started";
    QDir::setCurrent(started);
    QDir().rmdir(made);
    stack.redo();
    stack.redo();
    EXPECT_FALSE(QFileInfo::exists(made));
}

TEST_F(LibrarySideTest, PutsWhatWasRestoredIntoTheTrashAgain)
{
    const std::string uuid = storeMaterial("Oak");
    open();
    side.actions().trashAssets({id(uuid)});
    const Trash::Entry entry = Trash(path()).entries().front();
    side.actions().restore({entry});
    finishScan();

    stack.undo();
    finishScan();

    EXPECT_THAT(names(), IsEmpty());
    ASSERT_EQ(Trash(path()).entries().size(), 1U);
    EXPECT_EQ(Trash(path()).entries().front().origin, entry.origin);
    EXPECT_EQ(kxAssetItemFactory::the().findItem(uuid), nullptr);
    stack.redo();
    finishScan();
    EXPECT_THAT(names(), ElementsAre("Oak"));
    stack.undo();
    stack.undo(); // the deletion itself
    finishScan();
    EXPECT_THAT(names(), ElementsAre("Oak"));
    EXPECT_TRUE(Trash(path()).entries().empty());
    EXPECT_EQ(reported, QStringList());
}

TEST_F(LibrarySideTest, MovesFoldersWithTheirAssets)
{
    const std::string uuid = storeMaterial("Oak");
    open();
    QDir().mkpath(path("Wood"));
    QDir().mkpath(path("All"));
    side.actions().moveAssets({id(uuid)}, path("Wood"));
    finishScan();

    side.actions().moveFolders({path("Wood")}, path("All"));
    finishScan();

    EXPECT_TRUE(directoryOf(uuid).startsWith(path("All/Wood/")));
    EXPECT_TRUE(side.folders().indexOf(path("All/Wood")).isValid());
    EXPECT_FALSE(side.folders().indexOf(path("Wood")).isValid());
    stack.undo();
    finishScan();
    EXPECT_TRUE(directoryOf(uuid).startsWith(path("Wood/")));
}

TEST_F(LibrarySideTest, NeverMovesAFolderIntoItself)
{
    open();
    QDir().mkpath(path("Wood/Inner"));

    side.actions().moveFolders({path("Wood")}, path("Wood/Inner"));

    EXPECT_EQ(reported.size(), 1);
    EXPECT_TRUE(QFileInfo(path("Wood/Inner")).isDir());
    EXPECT_FALSE(stack.canUndo());
}

TEST_F(LibrarySideTest, AsksBeforeFoldersAreMerged)
{
    const std::string uuid = storeMaterial("Oak");
    open();
    QDir().mkpath(path("A/Wood"));
    QDir().mkpath(path("Wood"));
    side.actions().moveAssets({id(uuid)}, path("A/Wood"));
    finishScan();
    int asked = 0;
    kxModalQuestion::setAnswerer([&](const kxModalQuestion::Question &) {
        ++asked;
        return QMessageBox::Yes;
    });

    side.actions().moveFolders({path("A/Wood")}, path());
    kxModalQuestion::setAnswerer({});
    finishScan();

    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(directoryOf(uuid).startsWith(path("Wood/")));
    EXPECT_FALSE(QFileInfo(path("A/Wood")).exists());
}

TEST_F(LibrarySideTest, TakesBackAMergeAndDoesItAgain)
{
    const std::string oak = storeMaterial("Oak");
    const std::string otherOak = storeMaterial("Oak");
    const std::string ash = storeMaterial("Ash");
    open();
    for (const char *made : {"A/Wood/Light", "A/Wood/Dark", "Wood/Light"})
        QDir().mkpath(path(made));
    side.actions().moveAssets({id(oak)}, path("A/Wood"));
    side.actions().moveAssets({id(otherOak)}, path("Wood"));
    side.actions().moveAssets({id(ash)}, path("A/Wood/Dark"));
    for (const char *file : {"A/Wood/Light/notes", "A/Wood/same", "Wood/same"})
        EXPECT_TRUE(QFile(path(file)).open(QIODevice::WriteOnly));
    finishScan();
    const auto places = [&] { return QStringList{directoryOf(oak), directoryOf(otherOak), directoryOf(ash)}; };
    const QStringList before = places();
    kxModalQuestion::setAnswerer([](const kxModalQuestion::Question &) { return QMessageBox::Yes; });

    side.actions().moveFolders({path("A/Wood")}, path());
    kxModalQuestion::setAnswerer({});
    finishScan();
    const QStringList merged = places();
    const auto isMerged = [&] {
        return places() == merged && QFileInfo::exists(path("Wood/Light/notes")) &&
               !QFileInfo::exists(path("A/Wood/Light")) && QFileInfo(path("A/Wood/same")).isFile();
    };
    EXPECT_TRUE(isMerged());
    EXPECT_TRUE(merged[0].startsWith(path("Wood/")) && merged[0] != merged[1]);
    EXPECT_EQ(merged[2], QString(before[2]).replace(path("A/Wood"), path("Wood")));
    EXPECT_EQ(reported.size(), 1) << "two files of one name";

    stack.undo();
    finishScan();
    EXPECT_EQ(places()[0], before[0]);
    EXPECT_TRUE(directoryOf(ash).startsWith(path("A/Wood/Dark/")));
    EXPECT_TRUE(QFileInfo::exists(path("A/Wood/Light/notes")));
    EXPECT_FALSE(QFileInfo::exists(path("Wood/Dark")));
    EXPECT_TRUE(side.folders().indexOf(path("A/Wood/Light")).isValid());
    EXPECT_FALSE(side.folders().indexOf(path("Wood/Dark")).isValid());

    stack.redo();
    finishScan();
    EXPECT_TRUE(isMerged());
    EXPECT_EQ(reported.size(), 1) << reported.last().toStdString();
}

TEST_F(LibrarySideTest, ChangesTagsOfSeveralAndTakesThatBack)
{
    const std::string oak = storeMaterial("Oak");
    const std::string ash = storeMaterial("Ash");
    open();

    side.assetActions().editTags({id(oak), id(ash)}, {"wood", "old"}, {});
    EXPECT_EQ(side.assets().find(oak)->tags, (QStringList{"old", "wood"}));
    side.assetActions().editTags({id(oak)}, {}, {"old"});
    EXPECT_EQ(side.assets().find(oak)->tags, QStringList{"wood"});
    stack.undo();
    stack.undo();

    EXPECT_TRUE(side.assets().find(oak)->tags.isEmpty());
    EXPECT_TRUE(side.assets().find(ash)->tags.isEmpty());
    EXPECT_TRUE(reported.isEmpty());
}

TEST_F(LibrarySideTest, GoesOnWhereOneOfSeveralFails)
{
    const std::string oak = storeMaterial("Oak");
    const std::string chair = storeGeometry("Chair");
    const std::string ash = storeMaterial("Ash");
    open();

    side.assetActions().editTags({id(oak), id(chair), id(ash)}, {"wood"}, {});

    ASSERT_EQ(reported.size(), 1);
    EXPECT_TRUE(reported.first().contains("Chair"));
    EXPECT_EQ(side.assets().find(ash)->tags, QStringList{"wood"});
}

TEST_F(LibrarySideTest, DoesNotOverwriteWhatTookThePlaceMeanwhile)
{
    const std::string uuid = storeMaterial("Oak");
    open();
    const QString before = directoryOf(uuid);
    side.actions().trashAssets({id(uuid)});
    QDir().mkpath(before);

    stack.undo();

    EXPECT_EQ(reported.size(), 1);
    EXPECT_EQ(Trash(path()).entries().size(), 1U);
}

TEST_F(LibrarySideTest, UndoesWhatWasMade)
{
    open();
    const std::string uuid = storeMaterial("Oak");
    side.actions().remember({uuid}, "Import");
    EXPECT_THAT(names(), ElementsAre("Oak"));

    stack.undo();
    EXPECT_TRUE(names().empty());
    stack.redo();

    EXPECT_THAT(names(), ElementsAre("Oak"));
}

TEST_F(LibrarySideTest, RemembersFavouritesAndWhatWasUsed)
{
    const std::string oak = storeMaterial("Oak");
    const std::string ash = storeMaterial("Ash");
    open();

    side.setFavourite({id(oak)}, true);
    side.markUsed({id(oak)});
    side.markUsed({id(ash)});

    AssetFilter filter;
    filter.special = AssetFilter::Special::Favourites;
    side.assets().setFilter(filter);
    EXPECT_THAT(names(), ElementsAre("Oak"));
    filter.special = AssetFilter::Special::Recent;
    side.assets().setFilter(filter);
    EXPECT_THAT(names(), ElementsAre("Ash", "Oak")); // the latest first
    EXPECT_EQ(Settings::favourites(), QStringList{id(oak)});
    side.setFavourite({id(oak)}, false);
    EXPECT_TRUE(Settings::favourites().isEmpty());
}

TEST_F(LibrarySideTest, ForgetsAClosedLibraryAndLeavesItsFiles)
{
    const std::string uuid = storeMaterial("Oak");
    open();
    const QString directory = directoryOf(uuid);

    side.close(path());

    EXPECT_TRUE(names().empty());
    EXPECT_EQ(kxAssetItemFactory::the().findItem(uuid), nullptr);
    EXPECT_TRUE(side.folders().libraries().isEmpty());
    EXPECT_TRUE(QFileInfo(directory).isDir());
}

TEST_F(LibrarySideTest, KeepsTheSelectionWhileRowsCome)
{
    storeMaterial("Oak");
    open();
    QPersistentModelIndex selected = side.assets().index(0, 0);

    storeMaterial("Ash");
    side.refresh();
    finishScan();

    ASSERT_TRUE(selected.isValid());
    EXPECT_EQ(selected.row(), 1);
    EXPECT_EQ(selected.data(Qt::EditRole).toString(), "Oak");
}

TEST_F(LibrarySideTest, TellsHowAssetsStandToTheScene)
{
    const std::string uuid = storeMaterial("Oak");
    open();
    EXPECT_EQ(side.states().stateOf(uuid), 0U);

    actions.loadMaterials({uuid});
    side.states().update();

    EXPECT_EQ(side.states().stateOf(uuid), AssetStates::InScene);
    EXPECT_EQ(side.states().reasonsOf(uuid).size(), 1);
}

TEST_F(LibrarySideTest, LoadsPreviewsThatAreWantedAndNoOthers)
{
    const std::string oak = storeMaterial("Oak");
    const std::string ash = storeMaterial("Ash");
    open();

    side.previews().want({{id(oak), directoryOf(oak)}});

    EXPECT_TRUE(QSignalSpy(&side.previews(), &PreviewCache::loaded).wait(Patience));
    EXPECT_FALSE(side.previews().find(id(oak)).isNull());
    EXPECT_TRUE(side.previews().find(id(ash)).isNull());
    EXPECT_EQ(side.previews().loadedCount(), 1);
}

TEST_F(LibrarySideTest, SaysWhereThereIsNoPreview)
{
    const std::string oak = storeMaterial("Oak");
    open();
    for (const QFileInfo &file : QDir(directoryOf(oak)).entryInfoList({"*.png"}))
        QFile::remove(file.filePath());

    side.previews().want({{id(oak), directoryOf(oak)}});
    EXPECT_TRUE(QSignalSpy(&side.previews(), &PreviewCache::loaded).wait(Patience));

    EXPECT_TRUE(side.previews().isMissing(id(oak)));
}

TEST_F(LibrarySideTest, MarksAnAssetWithoutItsFileAsBroken)
{
    const std::string chair = storeGeometry("Chair");
    open();
    for (const QFileInfo &file : QDir(directoryOf(chair)).entryInfoList({"*.osb"}))
        QFile::remove(file.filePath());
    side.previews().want({{id(chair), directoryOf(chair)}});
    EXPECT_TRUE(QSignalSpy(&side.previews(), &PreviewCache::loaded).wait(Patience));

    EXPECT_EQ(side.states().stateOf(chair), AssetStates::Broken);
    EXPECT_FALSE(side.states().reasonsOf(chair).isEmpty());
}

} // namespace
