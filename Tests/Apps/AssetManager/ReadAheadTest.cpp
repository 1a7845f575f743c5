// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ReadAhead.h"

#include "AssetManager/DriveInquiry.h"
#include "AssetSession/kxAssetSession.h"
#include "SlowDisk.h"
#include "Support/TemporaryFolder.h"

#include <QDir>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <chrono>

namespace {

constexpr int Patience = 30000; // milliseconds

class ReadAheadTest : public testing::Test
{
protected:
    ReadAheadTest()
    {
        for (const char *name : {"a", "b"})
            QDir().mkpath(path(name));
        disk.begin(path({}));
    }
    ~ReadAheadTest() override { disk.end(); }

    QString path(const QString &name) const
    {
        const QString root = QString::fromStdString(folder.file("lib"));
        return name.isEmpty() ? root : root + '/' + name;
    }

    kxtest::TemporaryFolder folder;
    kxAssetSession session;
    SlowDisk &disk = SlowDisk::the();
};

} // namespace

TEST_F(ReadAheadTest, TellsWhenWhatIsWaitedForMayBeRead)
{
    disk.hold(path({}));
    ReadAhead ahead;
    QSignalSpy advanced(&ahead, &ReadAhead::advanced);
    ahead.want({path("a"), path("b")}, true);
    EXPECT_FALSE(ahead.take(path("a")));
    EXPECT_TRUE(ahead.isWanted(path("a")));

    disk.letGo();
    while (!ahead.take(path("a"))) { // two are read at a time, and the other one may be done first
        ASSERT_TRUE(advanced.wait(Patience));
    }

    EXPECT_FALSE(ahead.isWanted(path("a")));
    while (!ahead.take(path("b"))) {
        ASSERT_TRUE(advanced.wait(Patience));
    }
}

TEST_F(ReadAheadTest, ForgetsWhatWasWanted)
{
    disk.hold(path({}));
    ReadAhead ahead;
    ahead.want({path("a"), path("b")}, false);
    QSignalSpy advanced(&ahead, &ReadAhead::advanced);

    ahead.clear();
    disk.letGo();
    ahead.want({path("b")}, true);
    while (!ahead.take(path("b"))) {
        ASSERT_TRUE(advanced.wait(Patience));
    }

    EXPECT_FALSE(ahead.isWanted(path("a")));
    EXPECT_FALSE(ahead.take(path("a")));
}

TEST_F(ReadAheadTest, ReadsOthersWhereWhatDoesNotAnswerIsGivenUp)
{
    QDir().mkpath(path("away/c"));
    QDir().mkpath(path("away/d"));
    disk.hold(path("away"));
    ReadAhead ahead;
    ahead.want({path("away/c"), path("away/d")}, true);
    ASSERT_TRUE(QTest::qWaitFor([this] { return disk.waitingCount() == 2; }, Patience));

    ahead.giveUp();
    EXPECT_FALSE(ahead.isWanted(path("away/c")));
    QSignalSpy advanced(&ahead, &ReadAhead::advanced);
    ahead.want({path("b")}, true);
    while (!ahead.take(path("b"))) {
        ASSERT_TRUE(advanced.wait(Patience));
    }

    EXPECT_EQ(disk.waitingCount(), 2);
    disk.letGo();
    ASSERT_TRUE(QTest::qWaitFor([this] { return disk.waitingCount() == 0; }, Patience));
    EXPECT_FALSE(ahead.take(path("away/c")));
}

TEST_F(ReadAheadTest, WaitsOnceForAllThatWasGivenUp)
{
    disk.hold(path({}));
    QElapsedTimer timer;
    {
        ReadAhead ahead;
        for (int times = 1; times <= 2; ++times) {
            ahead.want({path("a")}, true);
            ASSERT_TRUE(QTest::qWaitFor([&] { return disk.waitingCount() == times; }, Patience));
            ahead.giveUp();
        }
        timer.start();
    }

    const qint64 farewell = std::chrono::milliseconds(DriveInquiry::Farewell).count();
    EXPECT_GE(timer.elapsed(), farewell) << "one of them may answer by then";
    EXPECT_LT(timer.elapsed(), 2 * farewell);
    disk.letGo();
    EXPECT_TRUE(QTest::qWaitFor([this] { return disk.waitingCount() == 0; }, Patience));
}

TEST_F(ReadAheadTest, EndsWhileADriveDoesNotAnswer)
{
    disk.hold(path({}));
    {
        ReadAhead ahead;
        ahead.want({path("a")}, true);
        ASSERT_TRUE(QTest::qWaitFor([this] { return disk.waitingCount() == 1; }, Patience));
    }

    EXPECT_EQ(disk.waitingCount(), 1);
    disk.letGo();
    EXPECT_TRUE(QTest::qWaitFor([this] { return disk.waitingCount() == 0; }, Patience));
}
