// SPDX-License-Identifier: Apache-2.0
#include "Assets/kxPreviewImageLoader.h"

#include "Kernel/kxLogRecorder.h"
#include "LibraryFixture.h"
#include "SceneGraph/ExternalThread.h"
#include "Support/CapturedOutput.h"
#include "TestUrlManager.h"
#include "VirtualTable.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QEventLoop>
#include <QImage>
#include <QMetaMethod>
#include <QPointer>
#include <QSemaphore>
#include <QThreadPool>
#include <QTimer>

#include <array>
#include <atomic>
#include <memory>
#include <mutex>
#include <thread>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#include <sanitizer/lsan_interface.h>
#define KX_COUNTS_LEAKS
#endif
#endif

namespace {

/// What is allocated while one lives may stay with nobody.
class UncountedLeaks
{
public:
    UncountedLeaks() {} // NOLINT(modernize-use-equals-default): a variable of a trivial type counts as unused
    UncountedLeaks(const UncountedLeaks &) = delete;
    UncountedLeaks &operator=(const UncountedLeaks &) = delete;

private:
#ifdef KX_COUNTS_LEAKS
    __lsan::ScopedDisabler _disabler;
#endif
};

constexpr QRgb Red = 0xFFFF0000;
constexpr QRgb Green = 0xFF00FF00;
constexpr int WaitMilliseconds = 20000; // far beyond any load: reached only when a signal never comes

QByteArray png(QRgb colour)
{
    QImage image(2, 2, QImage::Format_RGB32);
    image.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

/// Counts how many of its kind were deleted.
class CountedImage final : public QImage
{
public:
    CountedImage(const QSize &size, int &deleted) : QImage(size, QImage::Format_RGB32), _deleted(deleted) {}
    ~CountedImage() override { ++_deleted; }
    CountedImage(const CountedImage &) = delete;
    CountedImage &operator=(const CountedImage &) = delete;

private:
    int &_deleted;
};

/// A place whose previews are read when the test says so, for URLs like "gate:/MAT_Red".
class GatedManager : public TestUrlManager
{
public:
    bool accepts(const QUrl &url) const override { return url.scheme() == QLatin1String("gate"); }
    bool loadImageFromDir(const QUrl &, QImage *image) const override
    {
        wasEmpty = image->isNull();
        *image = QImage(pixels.data(), 2, 2, QImage::Format_RGB32, countDeleted, &deletedMeanwhile);
        worker = QThread::currentThread();
        entered.release();
        gate.acquire();
        wasKnown = osg::ExternalThread::isCurrentKnown();
        wasWorker = QThread::currentThread() != QCoreApplication::instance()->thread();
        ++loads;
        *image = QImage(2, 2, QImage::Format_RGB32);
        image->fill(Red);
        return true;
    }

    mutable std::atomic<QThread *> worker{nullptr};
    mutable QSemaphore entered;
    mutable QSemaphore gate;
    mutable std::atomic_bool wasKnown{false};
    mutable std::atomic_bool wasWorker{false};
    mutable std::atomic_bool wasEmpty{false};
    mutable std::atomic_int loads{0};
    /// Of images that are being loaded, reset by the test.
    mutable std::atomic_int deletedMeanwhile{0};

private:
    static void countDeleted(void *count) { ++*static_cast<std::atomic_int *>(count); }

    mutable std::array<uchar, 16> pixels{};
};

GatedManager &gated()
{
    static GatedManager manager;
    return manager;
}

/// Knows which task is being delivered; none when that is gone.
class WatchedLoader final : public kxPreviewImageLoader
{
public:
    const QObject *task() const { return sender(); }
};

class kxPreviewImageLoaderTest : public LibraryFixture
{
protected:
    kxPreviewImageLoaderTest()
    {
        kxUrlManager::registerManager(&gated());
        QObject::connect(
            &_loader, &kxPreviewImageLoader::previewLoaded, &_loader,
            [this](const QUrl &url, QImage *image) {
                _directories.push_back(url);
                _images.emplace_back(image);
                _wasOnMainThread = QThread::currentThread() == QCoreApplication::instance()->thread();
            },
            Qt::DirectConnection);
    }
    ~kxPreviewImageLoaderTest() override { settle(); }

    void writePng(const std::string &name, QRgb colour) const { writeFile(name, png(colour).toStdString()); }

    /// Until all that was asked for has been delivered.
    static void settle()
    {
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
    }

    bool waitForPreviews(std::size_t count)
    {
        QEventLoop loop;
        const auto quitWhenThere = [this, &loop, count] {
            if (_images.size() >= count)
                loop.quit();
        };
        QObject::connect(&_loader, &kxPreviewImageLoader::previewLoaded, &loop, quitWhenThere);
        QTimer::singleShot(WaitMilliseconds, &loop, &QEventLoop::quit);
        if (_images.size() < count)
            loop.exec();
        return _images.size() >= count;
    }

    /// As if a task had loaded the image.
    static void deliver(kxPreviewImageLoader &loader, QImage *image)
    {
        QMetaObject::invokeMethod(&loader, "previewReady", Qt::DirectConnection, Q_ARG(QUrl, gateUrl()),
                                  Q_ARG(QImage *, image));
    }

    static QUrl gateUrl() { return QUrl(QStringLiteral("gate:/MAT_Red")); }

    kxPreviewImageLoader _loader;
    std::vector<QUrl> _directories;
    std::vector<std::unique_ptr<QImage>> _images;
    bool _wasOnMainThread = false;
};

} // namespace

TEST_F(kxPreviewImageLoaderTest, DeclaresItsSignalBeforeItsSlot)
{
    const QMetaObject &meta = kxPreviewImageLoader::staticMetaObject;
    const int offset = meta.methodOffset();

    EXPECT_STREQ(meta.className(), "kxPreviewImageLoader");
    ASSERT_EQ(meta.methodCount() - offset, 2);
    EXPECT_EQ(meta.method(offset).methodSignature(), "previewLoaded(QUrl,QImage*)");
    EXPECT_EQ(meta.method(offset).methodType(), QMetaMethod::Signal);
    EXPECT_EQ(meta.method(offset).access(), QMetaMethod::Public);
    EXPECT_EQ(meta.method(offset + 1).methodSignature(), "previewReady(QUrl,QImage*)");
    EXPECT_EQ(meta.method(offset + 1).methodType(), QMetaMethod::Slot);
    EXPECT_EQ(meta.method(offset + 1).access(), QMetaMethod::Private);
}

TEST_F(kxPreviewImageLoaderTest, AnswersForItsClassAndAddsNoVirtualOperation)
{
    EXPECT_EQ(tableEntryOf(
                  static_cast<const QMetaObject *(kxPreviewImageLoader::*)() const>(&kxPreviewImageLoader::metaObject)),
              0);
    EXPECT_EQ(
        tableEntryOf(static_cast<void *(kxPreviewImageLoader::*)(const char *)>(&kxPreviewImageLoader::qt_metacast)),
        1);
    EXPECT_EQ(tableEntryOf(static_cast<int (kxPreviewImageLoader::*)(QMetaObject::Call, int, void **)>(
                  &kxPreviewImageLoader::qt_metacall)),
              2);
    EXPECT_EQ(tableEntryOf(&kxPreviewImageLoader::event), 5) << "behind the two of the destructor";
    EXPECT_EQ(tableEntriesOf("_ZTV20kxPreviewImageLoader"), tableEntriesOf("_ZTV7QObject"));
}

TEST_F(kxPreviewImageLoaderTest, BelongsToItsParentIfItHasOne)
{
    auto parent = std::make_unique<QObject>();
    const QPointer<QObject> owned = std::make_unique<kxPreviewImageLoader>(parent.get()).release();

    EXPECT_EQ(_loader.parent(), nullptr);
    EXPECT_EQ(owned->parent(), parent.get());
    parent.reset();
    EXPECT_FALSE(owned);
}

TEST_F(kxPreviewImageLoaderTest, DeliversThePreviewOfADirectoryOnTheMainThread)
{
    writeFile("MAT_Red/Red.xml", "<item/>");
    writePng("MAT_Red/Red.png", Red);

    _loader.loadImageFromDir(url("MAT_Red"));

    EXPECT_TRUE(_images.empty());
    ASSERT_TRUE(waitForPreviews(1));
    EXPECT_EQ(_directories, (std::vector<QUrl>{url("MAT_Red")}));
    EXPECT_EQ(_images[0]->size(), QSize(2, 2));
    EXPECT_EQ(_images[0]->pixel(0, 0), Red);
    EXPECT_TRUE(_wasOnMainThread);
}

TEST_F(kxPreviewImageLoaderTest, ReadsOnAWorkerThreadThatTheSceneGraphKnows)
{
    gated().gate.release();

    _loader.loadImageFromDir(gateUrl());

    ASSERT_TRUE(waitForPreviews(1));
    gated().entered.acquire();
    EXPECT_TRUE(gated().wasWorker);
    EXPECT_TRUE(gated().wasKnown);
    EXPECT_TRUE(gated().wasEmpty);
    settle();
    EXPECT_EQ(osg::ExternalThread::knownCount(), 0U);
}

TEST_F(kxPreviewImageLoaderTest, LoadsADirectoryOnceHoweverOftenItIsAskedForMeanwhile)
{
    gated().loads = 0;

    for (int i = 0; i < 5; ++i)
        _loader.loadImageFromDir(gateUrl());
    gated().entered.acquire();
    _loader.loadImageFromDir(gateUrl());
    gated().gate.release(6); // for a load each, so that one too many fails here and does not wait
    settle();
    gated().entered.acquire(gated().entered.available());
    gated().gate.acquire(gated().gate.available());

    EXPECT_EQ(gated().loads, 1);
    EXPECT_EQ(_images.size(), 1U);
}

TEST_F(kxPreviewImageLoaderTest, TellsDirectoriesApartByTheirOrder)
{
    // Neither comes before the other, though they are not equal: one request is under way for both.
    const QUrl plain(QStringLiteral("gate://place/MAT_Red"));
    const QUrl withEmptyUser(QStringLiteral("gate://@place/MAT_Red"));
    ASSERT_TRUE(plain != withEmptyUser && !(plain < withEmptyUser) && !(withEmptyUser < plain));

    _loader.loadImageFromDir(plain);
    _loader.loadImageFromDir(withEmptyUser);
    gated().gate.release(2); // for a load each, so that one too many fails here and does not wait
    settle();
    gated().entered.acquire(gated().entered.available());
    gated().gate.acquire(gated().gate.available());

    EXPECT_EQ(_directories, (std::vector<QUrl>{plain}));
}

TEST_F(kxPreviewImageLoaderTest, LeavesItsTasksToThePoolWhichDeletesThem)
{
    WatchedLoader loader;
    const QObject receiver;
    const QObject *task = &receiver;
    QObject::connect(&loader, &kxPreviewImageLoader::previewLoaded, &receiver, [&](const QUrl &, QImage *image) {
        task = loader.task();
        _images.emplace_back(image);
    });
    writePng("MAT_Red/Red.png", Red);

    loader.loadImageFromDir(url("MAT_Red"));
    settle(); // waits for the pool first, which deletes a task before it counts as done

    EXPECT_EQ(_images.size(), 1U);
    EXPECT_EQ(task, nullptr);
}

TEST_F(kxPreviewImageLoaderTest, ReturnsBeforeTheImageIsRead)
{
    _loader.loadImageFromDir(gateUrl());

    // The worker has begun and cannot end: a call that waited for it would not have come back.
    gated().entered.acquire();
    EXPECT_TRUE(_images.empty());
    gated().gate.release();
    EXPECT_TRUE(waitForPreviews(1));
}

TEST_F(kxPreviewImageLoaderTest, StillCountsAsLoadingWhileThePreviewIsAnnounced)
{
    writePng("MAT_Red/Red.png", Red);
    QObject::connect(&_loader, &kxPreviewImageLoader::previewLoaded, &_loader,
                     [this](const QUrl &directory) { _loader.loadImageFromDir(directory); });

    _loader.loadImageFromDir(url("MAT_Red"));
    ASSERT_TRUE(waitForPreviews(1));
    settle();

    EXPECT_EQ(_images.size(), 1U);
}

TEST_F(kxPreviewImageLoaderTest, LoadsAgainAfterADelivery)
{
    writePng("MAT_Red/Red.png", Red);
    _loader.loadImageFromDir(url("MAT_Red"));
    ASSERT_TRUE(waitForPreviews(1));
    writePng("MAT_Red/Red.png", Green);

    _loader.loadImageFromDir(url("MAT_Red"));

    ASSERT_TRUE(waitForPreviews(2));
    EXPECT_EQ(_images[1]->pixel(0, 0), Green);
}

TEST_F(kxPreviewImageLoaderTest, ForgetsARequestThatIsDeliveredWithoutAnImage)
{
    gated().loads = 0;
    gated().gate.release(2);
    _loader.loadImageFromDir(gateUrl());

    deliver(_loader, nullptr);
    EXPECT_TRUE(_images.empty());
    _loader.loadImageFromDir(gateUrl());
    settle();
    // What is left in either, so that a request too few fails here and neither waits nor disturbs the next test.
    gated().entered.acquire(gated().entered.available());
    gated().gate.acquire(gated().gate.available());

    EXPECT_EQ(gated().loads, 2);
    EXPECT_EQ(_images.size(), 2U);
}

TEST_F(kxPreviewImageLoaderTest, LeavesAnImageToItsReceiver)
{
    int deleted = 0;

    deliver(_loader, new CountedImage({2, 2}, deleted));

    ASSERT_EQ(_images.size(), 1U);
    EXPECT_EQ(deleted, 0);
    _images.clear(); // it counts into what is gone after the test
}

TEST_F(kxPreviewImageLoaderTest, DeletesAnImageThatStayedEmptyAndSaysNothing)
{
    int deleted = 0;

    deliver(_loader, new CountedImage({}, deleted));

    EXPECT_TRUE(_images.empty());
    EXPECT_EQ(deleted, 1);
}

TEST_F(kxPreviewImageLoaderTest, DeletesAnImageThatNobodyReceives)
{
    kxPreviewImageLoader unheard;
    int deleted = 0;

    deliver(unheard, new CountedImage({2, 2}, deleted));

    EXPECT_EQ(deleted, 1);
}

TEST_F(kxPreviewImageLoaderTest, TakesTurnsWithTheOtherTasksOfThePool)
{
    QThreadPool &pool = *QThreadPool::globalInstance();
    const int threads = pool.maxThreadCount();
    pool.setMaxThreadCount(1);
    gated().loads = 0;
    std::vector<int> loadsBefore;
    std::mutex mutex;
    const auto note = [&loadsBefore, &mutex] {
        const std::lock_guard lock(mutex);
        loadsBefore.push_back(gated().loads);
    };

    _loader.loadImageFromDir(QUrl(QStringLiteral("gate:/MAT_Busy"))); // nothing else begins before it has ended
    pool.start(note);
    _loader.loadImageFromDir(gateUrl());
    pool.start(note);
    gated().gate.release(2);
    settle();
    gated().entered.acquire(2);
    pool.setMaxThreadCount(threads);

    const std::lock_guard lock(mutex);
    EXPECT_EQ(loadsBefore, (std::vector{1, 2}));
}

TEST_F(kxPreviewImageLoaderTest, SaysNothingOfADirectoryWithoutAPreviewAndMayBeAskedAgain)
{
    writeFile("MAT_Red/Red.xml", "<item/>");
    const kxLogRecorder log;
    kxtest::CapturedOutput output;

    _loader.loadImageFromDir(url("MAT_Red"));
    settle();
    EXPECT_TRUE(_images.empty());
    EXPECT_EQ(output.text(), "");
    EXPECT_TRUE(log.lines().empty());

    writePng("MAT_Red/Red.png", Red);
    _loader.loadImageFromDir(url("MAT_Red"));
    EXPECT_TRUE(waitForPreviews(1));
}

TEST_F(kxPreviewImageLoaderTest, SaysNothingOfABrokenPreview)
{
    writeFile("MAT_Red/Red.xml", "<item/>");
    writeFile("MAT_Red/Red.png", "no picture");

    _loader.loadImageFromDir(url("MAT_Red"));
    settle();

    EXPECT_TRUE(_images.empty());
}

TEST_F(kxPreviewImageLoaderTest, CompletesWithoutABackEnd)
{
    const QUrl nobodys(QStringLiteral("nobody://place/MAT_Red"));
    const kxLogRecorder log;
    kxtest::CapturedOutput output;

    _loader.loadImageFromDir(nobodys);
    _loader.loadImageFromDir(QUrl());
    settle();
    _loader.loadImageFromDir(nobodys);
    settle();

    EXPECT_TRUE(_images.empty());
    EXPECT_EQ(output.text(), "");
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(kxPreviewImageLoaderTest, DeliversThePreviewThatWasModifiedLast)
{
    writeFile("MAT_Red/Red.xml", "<item/>");
    writePng("MAT_Red/Red.png", Red);
    writePng("MAT_Red/Red.vif", Green);
    const auto now = std::filesystem::file_time_type::clock::now();
    std::filesystem::last_write_time(_folder.path() / "MAT_Red/Red.vif", now - std::chrono::hours(1));
    std::filesystem::last_write_time(_folder.path() / "MAT_Red/Red.png", now);

    _loader.loadImageFromDir(url("MAT_Red"));

    ASSERT_TRUE(waitForPreviews(1));
    EXPECT_EQ(_images[0]->pixel(0, 0), Red);
}

TEST_F(kxPreviewImageLoaderTest, DeliversEachOfManyDirectoriesWithItsOwnPreview)
{
    constexpr int Count = 200;
    for (int i = 0; i < Count; ++i)
        writePng("MAT_" + std::to_string(i) + "/p.png", qRgb(i, 0, 255 - i));

    for (int i = 0; i < Count; ++i)
        _loader.loadImageFromDir(url("MAT_" + std::to_string(i)));

    ASSERT_TRUE(waitForPreviews(Count));
    for (std::size_t i = 0; i < Count; ++i) {
        const int number = _directories[i].fileName().mid(4).toInt();
        EXPECT_EQ(_images[i]->pixel(0, 0), qRgb(number, 0, 255 - number)) << number;
    }
}

TEST_F(kxPreviewImageLoaderTest, MayGoWhileATaskIsRunning)
{
    auto loader = std::make_unique<kxPreviewImageLoader>();
    int announced = 0;
    QObject::connect(loader.get(), &kxPreviewImageLoader::previewLoaded, [&announced] { ++announced; });
    writeFile("MAT_Empty/Red.xml", "<item/>");
    {
        const UncountedLeaks imagesOfRequestsWhoseLoaderGoes;
        loader->loadImageFromDir(url("MAT_Empty"));
        loader->loadImageFromDir(gateUrl());
    }
    gated().entered.acquire();
    gated().deletedMeanwhile = 0;

    loader.reset();
    EXPECT_EQ(gated().deletedMeanwhile, 0) << "the task is still filling it";
    gated().gate.release();
    settle();

    EXPECT_EQ(announced, 0);
}

TEST_F(kxPreviewImageLoaderTest, DeliversOnTheThreadItLivesOnWithoutADetour)
{
    // A worker runs no event loop: were the call queued there, it would never come.
    WatchedLoader loader;
    const QObject receiver;
    std::atomic_bool isTaskGone{false};
    QObject::connect(
        &loader, &kxPreviewImageLoader::previewLoaded, &receiver,
        [this, &loader, &isTaskGone](const QUrl &, QImage *image) {
            _images.emplace_back(image);
            QObject::connect(loader.task(), &QObject::destroyed, [&isTaskGone] { isTaskGone = true; });
            loader.moveToThread(QCoreApplication::instance()->thread());
        },
        Qt::DirectConnection);
    loader.loadImageFromDir(gateUrl());
    gated().entered.acquire();

    loader.moveToThread(gated().worker);
    gated().gate.release();
    QThreadPool::globalInstance()->waitForDone();

    EXPECT_TRUE(isTaskGone);
    EXPECT_EQ(_images.size(), 1U);
}

#ifndef QT_NO_DEBUG
TEST_F(kxPreviewImageLoaderTest, IsAskedOnTheMainThread)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");

    EXPECT_DEATH(std::thread([this] { _loader.loadImageFromDir(url("MAT_Red")); }).join(), "ASSERT: .*isOnMainThread");
}
#endif
