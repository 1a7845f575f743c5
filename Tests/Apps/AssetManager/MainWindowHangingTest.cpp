// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/FolderTree.h"
#include "AssetManager/LibrarySide.h"
#include "HangingDrive.h"
#include "WindowFixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <gmock/gmock.h>

#include <optional>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Two libraries, of which one lies on a drive that may cease to answer.
class MainWindowHangingTest : public WindowFixture
{
protected:
    MainWindowHangingTest() : share(QFileInfo(path()).path() + "/share")
    {
        ash = storeMaterial("Ash");
        const QString own = path();
        EXPECT_TRUE(QDir().rename(own, share));
        EXPECT_TRUE(QDir().mkpath(own));
        storeMaterial("Oak");
        home = own;
        beImpatient();
    }
    ~MainWindowHangingTest() override
    {
        window.reset();
        drive.reset();
    }

    void beImpatient()
    {
        window->libraries().scan().setPatience(300);
        window->libraries().previews().setPatience(300);
    }
    bool waitForNames(const std::vector<QString> &expected)
    {
        return QTest::qWaitFor([&] { return names() == expected && window->isIdle(); }, Patience);
    }
    bool waitForReport()
    {
        return QTest::qWaitFor([this] { return !reported().isEmpty() && window->isIdle(); }, Patience);
    }
    QVariant shown(int role) { return window->libraries().folders().indexOf(share).data(role); }
    QString problem() const { return window->libraries().folders().problemOf(share); }

    QString share;
    QString home;
    std::string ash; ///< lies on that drive
    const QString silence = QString("The folder \"%1\" does not answer. Is its drive or network connected?").arg(share);
    std::optional<HangingDrive> drive;
};

TEST_F(MainWindowHangingTest, OpensALibraryThatDoesNotAnswerAndReadsItWhenItDoes)
{
    drive.emplace(share);

    window->openLibraries({share, home});
    EXPECT_EQ(window->libraries().folders().libraries(), (QStringList{share, home}));
    EXPECT_EQ(shown(Qt::ToolTipRole).toString(), QString("Waiting for \"%1\" to answer").arg(share));
    ASSERT_TRUE(waitForReport());

    EXPECT_THAT(names(), ElementsAre("Oak"));
    EXPECT_EQ(takeReport(), silence);
    EXPECT_EQ(shown(Qt::ToolTipRole).toString(), silence);
    clickFolder(share);
    EXPECT_EQ(window->browser().hint(), silence + "\nIt is read as soon as that is possible.");
    press(Qt::Key_F5);
    settle();
    EXPECT_EQ(reported(), "") << "it was said, and is still to be seen";
    EXPECT_THAT(drive->askedByMainThread(), IsEmpty());

    clickFolder({});
    drive->letGo();
    EXPECT_TRUE(waitForNames({"Ash", "Oak"}));
    EXPECT_EQ(problem(), "");
    EXPECT_EQ(shown(Qt::ToolTipRole).toString(), share);
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowHangingTest, GoesOnWhileTheDriveOfAnOpenLibraryCeasesToAnswer)
{
    window->openLibraries({share, home});
    ASSERT_TRUE(waitForNames({"Ash", "Oak"}));
    drive.emplace(share);

    // The library is looked at every second.
    ASSERT_TRUE(QTest::qWaitFor([this] { return drive->waiting().contains("stat " + share); }, Patience));
    storeMaterial("Elm");
    press(Qt::Key_F5);
    ASSERT_TRUE(waitForReport());

    EXPECT_EQ(takeReport(), silence);
    EXPECT_THAT(names(), ElementsAre("Ash", "Elm", "Oak")) << "what was read is still shown";
    clickAsset(ash);
    EXPECT_THAT(window->browser().selected(), ElementsAre(ash));
    EXPECT_THAT(drive->askedByMainThread(), IsEmpty());
    drive->letGo();
    ASSERT_TRUE(QTest::qWaitFor([this] { return problem().isEmpty(); }, Patience));
    settle();
    EXPECT_THAT(names(), ElementsAre("Ash", "Elm", "Oak"));
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowHangingTest, LeavesALibraryAsideThatCeasesToAnswerWhileItIsRead)
{
    ASSERT_TRUE(QDir().mkpath(share + "/Wood"));
    drive.emplace(share + "/Wood");

    window->openLibraries({share, home});
    ASSERT_TRUE(waitForReport());

    EXPECT_EQ(takeReport(), silence);
    EXPECT_THAT(names(), ElementsAre("Ash", "Oak"));
    EXPECT_THAT(drive->askedByMainThread(), IsEmpty());
    drive->letGo();
    ASSERT_TRUE(QTest::qWaitFor(
        [this] { return window->libraries().folders().indexOf(share + "/Wood").isValid() && window->isIdle(); },
        Patience));
    EXPECT_EQ(problem(), "");
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowHangingTest, EndsWhileADriveDoesNotAnswer)
{
    window->openLibraries({home});
    settle();
    drive.emplace(share);
    window->openLibraries({share});
    ASSERT_TRUE(QTest::qWaitFor([this] { return !drive->waiting().isEmpty(); }, Patience));

    ASSERT_TRUE(window->close());
    window.reset();

    EXPECT_FALSE(drive->waiting().isEmpty());
    EXPECT_THAT(drive->askedByMainThread(), IsEmpty());
}

TEST_F(MainWindowHangingTest, NamesALibraryByItsPlaceWhateverLeadsThere)
{
    const QString link = QFileInfo(home).path() + "/link";
    ASSERT_TRUE(QFile::link(home, link));

    window->openLibraries({link});
    settle();

    EXPECT_EQ(window->libraries().folders().libraries(), QStringList{home});
    EXPECT_THAT(names(), ElementsAre("Oak"));
    window->openLibraries({link});
    settle();
    EXPECT_EQ(window->libraries().folders().libraries(), QStringList{home});
    EXPECT_EQ(reported(), "");
}

} // namespace
