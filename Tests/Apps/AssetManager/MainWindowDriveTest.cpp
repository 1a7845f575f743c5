// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/AssetStates.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/FolderTree.h"
#include "AssetManager/LibrarySide.h"
#include "WindowFixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QProcess>
#include <QTest>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// What happens to libraries by others, while the window is open and nobody does anything with it.
class MainWindowDriveTest : public WindowFixture
{
protected:
    bool waitForNames(const std::vector<QString> &expected)
    {
        return QTest::qWaitFor([&] { return names() == expected && window->isIdle(); }, Patience);
    }
    bool waitForReport()
    {
        return QTest::qWaitFor([this] { return !reported().isEmpty() && window->isIdle(); }, Patience);
    }
    /// Has another program keep a material of this colour, over that of the last time.
    void storeByOther(const std::string &color)
    {
        const std::string description = R"({"materials": [{"name": "Paint", "DiffuseColor": ")" + color + R"("}]})";
        const QString file = QString::fromStdString(folder.write("paint.materials.json", description));
        QProcess program;
        program.start(KX_ASSETS, {"import", file, "--library", path(), "--preview-size=16", "--preview-samples=1"});
        // Its exit is waited for in the loop of events, as in the life of the program.
        EXPECT_TRUE(QTest::qWaitFor([&] { return program.state() == QProcess::NotRunning; }, Patience));
        EXPECT_EQ(program.exitCode(), 0) << program.readAllStandardError().toStdString();
    }
    unsigned stateOf(const std::string &uuid) { return window->libraries().states().stateOf(uuid); }
};

TEST_F(MainWindowDriveTest, NoticesByItselfThatALibraryWentAndReadsItWhenItIsBack)
{
    const QString place = path();
    const QString away = place + " away";
    ASSERT_TRUE(QDir().mkpath(path("Wood")));
    const std::string oak = storeMaterial("Oak");
    open();
    window->libraries().actions().moveAssets({id(oak)}, path("Wood"));
    window->libraries().setFavourite({id(oak)}, true);
    settle();
    clickFolder(path("Wood"));

    ASSERT_TRUE(QDir().rename(place, away));
    ASSERT_TRUE(waitForReport());

    const QString problem = QString("The folder \"%1\" is not there. Is its drive connected?").arg(place);
    EXPECT_EQ(takeReport(), problem);
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_EQ(window->browser().hint(), problem + "\nIt is read as soon as that is possible.");
    EXPECT_EQ(window->libraries().folders().libraries(), QStringList{place});
    press(Qt::Key_F5);
    settle();
    EXPECT_EQ(reported(), "") << "it was said, and is still to be seen";

    ASSERT_TRUE(QDir().rename(away, place));
    ASSERT_TRUE(waitForNames({"Oak"}));
    EXPECT_EQ(window->folders().folder(), place + "/Wood") << "which was chosen before";
    EXPECT_TRUE(window->libraries().assets().find(oak)->isFavourite);
    EXPECT_EQ(window->libraries().folders().problemOf(place), "");
    storeMaterial("Ash");
    clickFolder(place);
    EXPECT_TRUE(waitForNames({"Ash", "Oak"})) << "it is watched as before";
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowDriveTest, NoticesThatTheDriveBelowALibraryWent)
{
    const QString drive = QFileInfo(path()).path() + "/drive";
    const QString library = drive + "/Things/Library";
    storeMaterial("Oak");
    ASSERT_TRUE(QDir().mkpath(drive + "/Things"));
    ASSERT_TRUE(QDir().rename(path(), library));
    window->openLibraries({library});
    settle();
    ASSERT_THAT(names(), ElementsAre("Oak"));

    ASSERT_TRUE(QDir().rename(drive, drive + " away")); // of which the library's folder hears nothing
    ASSERT_TRUE(waitForReport());
    EXPECT_THAT(names(), IsEmpty());

    ASSERT_TRUE(QDir().rename(drive + " away", drive));
    EXPECT_TRUE(waitForNames({"Oak"}));
}

TEST_F(MainWindowDriveTest, ShowsAFolderThatAnotherProgramMakes)
{
    open();
    QProcess::execute("mkdir", {"-p", path("Wood/Inner")});
    const auto isShown = [this](const QString &name) {
        return window->libraries().folders().indexOf(path(name)).isValid();
    };

    ASSERT_TRUE(QTest::qWaitFor([&] { return isShown("Wood/Inner"); }, Patience));
    QProcess::execute("rmdir", {path("Wood/Inner")});

    EXPECT_TRUE(QTest::qWaitFor([&] { return isShown("Wood") && !isShown("Wood/Inner"); }, Patience));
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowDriveTest, MarksAnAssetThatAnotherProgramStoredAgain)
{
    storeByOther("#ff0000");
    open();
    ASSERT_THAT(names(), ElementsAre("Paint"));
    const std::string paint = window->libraries().assets().entry(0).uuid;
    clickAsset(paint);
    press(Qt::Key_Return, Qt::ControlModifier);
    settle();
    ASSERT_TRUE(QTest::qWaitFor([&] { return stateOf(paint) == AssetStates::InScene; }, Patience));

    storeByOther("#00ff00");

    EXPECT_TRUE(QTest::qWaitFor([&] { return (stateOf(paint) & AssetStates::StoredNewer) != 0; }, Patience));
    EXPECT_THAT(names(), ElementsAre("Paint"));
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowDriveTest, MarksAnAssetThatIsOverwrittenWhereItIsWhileNothingOfItIsShown)
{
    storeByOther("#ff0000");
    open();
    const std::string paint = window->libraries().assets().entry(0).uuid;
    const QDir directory(directoryOf(paint));
    const QString before = QString::fromStdString(folder.makeFolder("before"));
    for (const QString &file : directory.entryList(QDir::Files))
        ASSERT_TRUE(QFile::copy(directory.filePath(file), before + '/' + file));
    storeByOther("#00ff00");
    settle();
    clickAsset(paint);
    press(Qt::Key_Return, Qt::ControlModifier);
    settle();
    window->browser().setText("nothing is called that");
    ASSERT_TRUE(QTest::qWaitFor([&] { return stateOf(paint) == AssetStates::InScene && names().empty(); }, Patience));

    QStringList arguments = QDir(before).entryList(QDir::Files);
    for (QString &file : arguments)
        file.prepend(before + '/');
    QProcess::execute("cp", arguments << directory.path()); // keeps the files, and writes into them

    EXPECT_TRUE(QTest::qWaitFor([&] { return (stateOf(paint) & AssetStates::StoredNewer) != 0; }, Patience));
}

} // namespace
