// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/LibraryScan.h"

#include "AssetManager/AssetBrowser.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/ScanProgress.h"
#include "SlowDisk.h"
#include "WindowFixture.h"

#include <QAbstractButton>
#include <QDir>
#include <QEvent>
#include <QLabel>
#include <QProgressBar>
#include <QTest>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PaintWatch final : public QObject
{
public:
    explicit PaintWatch(QObject &watched) { watched.installEventFilter(this); }
    bool isPainted() const { return _isPainted; }

private:
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        _isPainted = _isPainted || event->type() == QEvent::Paint;
        return false;
    }

    bool _isPainted = false;
};

/// A library on a disk that takes its time.
class LibraryScanTest : public WindowFixture
{
protected:
    LibraryScanTest() { disk.begin(path()); }
    ~LibraryScanTest() override
    {
        disk.end();
        window.reset();
    }

    void storeIn(const QString &place, const std::string &name)
    {
        storeMaterial(name);
        QDir().mkpath(path(place));
        const QString stored = "MAT_" + QString::fromStdString(name);
        ASSERT_TRUE(QDir().rename(path(stored), path(place + '/' + stored)));
    }
    bool isRunning() const { return window->libraries().scan().isRunning(); }
    bool waitForNames(const std::vector<QString> &wanted) const
    {
        return QTest::qWaitFor([&] { return names() == wanted; }, Patience);
    }

    SlowDisk &disk = SlowDisk::the();
};

} // namespace

TEST_F(LibraryScanTest, ShowsThatItReadsBeforeTheDiskAnswers)
{
    storeIn("Wood", "Oak");
    auto &bar = *widget<ScanProgress>("scanProgress").findChild<QProgressBar *>();
    const PaintWatch watch(bar);
    disk.hold(path());

    window->openLibraries({library().toLocalFile()});
    ASSERT_TRUE(QTest::qWaitFor([&] { return watch.isPainted() && disk.waitingCount() > 0; }, Patience));

    EXPECT_TRUE(bar.isVisible());
    EXPECT_THAT(names(), IsEmpty());
    EXPECT_EQ(widget<QLabel>("emptyText").text(), "Reading the libraries...");
    clickButton("showLines"); // and the window answers
    EXPECT_EQ(window->browser().look(), AssetBrowser::Look::Lines);
    EXPECT_GT(disk.waitingCount(), 0);
    disk.letGo();
    settle();
    EXPECT_FALSE(bar.isVisible());
    EXPECT_THAT(names(), ElementsAre("Oak"));
}

TEST_F(LibraryScanTest, ShowsWhatItFoundWhileItReadsAndKeepsItWhenItIsStopped)
{
    storeIn("A", "Oak");
    storeIn("Z", "Yew");
    disk.hold(path("Z"));

    window->openLibraries({library().toLocalFile()});
    ASSERT_TRUE(waitForNames({"Oak"}));

    EXPECT_TRUE(isRunning());
    clickButton("cancelScan");
    EXPECT_FALSE(isRunning());
    EXPECT_THAT(names(), ElementsAre("Oak"));
    disk.letGo();
    settle();
    EXPECT_THAT(names(), ElementsAre("Oak"));
    press(Qt::Key_F5);
    settle();
    EXPECT_THAT(names(), ElementsAre("Oak", "Yew"));
}

TEST_F(LibraryScanTest, ReadsNoMoreOfALibraryThatIsClosedMeanwhile)
{
    storeIn("A", "Oak");
    storeIn("Z", "Yew");
    disk.hold(path("Z"));
    window->openLibraries({library().toLocalFile()});
    ASSERT_TRUE(waitForNames({"Oak"}));

    window->libraries().close(path());
    EXPECT_THAT(names(), IsEmpty());
    disk.letGo();
    settle();

    EXPECT_FALSE(isRunning());
    EXPECT_THAT(names(), IsEmpty());
    window->openLibraries({library().toLocalFile()});
    settle();
    EXPECT_THAT(names(), ElementsAre("Oak", "Yew"));
}

TEST_F(LibraryScanTest, GoesOnWhereAFolderVanishesBeforeItsTurn)
{
    storeIn("A", "Oak");
    storeIn("M/Inner", "Elm");
    storeIn("Z", "Yew");
    disk.hold(path("M"));
    window->openLibraries({library().toLocalFile()});
    ASSERT_TRUE(waitForNames({"Oak"}));

    ASSERT_TRUE(QDir(path("M")).removeRecursively());
    disk.letGo();
    settle();

    EXPECT_THAT(names(), ElementsAre("Oak", "Yew"));
    EXPECT_EQ(reported(), QString());
    EXPECT_FALSE(window->libraries().folders().indexOf(path("M")).isValid());
}

TEST_F(LibraryScanTest, GoesOnWhereAFolderVanishesWhileItIsRead)
{
    storeIn("A", "Oak");
    storeIn("M/Inner", "Elm");
    storeIn("Z", "Yew");
    disk.hold(path("M/Inner"));
    window->openLibraries({library().toLocalFile()});
    const auto isIn = [this](const char *name) { return window->libraries().folders().indexOf(path(name)).isValid(); };
    ASSERT_TRUE(QTest::qWaitFor([&] { return isIn("M") && disk.waitingCount() > 0; }, Patience));

    ASSERT_TRUE(QDir(path("M")).removeRecursively());
    disk.letGo();
    ASSERT_TRUE(waitForNames({"Oak", "Yew"}));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !isIn("M") && !isRunning(); }, Patience)); // its parent is looked at again

    EXPECT_EQ(reported(), QString());
    EXPECT_FALSE(isIn("M/Inner"));
    EXPECT_TRUE(isIn("Z"));
}
