// SPDX-License-Identifier: Apache-2.0
// The desktop program's window on small and large libraries: how long people wait, and whether it ever stands still.
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetGrid.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/MainWindow.h"
#include "AssetSession/kxAssetSession.h"
#include "Support/Comparison.h"
#include "Support/SampleLibrary.h"

#include <QApplication>
#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QScrollBar>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr int Few = 1000;
constexpr int Many = 100000;
constexpr int TagsOfAnAsset = 6;
constexpr double MustPause = 50.0; // milliseconds

QByteArray preview()
{
    QImage image(320, 320, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x / 16 * 12, y / 16 * 12, 128)); // small on the disk
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

/// Runs the event loop until \a isDone, at most two minutes.
template <class Condition> void spin(Condition isDone)
{
    QElapsedTimer time;
    time.start();
    while (!isDone()) {
        if (time.elapsed() > 120000)
            qFatal("waited in vain");
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    }
}

/// How long the event loop did not get round, in milliseconds.
class Pauses
{
public:
    Pauses()
    {
        _timer.setTimerType(Qt::PreciseTimer);
        _clock.start();
        QObject::connect(&_timer, &QTimer::timeout, [this] {
            _pauses.push_back(static_cast<double>(_clock.nsecsElapsed()) / 1e6);
            _clock.restart();
        });
        _timer.start(1); // not 0: idle rounds without number would hide the others
    }

    double worstOf(double share)
    {
        std::sort(_pauses.begin(), _pauses.end());
        return _pauses.empty() ? 0.0
                               : _pauses[static_cast<std::size_t>(share * static_cast<double>(_pauses.size() - 1))];
    }

private:
    QElapsedTimer _clock;
    QTimer _timer;
    std::vector<double> _pauses;
};

/// Megabytes of memory that this process uses.
double residentMemory()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0.0;
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').front().toDouble() / 1024.0;
    return 0.0;
}

struct Program
{
    kxAssetSession session{kxAssetSession::MainView::Program};
    MainWindow window{session.manager()};
};

/// What the program does until previews are to be seen; for a process of its own, whose life is measured.
int start(const QString &library)
{
    Program program;
    program.window.show();
    program.window.openLibraries({library});
    const PreviewCache &previews = program.window.libraries().previews();
    spin([&] { return previews.loadedCount() > 0; });
    program.window.grab(); // painted, at the latest
    std::fflush(stdout);
    std::_Exit(0);
}

void measureStart(const QString &program)
{
    const QTemporaryDir folder;
    kxbench::makeLibrary(folder.path(), Few, preview(), TagsOfAnAsset);
    std::vector<double> seconds;
    for (int round = 0; round < 6; ++round) {
        QElapsedTimer time;
        time.start();
        QProcess process;
        process.setStandardOutputFile(QProcess::nullDevice());
        process.start(program, {QStringLiteral("--start"), folder.path()});
        if (!process.waitForFinished(60000) || process.exitCode() != 0)
            qFatal("the program did not start");
        if (round > 0) // the first one fills the caches
            seconds.push_back(static_cast<double>(time.elapsed()) / 1000.0);
    }
    std::sort(seconds.begin(), seconds.end());
    kxbench::report("start until tiles of 1,000 assets are painted", "-", 1.5, 1.0, seconds[seconds.size() / 2],
                    kxbench::Better::Less, "s");
}

void measureScrolling(MainWindow &window)
{
    auto *grid = window.findChild<AssetGrid *>();
    QScrollBar *bar = grid->verticalScrollBar();
    Pauses pauses;
    int step = 0;
    QTimer scroll;
    // A page now, a row then, a jump at times: what hands do.
    QObject::connect(&scroll, &QTimer::timeout, [&] {
        ++step;
        const int jump = step % 50 == 0 ? bar->maximum() / 7 : step % 5 == 0 ? bar->pageStep() : bar->singleStep() * 4;
        bar->setValue((bar->value() + jump) % std::max(1, bar->maximum()));
    });
    scroll.start(16);
    spin([&] { return step >= 1500; });
    kxbench::report("99.9 % of the pauses while scrolling through 100,000 assets", "-", MustPause, 16.0,
                    pauses.worstOf(0.999), kxbench::Better::Less, "ms");
}

void measureTyping(MainWindow &window)
{
    const QString typed = QStringLiteral("material 99");
    double worst = 0.0;
    for (int length = 1; length <= typed.size(); ++length) {
        QElapsedTimer time;
        time.start();
        window.browser().setText(typed.left(length));
        QApplication::processEvents();
        window.browser().view().viewport()->repaint();
        worst = std::max(worst, static_cast<double>(time.nsecsElapsed()) / 1e6);
    }
    kxbench::report("the slowest letter typed into the search over 100,000 assets", "-", MustPause, 25.0, worst,
                    kxbench::Better::Less, "ms");
    window.browser().setText({});
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QStandardPaths::setTestModeEnabled(true);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() == 3 && arguments[1] == QLatin1String("--start"))
        return start(arguments[2]);

    measureStart(QApplication::applicationFilePath());
    const QTemporaryDir folder;
    kxbench::makeLibrary(folder.path(), Many, preview(), TagsOfAnAsset);
    Program program;
    program.window.show();
    QElapsedTimer time;
    {
        Pauses pauses;
        time.start();
        program.window.openLibraries({folder.path()});
        double firstSeconds = 0.0;
        spin([&] {
            if (firstSeconds == 0.0 && program.window.libraries().assets().rowCount() > 0)
                firstSeconds = static_cast<double>(time.elapsed()) / 1000.0;
            return !program.window.libraries().scan().isRunning();
        });
        std::fprintf(stderr, "100,000 assets: first shown after %.2f s, all after %.1f s\n", firstSeconds,
                     static_cast<double>(time.elapsed()) / 1000.0);
        kxbench::report("99.9 % of the pauses while 100,000 assets are read", "-", MustPause, 16.0,
                        pauses.worstOf(0.999), kxbench::Better::Less, "ms");
    }
    measureScrolling(program.window);
    measureTyping(program.window);
    kxbench::report("memory with 100,000 assets", "-", 500.0, 300.0, residentMemory(), kxbench::Better::Less, "MB");
}
