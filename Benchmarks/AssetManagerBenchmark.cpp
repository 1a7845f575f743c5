// SPDX-License-Identifier: Apache-2.0
// The desktop program on small and large libraries, with the server's mouse and keys: how long people wait, and whether it ever
// stands still. Needs an X server.
#include "AssetManager/Appearance.h"
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/FolderTree.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/MainWindow.h"
#include "AssetManager/ProgramSetUp.h"
#include "AssetSession/kxAssetSession.h"
#include "RealInput.h"
#include "Support/Comparison.h"
#include "Support/Pauses.h"
#include "Support/SampleLibrary.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QBuffer>
#include <QFile>
#include <QHeaderView>
#include <QImage>
#include <QLineEdit>
#include <QProcess>
#include <QScreen>
#include <QStandardPaths>
#include <QTabBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QToolButton>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr int Few = 1000;
constexpr int Many = 100000;
constexpr int TagsOfAnAsset = 6;
constexpr double MustPause = 50.0; // milliseconds
constexpr int Rounds = 5;
constexpr QRgb Marked = qRgb(253, 1, 254); // nothing else in the window has this colour
constexpr int TilesWorth = 50000;          // pixels of it: several tiles, and more than one of them has
constexpr int TurnTime = 16;               // milliseconds between two turns of the wheel
constexpr int TurnCount = 1000;
constexpr int SettleTime = 400; // milliseconds: counting tags and looking at the scene come later than the rows

QByteArray preview()
{
    QImage image(320, 320, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, y < 160 ? qRgb(x / 16 * 12, y / 16 * 12, 128) : Marked); // small on the disk
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

/// Megabytes of memory that this process used when it used most.
double peakMemory()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0.0;
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').front().toDouble() / 1024.0;
    return 0.0;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

bool showsTiles()
{
    const QImage picture =
        QGuiApplication::primaryScreen()->grabWindow(0).toImage().convertToFormat(QImage::Format_RGB32);
    qsizetype count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        count += std::count(line, line + picture.width(), Marked);
    }
    return count >= TilesWorth;
}

/// Of the program itself, whose window is looked at from outside.
void measureStart(const QString &program)
{
    const QTemporaryDir folder;
    const QTemporaryDir settings;
    kxbench::makeLibrary(folder.path(), Few, preview(), TagsOfAnAsset);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), settings.path());
    std::vector<double> seconds;
    for (int round = 0; round <= Rounds; ++round) {
        QElapsedTimer time;
        time.start();
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setStandardOutputFile(QProcess::nullDevice());
        process.start(program, {folder.path()});
        kxbench::spin([] { return showsTiles(); });
        if (round > 0) // the first one fills the caches
            seconds.push_back(static_cast<double>(time.elapsed()) / 1000.0);
        process.kill();
        process.waitForFinished();
        kxbench::spin([] { return !showsTiles(); });
    }
    kxbench::report("start until tiles of 1,000 assets are painted", "-", 1.5, 1.0, median(seconds),
                    kxbench::Better::Less, "s");
}

/// The window on a large library, and somebody who works in it.
class LargeLibrary
{
public:
    explicit LargeLibrary(const QString &path) : _window(_session.manager()), _path(path)
    {
        _window.setGeometry(0, 0, 1600, 1000); // wide enough for the kinds as tabs
        _window.show();
        _window.activateWindow();
    }

    void measureReading();
    void measureScrolling(const char *look);
    void measureTyping();
    void measureFilters();
    void show(const char *look) { click(look); }

private:
    template <class Widget> Widget &widget(const char *name)
    {
        auto *found = _window.findChild<Widget *>(QLatin1String(name));
        if (!found)
            qFatal("%s is not there", name);
        return *found;
    }
    QAbstractItemView &view() { return _window.browser().view(); }
    void clickAt(QWidget &target, const QPoint &place)
    {
        _input.click(target.mapToGlobal(place), Qt::LeftButton, Qt::NoModifier);
    }
    void click(const char *button)
    {
        auto &target = widget<QToolButton>(button);
        clickAt(target, target.rect().center());
    }
    void click(QTabBar &bar, int tab)
    {
        clickAt(bar, bar.tabRect(tab).center());
        if (bar.currentIndex() != tab)
            qFatal("the click did not arrive");
    }
    void clickFolder(const QString &path)
    {
        FolderTree &tree = _window.folders();
        const QModelIndex index = _window.libraries().folders().indexOf(path);
        tree.scrollTo(index);
        clickAt(*tree.viewport(), tree.visualRect(index).center());
    }
    void focusSearch()
    {
        auto &search = widget<QLineEdit>("search");
        clickAt(search, search.rect().center());
    }
    struct Pause
    {
        double whole = 0.0;
        double computed = 0.0;
    };
    Pause pauseOf(const std::function<void()> &act);
    void measureFilter(const char *what, const std::function<void()> &act, const std::function<void()> &undo);

    kxAssetSession _session{kxAssetSession::MainView::Program};
    MainWindow _window;
    RealInput _input;
    QString _path;
};

void LargeLibrary::measureReading()
{
    QElapsedTimer time;
    kxbench::Pauses pauses;
    time.start();
    _window.openLibraries({_path});
    const auto &progress = widget<QWidget>("scanProgress");
    double firstSeconds = 0.0;
    double signMilliseconds = 0.0; // until there is content or progress
    kxbench::spin([&] {
        if (signMilliseconds == 0.0 && (progress.isVisible() || _window.libraries().assets().rowCount() > 0))
            signMilliseconds = static_cast<double>(time.nsecsElapsed()) / 1e6;
        if (firstSeconds == 0.0 && _window.libraries().assets().rowCount() > 0)
            firstSeconds = static_cast<double>(time.elapsed()) / 1000.0;
        return !_window.libraries().scan().isRunning();
    });
    std::fprintf(stderr, "100,000 assets: first shown after %.2f s, all after %.1f s\n", firstSeconds,
                 static_cast<double>(time.elapsed()) / 1000.0);
    kxbench::report("content or progress of 100,000 assets that are to be read", "-", 100.0, 50.0, signMilliseconds,
                    kxbench::Better::Less, "ms");
    kxbench::report("99.9 % of the pauses while 100,000 assets are read", "-", MustPause, 16.0, pauses.worstOf(0.999),
                    kxbench::Better::Less, "ms");
    std::fprintf(stderr, "reading: 99.9 %% compute %.1f ms, the worst %.1f ms\n", pauses.computedOf(0.999),
                 pauses.computedOf(1.0));
}

void LargeLibrary::measureScrolling(const char *look)
{
    const QPoint place = view().viewport()->mapToGlobal(view().viewport()->rect().center());
    clickAt(*view().viewport(), {40, 40});
    kxbench::Pauses pauses;
    QElapsedTimer time;
    for (int turn = 1; turn <= TurnCount; ++turn) {
        time.start();
        // A notch or a few, a page at times, and from one end to the other: what hands do.
        if (turn % 200 == 0)
            _input.press(turn % 400 == 0 ? Qt::Key_Home : Qt::Key_End, Qt::NoModifier);
        else if (turn % 10 == 0)
            _input.press(turn % 400 < 200 ? Qt::Key_PageDown : Qt::Key_PageUp, Qt::NoModifier);
        else
            _input.turnWheel(place, turn % 400 < 200 ? -3 : 3, Qt::NoModifier);
        kxbench::spinFor(std::max(0, TurnTime - static_cast<int>(time.elapsed())));
    }
    kxbench::report(std::string("99.9 % of the pauses while scrolling through 100,000 assets, ") + look, "-", MustPause,
                    16.0, pauses.worstOf(0.999), kxbench::Better::Less, "ms");
    std::fprintf(stderr, "scrolling, %s: worst pause %.1f ms; 99.9 %% compute %.1f ms\n", look, pauses.worstOf(1.0),
                 pauses.computedOf(0.999));
}

/// From the first key on until the letters and what they led to are painted.
void LargeLibrary::measureTyping()
{
    const QString typed = QStringLiteral("material 99");
    double worstTyped = 0.0;
    double worstDeleted = 0.0;
    const auto timed = [this](double &worst, const std::function<void()> &act) {
        QElapsedTimer time;
        time.start();
        act();
        QApplication::processEvents();
        view().viewport()->repaint();
        worst = std::max(worst, static_cast<double>(time.nsecsElapsed()) / 1e6);
    };
    focusSearch();
    for (const QChar letter : typed)
        timed(worstTyped, [&] { _input.type(letter); });
    if (widget<QLineEdit>("search").text() != typed)
        qFatal("the keys did not arrive");
    for (int i = 0; i < typed.size(); ++i)
        timed(worstDeleted, [this] { _input.press(Qt::Key_Backspace, Qt::NoModifier); });
    kxbench::report("the slowest letter typed into the search over 100,000 assets", "-", MustPause, 25.0, worstTyped,
                    kxbench::Better::Less, "ms");
    kxbench::report("the slowest letter deleted there", "-", MustPause, 25.0, worstDeleted, kxbench::Better::Less,
                    "ms");
}

LargeLibrary::Pause LargeLibrary::pauseOf(const std::function<void()> &act)
{
    kxbench::Pauses pauses;
    act();
    kxbench::spinFor(SettleTime);
    return {pauses.worstOf(1.0), pauses.computedOf(1.0)};
}

void LargeLibrary::measureFilter(const char *what, const std::function<void()> &act, const std::function<void()> &undo)
{
    std::vector<double> there;
    std::vector<double> back;
    std::vector<double> computed;
    for (int round = 0; round < Rounds; ++round) {
        const Pause first = pauseOf(act);
        const Pause second = pauseOf(undo);
        there.push_back(first.whole);
        back.push_back(second.whole);
        computed.push_back(std::max(first.computed, second.computed));
    }
    std::fprintf(stderr, "%s: %.1f ms, and %.1f ms back; computing %.1f ms\n", what, median(there), median(back),
                 median(computed));
    kxbench::report(std::string("longest pause over 100,000 assets: ") + what, "-", MustPause, 25.0,
                    std::max(median(there), median(back)), kxbench::Better::Less, "ms");
}

void LargeLibrary::measureFilters()
{
    auto &kinds = widget<QTabBar>("categories");
    auto &search = widget<QLineEdit>("search");
    auto &table = widget<QTableView>("assetTable");
    measureFilter(
        "another kind", [&] { click(kinds, 1); }, [&] { click(kinds, 0); });
    measureFilter(
        "favourites only", [this] { click("favourites"); }, [this] { click("favourites"); });
    const auto tag = [this] {
        for (QToolButton *button : widget<QWidget>("tagBar").findChildren<QToolButton *>())
            if (button->isVisible() && button->objectName().startsWith(QLatin1String("tag:")))
                return clickAt(*button, button->rect().center());
        qFatal("no tag is offered");
    };
    measureFilter("a tag", tag, tag);
    measureFilter(
        "a folder", [this] { clickFolder(_path + "/0"); }, [this] { clickFolder(_path); });
    measureFilter(
        "a text emptied at once",
        [&] {
            focusSearch();
            _input.type(QStringLiteral("77"));
        },
        [this] { _input.press(Qt::Key_Escape, Qt::NoModifier); });
    if (!search.text().isEmpty())
        qFatal("the keys did not arrive");
    click("showLines");
    for (int column = 0; column < table.model()->columnCount(); ++column) {
        const auto sort = [&] {
            QHeaderView &header = *table.horizontalHeader();
            clickAt(*header.viewport(), {header.sectionViewportPosition(column) + 12, header.height() / 2});
        };
        const QByteArray title = table.model()->headerData(column, Qt::Horizontal).toString().toUtf8();
        measureFilter(("sorted by " + title).constData(), sort, sort);
    }
    click("showTiles");
}

} // namespace

int main(int argc, char **argv)
{
    ProgramSetUp::begin();
    const QApplication application(argc, argv);
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        qFatal("there is no X server");
    ProgramSetUp::introduce({QStringLiteral("--language=en")});
    Appearance::apply(Appearance::Kind::Light);
    QStandardPaths::setTestModeEnabled(true);

    measureStart(QApplication::applicationDirPath() + QStringLiteral("/asset-manager"));
    const QTemporaryDir folder;
    kxbench::makeLibrary(folder.path(), Many, preview(), TagsOfAnAsset);
    LargeLibrary library(folder.path());
    library.measureReading();
    library.measureScrolling("tiles");
    library.show("showLines");
    library.measureScrolling("lines");
    library.show("showTiles");
    library.measureTyping();
    library.measureFilters();
    kxbench::report("most memory with 100,000 assets", "-", 500.0, 300.0, peakMemory(), kxbench::Better::Less, "MB");
}
