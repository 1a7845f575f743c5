// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/FolderTree.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/Tour.h"
#include "AssetSession/kxLibraryVerifier.h"
#include "Kernel/kxModalQuestion.h"
#include "RandomDialogs.h"
#include "WindowFixture.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QDirIterator>
#include <QDockWidget>
#include <QFile>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QTabBar>
#include <QTimer>

#include <map>
#include <random>
#include <set>

namespace {

constexpr int Events = 10000;
constexpr std::uint32_t Seed = 20260801;

/// Somebody who presses and drags whatever there is, ten thousand times, with the server's mouse and keyboard.
///
/// The environment variable KX_MONKEY_SEED has others come: numbers with commas between them.
class MonkeyTest : public WindowFixture, public testing::WithParamInterface<std::uint32_t>
{
protected:
    MonkeyTest()
    {
        std::printf("KX_MONKEY_SEED=%u\n", GetParam());
        const auto model = [](const char *name) { return QStringLiteral(KX_TEST_MODELS "/") + QLatin1String(name); };
        dialogs.allow("Import files", {model("OBJ/box.obj"), model("PLY/cube.ply"), model("OBJ/SpiderTex.jpg"),
                                       path("none.obj")}); // which does not exist
        dialogs.allow("Add library", {path(), otherLibrary()});
        dialogs.allow("Open scene", {scene("One"), scene("Two")});
        dialogs.allow("Save scene", {scene("One"), scene("Two"), path("no folder/Three.osb")});
    }

    /// A library and a scene with everything.
    void prepare()
    {
        QDir().mkpath(path("A/Inner"));
        QDir().mkpath(path("B"));
        for (int i = 0; i < 6; ++i)
            storeMaterial("Oak " + std::to_string(i));
        storeGeometry("Stool");
        storeGeometry("Table");
        storeEnvironment("Sky");
        addChair("Chair");
        addChair("Armchair");
        window->resize(1000, 700);
        remember();
        QObject::connect(&window->libraries(), &LibrarySide::assetsChanged, [this] { remember(); });
        open();
        QDir().mkpath(otherLibrary());
        kxModalQuestion::setDialogAnswerer([](QDialog &dialog) {
            dialog.findChild<QComboBox *>(QStringLiteral("pictures"))->setCurrentIndex(1); // plates
            return QDialog::Accepted;
        });
        window->importFiles(
            {QStringLiteral(KX_TEST_MODELS "/OBJ/box.obj"), QStringLiteral(KX_TEST_MODELS "/OBJ/SpiderTex.jpg")},
            path("A"));
        settle();
        for (QAction *action : menuActions())
            if (action->text().remove('&') == QLatin1String("Quit"))
                action->setEnabled(false); // the window is still needed
    }

    /// A text that scrolls by itself while something is selected may begin a drag of it when the button was let go already:
    /// nothing goes on then until a person presses Escape.
    void endStuckDrags()
    {
        QObject::connect(&_watch, &QTimer::timeout, [this] {
            if (input.isBusy() && _acted == _lastActed) {
                ++stuckDrags;
                input.pressEscapeNow();
            }
            _lastActed = _acted;
        });
        _watch.start(Patience / 4);
    }

    void act()
    {
        ++_acted;
        if (!QGuiApplication::focusWindow())
            window->activateWindow(); // a dialog had the keyboard, and no window manager passes it on
        switch (below(20)) {
        case 0:
        case 1:
        case 2:
        case 3:
        case 4:
            pressKey();
            break;
        case 5:
        case 6:
        case 7:
        case 8:
        case 9:
        case 10:
            clickSomewhere();
            break;
        case 11:
            input.doubleClick(target());
            break;
        case 12:
            dragSomewhere();
            break;
        case 13:
            input.turnWheel(target(), below(2) ? 1 : -1, modifiers());
            break;
        case 14:
            openContextMenu();
            break;
        case 15:
            useMenuBar();
            break;
        case 16:
        case 17:
            dropSomething();
            break;
        case 18:
            input.press(Qt::Key_Z, Qt::ControlModifier);
            break;
        case 19:
            pressRedo();
            break;
        }
        QCoreApplication::processEvents();
    }

    /// The assets on the disk with those in the trash, by how many directories have the UUID.
    std::map<QString, int> stored() const
    {
        static const QRegularExpression uuid(QStringLiteral("<uuid>([-0-9a-f]{36})</uuid>"));
        std::map<QString, int> found;
        for (const QString &root : {path(), otherLibrary()}) {
            QDirIterator files(root, {"*.xml"}, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
            while (files.hasNext()) {
                QFile file(files.next());
                if (isKeptVersion(root, file.fileName()))
                    continue;
                EXPECT_TRUE(file.open(QIODevice::ReadOnly));
                ++found[uuid.match(QString::fromUtf8(file.readAll())).captured(1)];
            }
        }
        return found;
    }

    /// Whether it is in the trash without having been deleted, as what can come back by undo.
    static bool isKeptVersion(const QString &root, const QString &file)
    {
        const QString place = QDir(root).relativeFilePath(file).section('/', 0, 1);
        return place.startsWith(".kx-trash/") && !QFileInfo::exists(root + '/' + place + "/.origin");
    }

    /// Where the library was closed it is opened, and where the scene was emptied there is something again.
    void saveSomething()
    {
        window->openLibraries({path()});
        const osg::NodePtr chair = addChair("Chair");
        window->libraries().assetActions().saveNodes({chair.getFieldContainerId()}, path());
    }

    /// Panels that were put away and assets that were filtered out are there again, to have something done to them.
    void tidyUp()
    {
        for (const char *name : {"foldersDock", "detailsDock", "viewDock", "treeDock", "propertyDock", "materialDock",
                                 "environmentDock", "plateDock"}) {
            auto &dock = widget<QDockWidget>(name);
            dock.setFloating(false);
            dock.show();
        }
        AssetBrowser &browser = window->browser();
        browser.setText({});
        browser.setSpecial(AssetFilter::Special::None);
        widget<QTabBar>("categories").setCurrentIndex(0);
        window->folders().setCurrentIndex(window->libraries().folders().index(0, 0));
    }

    void calmDown()
    {
        dialogs.stop();
        while (QWidget *popup = QApplication::activePopupWidget())
            popup->close();
        if (auto *tour = window->findChild<Tour *>())
            tour->close();
        takeReport();
        window->openLibraries({path(), otherLibrary()});
        settle();
    }

    QString otherLibrary() const { return QFileInfo(path()).path() + "/other"; }
    QString scene(const char *name) const { return QFileInfo(path()).path() + '/' + name + ".osb"; }

    std::mt19937 random{GetParam()};
    RandomDialogs dialogs{input, random};
    std::set<QString> seen;
    int stuckDrags = 0;

private:
    QTimer _watch;
    int _acted = 0;
    int _lastActed = -1;

    int below(int bound) { return static_cast<int>(random() % static_cast<std::uint32_t>(bound)); }
    template <class Container> const auto &oneOf(const Container &some)
    {
        return *std::next(std::begin(some), below(static_cast<int>(std::size(some))));
    }
    Qt::KeyboardModifiers modifiers()
    {
        static const Qt::KeyboardModifiers some[] = {Qt::NoModifier, Qt::NoModifier, Qt::ControlModifier,
                                                     Qt::ShiftModifier};
        return oneOf(some);
    }
    void remember()
    {
        for (const std::string &uuid : window->libraries().assets().uuids([](const AssetEntry &) { return true; }))
            seen.insert(id(uuid));
    }

    /// A place of the screen in the window.
    QPoint target()
    {
        if (below(3) == 0)
            return aim();
        return window->mapToGlobal({below(window->width()), below(window->height())});
    }
    /// At something in a list, of which there is less than of everything else.
    QPoint aim()
    {
        const char *const views[] = {"assetGrid", "folderTree", "sceneTree", "materialList"};
        auto &view = widget<QAbstractItemView>(oneOf(views));
        // The grid has no model while the assets are shown as a list.
        const QAbstractItemModel *model = view.model();
        const QModelIndex index = model ? model->index(below(std::max(1, model->rowCount())), 0) : QModelIndex();
        return placeOf(view, index);
    }
    static QPoint placeOf(const QAbstractItemView &view, const QModelIndex &index)
    {
        const QRect seen = view.viewport()->rect();
        const QRect item = seen & view.visualRect(index);
        return view.viewport()->mapToGlobal(item.isEmpty() ? seen.center() : item.center());
    }
    void pressKey()
    {
        struct Stroke
        {
            Qt::Key key;
            Qt::KeyboardModifiers modifiers;
        };
        static const Stroke strokes[] = {
            {Qt::Key_A, {}},
            {Qt::Key_O, {}},
            {Qt::Key_Space, {}},
            {Qt::Key_Tab, {}},
            {Qt::Key_Backtab, {}},
            {Qt::Key_Up, {}},
            {Qt::Key_Down, {}},
            {Qt::Key_Left, {}},
            {Qt::Key_Right, {}},
            {Qt::Key_Home, {}},
            {Qt::Key_End, {}},
            {Qt::Key_PageUp, {}},
            {Qt::Key_PageDown, {}},
            {Qt::Key_Return, {}},
            {Qt::Key_Escape, {}},
            {Qt::Key_Delete, {}},
            {Qt::Key_Backspace, {}},
            {Qt::Key_F1, {}},
            {Qt::Key_F2, {}},
            {Qt::Key_F5, {}},
            {Qt::Key_F, {}},
            {Qt::Key_Plus, {}},
            {Qt::Key_Minus, {}},
            {Qt::Key_7, {}},
            {Qt::Key_A, Qt::ControlModifier},
            {Qt::Key_Z, Qt::ControlModifier},
            {Qt::Key_Y, Qt::ControlModifier},
            {Qt::Key_D, Qt::ControlModifier},
            {Qt::Key_F, Qt::ControlModifier},
            {Qt::Key_G, Qt::ControlModifier},
            {Qt::Key_1, Qt::ControlModifier},
            {Qt::Key_2, Qt::ControlModifier},
            {Qt::Key_Return, Qt::ControlModifier},
            {Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier},
            {Qt::Key_I, Qt::ControlModifier},
            {Qt::Key_L, Qt::ControlModifier},
            {Qt::Key_M, Qt::ControlModifier},
            {Qt::Key_N, Qt::ControlModifier},
            {Qt::Key_O, Qt::ControlModifier},
            {Qt::Key_S, Qt::ControlModifier},
        };
        const Stroke &stroke = oneOf(strokes);
        input.press(stroke.key, stroke.modifiers);
    }
    void clickSomewhere()
    {
        const QPoint place = target();
        input.click(place, Qt::LeftButton, modifiers());
    }
    void dragSomewhere()
    {
        const QPoint from = target();
        const QPoint away(QApplication::startDragDistance() + 2, 2);
        input.drag({from, from + away, from + 3 * away, target()}, Qt::LeftButton, modifiers());
    }
    void openContextMenu()
    {
        if (below(4) == 0)
            input.press(Qt::Key_Menu, Qt::NoModifier);
        else
            input.click(target(), Qt::RightButton, Qt::NoModifier);
    }
    void useMenuBar()
    {
        const QMenuBar &bar = *window->menuBar();
        const QAction *title = oneOf(bar.actions());
        input.click(bar.mapToGlobal(bar.actionGeometry(const_cast<QAction *>(title)).center()), Qt::LeftButton,
                    Qt::NoModifier);
        const QMenu &menu = *title->menu();
        QAction *action = oneOf(menu.actions());
        if (menu.isVisible())
            input.click(menu.mapToGlobal(menu.actionGeometry(action).center()), Qt::LeftButton, Qt::NoModifier);
    }

    void dropSomething()
    {
        const char *const views[] = {"assetGrid", "folderTree", "sceneTree", "materialList", "plateTree"};
        auto &view = widget<QAbstractItemView>(oneOf(views));
        if (!view.model())
            return;
        const QAbstractItemModel &model = *view.model();
        QModelIndex index = model.index(below(std::max(1, model.rowCount())), 0);
        while (index.isValid() && model.rowCount(index) > 0 && below(2))
            index = model.index(below(model.rowCount(index)), 0, index);
        const QPoint from = placeOf(view, index);
        const QPoint to = target();
        const QPoint away(QApplication::startDragDistance() + 2, 2);
        input.drag({from, from + away, (from + to) / 2, to - QPoint(1, 1), to}, Qt::LeftButton, Qt::NoModifier);
    }
};

TEST_P(MonkeyTest, LeavesTheWindowUsableAndTheLibraryWhole)
{
    prepare();
    const std::size_t assets = seen.size();
    EXPECT_EQ(assets, 11U);
    dialogs.start();
    endStuckDrags();

    for (int i = 0; i < Events; ++i) {
        act();
        if (i % 200 == 199)
            tidyUp();
        if (i % 500 == 499)
            saveSomething();
    }
    calmDown();

    for (const QString &root : {path(), otherLibrary()})
        for (const auto &finding : kxLibraryVerifier(root).verify())
            ADD_FAILURE() << finding.path << ": " << finding.text;
    std::set<QString> kept;
    for (const auto &[uuid, count] : stored()) {
        EXPECT_EQ(count, 1) << uuid.toStdString();
        kept.insert(uuid);
    }
    for (const QString &uuid : seen)
        EXPECT_TRUE(kept.count(uuid)) << uuid.toStdString() << " is lost";
    EXPECT_LE(stuckDrags, 3) << "more than such a text can be the reason of";
    EXPECT_GT(dialogs.count(), Events / 200);
    EXPECT_GT(dialogs.typed(), Events / 2000);
    EXPECT_GE(seen.size(), assets + Events / 500); // undone, perhaps, and in the trash then
    const std::string later = storeMaterial("Later");
    window->libraries().refresh();
    settle();
    EXPECT_TRUE(window->libraries().assets().find(later));
    EXPECT_TRUE(window->isEnabled() && window->isVisible());
}

std::vector<std::uint32_t> seeds()
{
    std::vector<std::uint32_t> found;
    for (const QString &seed : qEnvironmentVariable("KX_MONKEY_SEED", QString::number(Seed)).split(','))
        found.push_back(seed.toUInt());
    return found;
}

INSTANTIATE_TEST_SUITE_P(Seeds, MonkeyTest, testing::ValuesIn(seeds()), testing::PrintToStringParamName());

} // namespace
