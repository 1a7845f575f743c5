// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/PreviewCache.h"

#include "AssetSession/kxAssetSession.h"
#include "SlowDisk.h"
#include "Support/TemporaryFolder.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>

namespace {

using testing::IsEmpty;

constexpr int Patience = 30000; // milliseconds
constexpr int Side = 16;        // pixels: each picture takes one kilobyte

class PreviewCacheTest : public testing::Test
{
protected:
    PreviewCacheTest() { disk.begin(path({})); }
    ~PreviewCacheTest() override { disk.end(); }

    QString path(const QString &name) const
    {
        const QString root = QString::fromStdString(folder.file("lib"));
        return name.isEmpty() ? root : root + '/' + name;
    }
    static QString nameOf(int number) { return QStringLiteral("asset%1").arg(number); }
    /// Assets with pictures, as they are wanted.
    std::vector<PreviewCache::Wanted> make(int count) const
    {
        std::vector<PreviewCache::Wanted> made = missing(count);
        QImage picture(Side, Side, QImage::Format_RGB32);
        picture.fill(Qt::red);
        for (const PreviewCache::Wanted &asset : made) {
            QDir().mkpath(asset.directory);
            QFile payload(asset.directory + "/Oak.osb");
            EXPECT_TRUE(payload.open(QIODevice::WriteOnly));
            payload.write("payload");
            EXPECT_TRUE(picture.save(asset.directory + "/Oak.png"));
        }
        return made;
    }
    /// Assets without anything.
    std::vector<PreviewCache::Wanted> missing(int count) const
    {
        std::vector<PreviewCache::Wanted> made;
        made.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i)
            made.push_back({nameOf(i), path(nameOf(i))});
        return made;
    }
    static bool waitFor(const PreviewCache &cache)
    {
        QSignalSpy loaded(&cache, &PreviewCache::loaded);
        while (!cache.isIdle() && loaded.wait(Patience))
            ;
        return cache.isIdle();
    }

    kxtest::TemporaryFolder folder;
    kxAssetSession session;
    SlowDisk &disk = SlowDisk::the();
};

} // namespace

TEST_F(PreviewCacheTest, ReadsInTheOrderOfWhatIsWanted)
{
    const int count = 40;
    PreviewCache cache;

    cache.want(make(count));
    ASSERT_TRUE(waitFor(cache));

    const QStringList asked = disk.previewsAsked();
    ASSERT_EQ(asked.size(), count);
    for (int i = 0; i < count; ++i)
        EXPECT_NEAR(asked.indexOf(path(nameOf(i))), i, 3) << "some are read beside each other";
}

TEST_F(PreviewCacheTest, LeavesOutWhatIsNoLongerWanted)
{
    const std::vector<PreviewCache::Wanted> assets = make(40);
    disk.hold(path({}));
    PreviewCache cache;
    cache.want(assets);

    cache.want({assets.back()});
    disk.letGo();
    ASSERT_TRUE(waitFor(cache));

    EXPECT_FALSE(cache.find(assets.back().uuid).isNull());
    EXPECT_LE(cache.loadedCount(), 5) << "what was under way, and the last one";
}

TEST_F(PreviewCacheTest, HoldsNobodyUpWhileAPictureIsRead)
{
    const std::vector<PreviewCache::Wanted> assets = make(2);
    disk.hold(path({}));
    PreviewCache cache;
    const QSignalSpy loaded(&cache, &PreviewCache::loaded);

    cache.want(assets);
    ASSERT_TRUE(QTest::qWaitFor([&] { return disk.waitingCount() > 0; }, Patience));

    EXPECT_TRUE(cache.find(assets[0].uuid).isNull());
    EXPECT_FALSE(cache.isMissing(assets[0].uuid));
    cache.want(assets);
    cache.forget(assets[1].uuid);
    EXPECT_FALSE(cache.isIdle());
    EXPECT_EQ(loaded.count(), 0);
    disk.letGo();
    ASSERT_TRUE(waitFor(cache));
    EXPECT_EQ(cache.find(assets[0].uuid).toImage().pixelColor(0, 0), QColor(Qt::red));
    EXPECT_THAT(disk.readByMainThread(), IsEmpty());
}

TEST_F(PreviewCacheTest, KeepsNoMoreThanItsBound)
{
    const std::vector<PreviewCache::Wanted> assets = make(8);
    PreviewCache cache(3); // kilobytes

    cache.want(assets);
    ASSERT_TRUE(waitFor(cache));

    EXPECT_EQ(cache.loadedCount(), 8);
    EXPECT_EQ(std::count_if(assets.begin(), assets.end(),
                            [&](const PreviewCache::Wanted &asset) { return !cache.find(asset.uuid).isNull(); }),
              3);
    EXPECT_FALSE(cache.find(assets.back().uuid).isNull());
    cache.want({assets.front()}); // and reads again what it gave up
    ASSERT_TRUE(waitFor(cache));
    EXPECT_FALSE(cache.find(assets.front().uuid).isNull());
}

TEST_F(PreviewCacheTest, RemembersOnlySoManyWithoutAPicture)
{
    const std::vector<PreviewCache::Wanted> assets = missing(PreviewCache::MaxMissing + 5);
    PreviewCache cache;

    cache.want(assets);
    ASSERT_TRUE(waitFor(cache));

    EXPECT_TRUE(cache.isMissing(assets.back().uuid));
    EXPECT_EQ(std::count_if(assets.begin(), assets.end(),
                            [&](const PreviewCache::Wanted &asset) { return cache.isMissing(asset.uuid); }),
              PreviewCache::MaxMissing);
}

TEST_F(PreviewCacheTest, ReadsOthersBesideADriveThatDoesNotAnswerAndEndsWithoutIt)
{
    std::vector<PreviewCache::Wanted> assets = make(10);
    for (std::size_t i = 0; i < 8; ++i) {
        ASSERT_TRUE(QDir().mkpath(path("away")));
        ASSERT_TRUE(QDir().rename(assets[i].directory, path("away/") + nameOf(static_cast<int>(i))));
        assets[i].directory = path("away/") + nameOf(static_cast<int>(i));
    }
    disk.hold(path("away"));
    {
        PreviewCache cache;
        cache.setPatience(50);

        cache.want(assets);
        ASSERT_TRUE(QTest::qWaitFor([&] { return cache.loadedCount() == 2 && cache.isIdle(); }, Patience));

        EXPECT_FALSE(cache.find(assets.back().uuid).isNull());
        EXPECT_LE(disk.waitingCount(), 4) << "others of that folder are not asked for";
    }
    disk.letGo();
    EXPECT_TRUE(QTest::qWaitFor([this] { return disk.waitingCount() == 0; }, Patience));
}

TEST_F(PreviewCacheTest, AsksNoMoreOfALibraryThatDoesNotAnswerHoweverManyFoldersItHas)
{
    const QString away = path("away");
    std::vector<PreviewCache::Wanted> assets = make(10);
    for (std::size_t i = 0; i < 8; ++i) {
        const QString place = away + '/' + QString::number(i);
        ASSERT_TRUE(QDir().mkpath(place));
        ASSERT_TRUE(QDir().rename(assets[i].directory, place + "/asset"));
        assets[i].directory = place + "/asset";
    }
    disk.hold(away);
    PreviewCache cache;
    cache.setPatience(50);
    cache.setLibraryOf([&](const QString &directory) { return directory.startsWith(away) ? away : QString(); });

    cache.want(assets);
    ASSERT_TRUE(QTest::qWaitFor([&] { return cache.loadedCount() == 2 && cache.isIdle(); }, Patience));

    EXPECT_LE(disk.waitingCount(), 4);
    disk.letGo();
    EXPECT_TRUE(QTest::qWaitFor([&] { return cache.loadedCount() == 10; }, Patience));
}
