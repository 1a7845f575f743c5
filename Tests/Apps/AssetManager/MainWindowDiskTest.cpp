// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/DetailsPane.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/LibraryWatcher.h"
#include "AssetManager/Trash.h"
#include "ReadOnly.h"
#include "Support/FileSizeLimit.h"
#include "WindowFixture.h"

#include <QBuffer>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QTreeView>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class MainWindowDiskTest : public WindowFixture
{
protected:
    /// As those do that keep the file and its place: no folder changes by it.
    void overwriteInPlace(const QString &name, const QByteArray &content)
    {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly));
        file.resize(0);
        file.write(content);
    }
    QString metadataOf(const std::string &uuid) const
    {
        const QDir directory(directoryOf(uuid));
        return directory.filePath(directory.entryList({"*.xml"}, QDir::Files).value(0));
    }
    QByteArray contentOf(const QString &name) const
    {
        QFile file(name);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
    void overwrite(const std::string &uuid, const char *suffix)
    {
        QDirIterator files(directoryOf(uuid), {QLatin1String(suffix)}, QDir::Files);
        int count = 0;
        for (; files.hasNext(); ++count) {
            QFile file(files.next());
            file.remove(); // as those do that write another file and rename it
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write("\x00\xff<garbage", 10);
        }
        ASSERT_GT(count, 0);
    }
    /// Whether the window does what it is told.
    void expectWorks()
    {
        const std::string uuid = storeMaterial("Later");
        press(Qt::Key_F5);
        settle();
        ASSERT_TRUE(window->libraries().assets().find(uuid));
        clickAsset(uuid);
        EXPECT_THAT(window->browser().selected(), ElementsAre(uuid));
    }
};

TEST_F(MainWindowDiskTest, SaysOnceThatALibraryVanishedWhileItWasRead)
{
    for (int i = 0; i < 5; ++i)
        storeMaterial("Oak " + std::to_string(i));
    const QString place = path();
    QDir().mkpath(path("A/Inner"));
    QDir().mkpath(path("B"));
    int found = 0;
    const auto removal = QObject::connect(&window->libraries().scan(), &LibraryScan::folderFound, [&] {
        if (++found == 1) {
            EXPECT_TRUE(QDir(place).removeRecursively());
        }
    });
    window->openLibraries({place});
    settle();
    QObject::disconnect(removal);
    press(Qt::Key_F5);
    settle();

    EXPECT_GE(found, 1);
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_EQ(takeReport(), QString("The folder \"%1\" is not there. Is its drive connected?").arg(place));
    ASSERT_TRUE(QDir().mkpath(place));
    expectWorks();
}

TEST_F(MainWindowDiskTest, StartsWithoutTheDriveAndReadsItWhenItIsBack)
{
    const QString place = QString::fromStdString(folder.file("drive"));
    storeMaterial("Oak");

    window->openLibraries({place, path()});
    settle();

    EXPECT_EQ(takeReport(), QString("The folder \"%1\" is not there. Is its drive connected?").arg(place));
    EXPECT_EQ(window->libraries().folders().libraries().size(), 2);
    EXPECT_THAT(names(), ElementsAre("Oak"));
    ASSERT_TRUE(QDir().rename(path(), place)); // it comes back with what was on it
    press(Qt::Key_F5);
    settle();
    EXPECT_THAT(names(), ElementsAre("Oak"));
    EXPECT_TRUE(window->libraries().assets().entry(0).directory.startsWith(place));
}

TEST_F(MainWindowDiskTest, SaysWhatMayNotBeWritten)
{
    const std::string oak = storeMaterial("Oak");
    addChair("Chair");
    open();
    const QString before = directoryOf(oak);
    auto &tree = widget<QTreeView>("sceneTree");
    const QModelIndexList rows = tree.model()->match(tree.model()->index(0, 0), Qt::DisplayRole, "Chair", 1);
    const std::unique_ptr<QMimeData> chair(tree.model()->mimeData(rows));
    {
        const ReadOnly disk(path());

        clickAsset(oak);
        press(Qt::Key_F2);
        type("Bog oak");
        press(Qt::Key_Return);
        settle();
        EXPECT_EQ(takeReport(), "\"Oak\" could not be renamed. You may not write there.");
        clickAsset(oak);
        press(Qt::Key_Delete);
        settle();
        EXPECT_EQ(takeReport(), "\"Oak\" could not be deleted: you may not write into its library.");
        window->libraries().assetActions().editTags({id(oak)}, {"wood"}, {});
        EXPECT_EQ(takeReport(), "The tags of \"Oak\" could not be changed. You may not write there.");
        clickFolder(path());
        press(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
        EXPECT_EQ(takeReport(), "No folder could be made in \"lib\". You may not write there.");
        dropOnFolder(path(), *chair);
        EXPECT_EQ(takeReport(), "\"Chair\" was not saved. You may not write there.");
    }

    EXPECT_FALSE(window->undoStack().canUndo());
    EXPECT_THAT(names(), ElementsAre("Oak"));
    EXPECT_EQ(directoryOf(oak), before);
    expectWorks();
}

TEST_F(MainWindowDiskTest, KeepsEverythingWhereTheDiskIsFull)
{
    const std::string oak = storeMaterial("Oak");
    addChair("Chair");
    open();
    auto &tree = widget<QTreeView>("sceneTree");
    const QModelIndexList rows = tree.model()->match(tree.model()->index(0, 0), Qt::DisplayRole, "Chair", 1);
    const std::unique_ptr<QMimeData> chair(tree.model()->mimeData(rows));
    {
        const kxtest::FileSizeLimit full(0, kxtest::FileSizeLimit::Fails);

        window->libraries().actions().renameAsset(id(oak), "Bog oak");
        EXPECT_EQ(takeReport(), "\"Oak\" could not be renamed. The disk is full.");
        window->libraries().assetActions().editTags({id(oak)}, {"wood"}, {});
        EXPECT_EQ(takeReport(), "The tags of \"Oak\" could not be changed. The disk is full.");
        window->libraries().actions().trashAssets({id(oak)});
        EXPECT_EQ(takeReport(), "\"Oak\" could not be deleted: the disk is full, and deleted assets are kept. Empty "
                                "\"Deleted assets\", or make room elsewhere.");
        dropOnFolder(path(), *chair);
        EXPECT_EQ(takeReport(), "\"Chair\" was not saved. The disk is full.");
    }

    EXPECT_FALSE(window->undoStack().canUndo());
    press(Qt::Key_F5);
    settle();
    EXPECT_THAT(names(), ElementsAre("Oak"));
    EXPECT_TRUE(Trash(path()).entries().empty());
    expectWorks();
}

TEST_F(MainWindowDiskTest, DropsASelectedAssetThatAnotherProgramDeleted)
{
    const std::string oak = storeMaterial("Oak");
    const std::string ash = storeMaterial("Ash");
    open();
    clickAsset(oak);

    ASSERT_TRUE(QDir(directoryOf(oak)).removeRecursively());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window->libraries().assets().find(oak); }, Patience));
    settle();

    EXPECT_THAT(window->browser().selected(), IsEmpty());
    EXPECT_FALSE(window->details().findChild<QLineEdit *>("name")->isVisible());
    expectWorks();
}

TEST_F(MainWindowDiskTest, SaysThatAnAssetIsGoneWhichItStillShows)
{
    const std::string oak = storeMaterial("Oak");
    open();
    clickAsset(oak);

    ASSERT_TRUE(QDir(directoryOf(oak)).removeRecursively()); // and nobody has looked yet
    window->deleteChosen();

    EXPECT_EQ(takeReport(), "\"Oak\" could not be moved: it is not there any more.");
    EXPECT_FALSE(window->undoStack().canUndo());
    expectWorks();
}

TEST_F(MainWindowDiskTest, ShowsAnAssetWhosePreviewIsGarbage)
{
    const std::string oak = storeMaterial("Oak");
    open();
    overwrite(oak, "*.png");
    window->libraries().previews().forget(id(oak));
    window->libraries().previews().want({{id(oak), directoryOf(oak)}});
    settle();

    clickAsset(oak);

    // Once more when the window has noticed by itself that the file is another one.
    EXPECT_TRUE(QTest::qWaitFor([&] { return window->libraries().previews().isMissing(id(oak)); }, Patience));
    EXPECT_EQ(window->details().findChild<QLineEdit *>("name")->text(), "Oak");
    expectWorks();
}

TEST_F(MainWindowDiskTest, SaysWhichMetadataCannotBeRead)
{
    const std::string oak = storeMaterial("Oak");
    storeMaterial("Ash");
    open();
    overwrite(oak, "*.xml");

    press(Qt::Key_F5);
    settle();

    EXPECT_THAT(names(), ElementsAre("Ash"));
    EXPECT_EQ(takeReport(),
              QString("The asset in \"%1\" cannot be read: its description is damaged.").arg(path("MAT_Oak")));
    press(Qt::Key_F5);
    settle();
    EXPECT_EQ(reported(), ""); // once is enough
    expectWorks();
}

TEST_F(MainWindowDiskTest, NoticesMetadataThatAnotherProgramOverwritesInItsPlace)
{
    const std::string oak = storeMaterial("Oak");
    storeMaterial("Ash");
    open();
    clickAsset(oak);
    const QString metadata = metadataOf(oak);

    overwriteInPlace(metadata, contentOf(metadata).replace(">Oak<", ">Bog oak<"));

    ASSERT_TRUE(QTest::qWaitFor([&] { return names() == std::vector<QString>{"Ash", "Bog oak"}; }, Patience));
    EXPECT_EQ(window->details().findChild<QLineEdit *>("name")->text(), "Bog oak");
    EXPECT_THAT(window->browser().selected(), ElementsAre(oak));
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowDiskTest, NoticesWhatWasOverwrittenOutOfSightWhenItIsActivated)
{
    const std::string oak = storeMaterial("Oak");
    open();
    press(Qt::Key_F, Qt::ControlModifier);
    type("nothing is called that");
    settle();
    ASSERT_THAT(names(), IsEmpty());
    const QString metadata = metadataOf(oak);
    overwriteInPlace(metadata, contentOf(metadata).replace(">Oak<", ">Bog oak<"));
    QWidget other; // another program, or its like
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other, Patience));

    activate();
    settle();

    EXPECT_EQ(window->libraries().assets().find(oak)->name, "Bog oak");
}

TEST_F(MainWindowDiskTest, ShowsAPreviewAnewThatAnotherProgramOverwritesInItsPlace)
{
    const std::string oak = storeMaterial("Oak");
    open();
    const QDir directory(directoryOf(oak));
    QImage blue(16, 16, QImage::Format_RGB32);
    blue.fill(Qt::blue);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    ASSERT_TRUE(blue.save(&buffer, "PNG"));

    overwriteInPlace(directory.filePath(directory.entryList({"*.png"}).value(0)), png);

    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            const QImage shown = window->libraries().previews().find(id(oak)).toImage();
            return !shown.isNull() && shown.pixelColor(8, 8) == QColor(Qt::blue);
        },
        Patience));
}

TEST_F(MainWindowDiskTest, LooksAtABoundedNumberOfAssetsOnly)
{
    QStringList directories;
    for (int i = 0; i <= LibraryWatcher::MaxSeen; ++i) {
        directories.append(path("MAT_%1").arg(i));
        ASSERT_TRUE(QDir().mkpath(directories.last()));
    }
    LibraryWatcher watcher;
    watcher.setKnown([](const QString &directory) { return DirectoryStamp(directory); });
    QSignalSpy noticed(&watcher, &LibraryWatcher::assetChanged);

    watcher.setSeen(directories);
    for (const QString &directory : directories) {
        QFile file(directory + "/new");
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    ASSERT_TRUE(noticed.wait(Patience));

    EXPECT_EQ(noticed.count(), LibraryWatcher::MaxSeen);
}

TEST_F(MainWindowDiskTest, SaysThatTheDescriptionOfAnAssetIsThatOfSomethingElse)
{
    const std::string oak = storeMaterial("Oak");
    open();
    const QString directory = directoryOf(oak);

    overwriteInPlace(metadataOf(oak), "<?xml version=\"1.0\"?><recipe><egg/></recipe>");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !reported().isEmpty(); }, Patience));
    settle();

    EXPECT_EQ(takeReport(),
              QString("The asset in \"%1\" cannot be read: its description is not that of an asset.").arg(directory));
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(MainWindowDiskTest, SaysNothingOfOtherXmlInFolders)
{
    storeMaterial("Oak");
    ASSERT_TRUE(QDir().mkpath(path("Notes/Inner")));
    for (const char *name : {"Notes/recipe.xml", "Notes/Inner/half.xml"}) {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(name[6] == 'r' ? "<recipe/>" : "<recipe><egg>");
    }

    open();

    EXPECT_EQ(reported(), "");
    EXPECT_THAT(names(), ElementsAre("Oak"));
}

} // namespace
