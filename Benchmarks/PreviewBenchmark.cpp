// SPDX-License-Identifier: Apache-2.0
// Previews in the background against the same threads only decoding them, and how long the main thread is held up.
#include "AssetSession/kxAssetSession.h"
#include "Assets/kxPreviewImageLoader.h"
#include "Support/Comparison.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QTimer>
#include <QUrl>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>
#include <vector>

namespace {

constexpr int Count = 1000;
constexpr int Side = 512;
constexpr int Threads = 2;

/// Something that compresses like a rendered preview: gradients, an edge, and a little noise.
void makePreview(const QString &path, int seed)
{
    QImage image(Side, Side, QImage::Format_RGB32);
    std::uint32_t noise = static_cast<std::uint32_t>(seed) + 1;
    for (int y = 0; y < Side; ++y)
        for (int x = 0; x < Side; ++x) {
            noise = noise * 1664525U + 1013904223U;
            const int grain = static_cast<int>(noise >> 30);
            const bool isInside = (x - 256) * (x - 256) + (y - 256) * (y - 256) < 200 * 200;
            const int base = isInside ? (x + y) / 5 : 90 + y / 8;
            image.setPixel(x, y, qRgb(base + grain, base / 2 + grain + seed % 60, 200 - base / 2 + grain));
        }
    if (!image.save(path, "PNG"))
        qFatal("%s cannot be written", qPrintable(path));
}

std::vector<QUrl> makeLibrary(const QString &root)
{
    std::vector<QUrl> directories;
    for (int i = 0; i < Count; ++i) {
        const QString directory = QStringLiteral("%1/MAT_%2").arg(root).arg(i);
        QDir().mkpath(directory);
        QFile metadata(directory + "/Red.xml");
        if (!metadata.open(QIODevice::WriteOnly) || metadata.write("<item/>") < 0)
            qFatal("%s cannot be written", qPrintable(directory));
        if (i < 20) // the rest are copies: making them takes long
            makePreview(directory + "/Red.png", i);
        else
            QFile::copy(QStringLiteral("%1/MAT_%2/Red.png").arg(root).arg(i % 20), directory + "/Red.png");
        directories.push_back(QUrl::fromLocalFile(directory));
    }
    return directories;
}

/// Delivered to the main thread, one by one, as a view gets them.
void load(const std::vector<QUrl> &directories)
{
    kxPreviewImageLoader loader;
    QEventLoop loop;
    int delivered = 0;
    QObject::connect(&loader, &kxPreviewImageLoader::previewLoaded, [&](const QUrl &, QImage *image) {
        const std::unique_ptr<QImage> owned(image);
        if (owned->width() != Side)
            qFatal("a preview is damaged");
        if (++delivered == Count)
            loop.quit();
    });
    for (const QUrl &directory : directories)
        loader.loadImageFromDir(directory);
    loop.exec();
}

class Decode : public QRunnable
{
public:
    explicit Decode(const QString &path) : _path(path) {}
    void run() override
    {
        if (QImage(_path).isNull())
            qFatal("%s cannot be decoded", qPrintable(_path));
    }

private:
    QString _path;
};

void decode(const std::vector<QUrl> &directories)
{
    for (const QUrl &directory : directories)
        QThreadPool::globalInstance()->start(new Decode(directory.toLocalFile() + "/Red.png"));
    QThreadPool::globalInstance()->waitForDone();
}

struct Pauses
{
    double busy = 0.0; ///< the processor time that one turn of the main thread's event loop took, at most
    double late =
        0.0; ///< by how much a timer of one millisecond came late, at most; the system's scheduler is part of it
};

double threadMilliseconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

/// Runs the event loop until \a isDone, calling \a beat every millisecond.
Pauses pausesOf(const std::function<void()> &beat, const std::function<bool()> &isDone)
{
    using Clock = std::chrono::steady_clock;
    constexpr double Interval = 1.0;
    Pauses pauses;
    QEventLoop loop;
    auto last = Clock::now();
    double awake = threadMilliseconds();
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        const auto now = Clock::now();
        pauses.late = std::max(pauses.late, std::chrono::duration<double, std::milli>(now - last).count() - Interval);
        last = now;
        beat();
        if (isDone())
            loop.quit();
    });
    // Once in each turn of the loop, whatever kind of loop it is; sleeping takes no processor time.
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &timer, [&] {
        const double now = threadMilliseconds();
        pauses.busy = std::max(pauses.busy, now - awake);
        awake = now;
    });
    timer.start(static_cast<int>(Interval));
    loop.exec();
    return pauses;
}

/// A view asks for what it shows, a row at a time.
Pauses pausesOfLoading(const std::vector<QUrl> &directories)
{
    kxPreviewImageLoader loader;
    int delivered = 0;
    std::size_t asked = 0;
    QObject::connect(&loader, &kxPreviewImageLoader::previewLoaded, [&](const QUrl &, QImage *image) {
        delete image;
        ++delivered;
    });
    return pausesOf(
        [&] {
            for (int i = 0; i < 10 && asked < directories.size(); ++i)
                loader.loadImageFromDir(directories[asked++]);
        },
        [&] { return delivered == Count; });
}

/// The same threads decode the same pictures, and the main thread has nothing to do with it.
Pauses pausesOfDecoding(const std::vector<QUrl> &directories)
{
    for (const QUrl &directory : directories)
        QThreadPool::globalInstance()->start(new Decode(directory.toLocalFile() + "/Red.png"));
    return pausesOf([] {}, [] { return QThreadPool::globalInstance()->activeThreadCount() == 0; });
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const kxAssetSession session;
    QThreadPool::globalInstance()->setMaxThreadCount(Threads);
    const QTemporaryDir folder;
    const std::vector<QUrl> directories = makeLibrary(folder.path());

    kxbench::Comparison comparison([&] { load(directories); }, [&] { decode(directories); });
    comparison.run(5);
    kxbench::note("1,000 previews", comparison);
    kxbench::report("rate of previews, 512 x 512 PNG, 2 threads", "the same threads only decoding", 0.9, 0.97,
                    1.0 / comparison.ratio(), kxbench::Better::More);

    std::vector<double> busy(5);
    for (double &pause : busy) {
        const Pauses decoding = pausesOfDecoding(directories);
        const Pauses loading = pausesOfLoading(directories);
        std::fprintf(stderr, "a timer came late by up to %.2f ms, while only decoding by %.2f ms\n", loading.late,
                     decoding.late);
        pause = loading.busy;
    }
    std::sort(busy.begin(), busy.end());
    kxbench::report("longest pause of the main thread for 1,000 previews", "", 2, 0.5, busy[2], kxbench::Better::Less,
                    " ms");
}
