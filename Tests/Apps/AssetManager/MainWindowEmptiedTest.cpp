// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/LibrarySide.h"
#include "WindowFixture.h"

#include <QDir>
#include <QTest>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A library on a drive that leaves an empty folder behind.
class MainWindowEmptiedTest : public WindowFixture
{
protected:
    MainWindowEmptiedTest() : place(path()) {}

    void takeDriveAway()
    {
        ASSERT_TRUE(QDir().rename(place, place + " away"));
        ASSERT_TRUE(QDir().mkpath(place));
    }
    void bringDriveBack()
    {
        ASSERT_TRUE(QDir().rmdir(place));
        ASSERT_TRUE(QDir().rename(place + " away", place));
    }
    bool waitForReport()
    {
        return QTest::qWaitFor([this] { return !reported().isEmpty() && window->isIdle(); }, Patience);
    }
    bool waitForNames(const std::vector<QString> &expected)
    {
        return QTest::qWaitFor([&] { return names() == expected && window->isIdle(); }, Patience);
    }

    const QString place;
    const QString emptiness = QString("The folder \"%1\" is empty now. Is its drive connected?").arg(place);
};

TEST_F(MainWindowEmptiedTest, SaysThatALibraryIsEmptyWhereItsDriveWent)
{
    storeMaterial("Oak");
    open();

    takeDriveAway();
    ASSERT_TRUE(waitForReport());

    EXPECT_EQ(takeReport(), emptiness);
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_EQ(window->libraries().folders().problemOf(place), emptiness);
    EXPECT_EQ(window->browser().hint(), emptiness + "\nIt is read as soon as that is possible.");
    press(Qt::Key_F5);
    settle();
    EXPECT_EQ(reported(), "") << "it was said, and is still to be seen";

    bringDriveBack();
    EXPECT_TRUE(waitForNames({"Oak"}));
    EXPECT_EQ(window->libraries().folders().problemOf(place), "");
    EXPECT_EQ(reported(), "");
}

TEST_F(MainWindowEmptiedTest, KnowsFromTheLastTimeThatThereWereAssets)
{
    storeMaterial("Oak");
    open();
    ASSERT_THAT(names(), ElementsAre("Oak"));
    window.reset();
    takeDriveAway();

    makeWindow();
    window->openLibraries({});
    ASSERT_TRUE(waitForReport());

    EXPECT_EQ(takeReport(), emptiness);
}

TEST_F(MainWindowEmptiedTest, SaysNothingOfAFolderThatNeverHeldAssets)
{
    open();
    press(Qt::Key_F5);
    settle();

    EXPECT_EQ(reported(), "");
    EXPECT_EQ(window->libraries().folders().problemOf(place), "");
}

} // namespace
