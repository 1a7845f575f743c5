// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/DragData.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/Tour.h"
#include "AssetSession/kxLibraryVerifier.h"
#include "Kernel/kxModalQuestion.h"
#include "WindowFixture.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDir>
#include <QDirIterator>
#include <QDrag>
#include <QFile>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QProgressDialog>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <QTreeWidget>
#include <QWheelEvent>
#include <QWindow>

#include <map>
#include <random>
#include <set>

namespace {

constexpr int Events = 10000;
constexpr std::uint32_t Seed = 20260801;

/// Somebody who presses and drags whatever there is, ten thousand times.
///
/// The environment variable KX_MONKEY_SEED has another one come.
class MonkeyTest : public WindowFixture
{
protected:
    MonkeyTest()
    {
        const std::uint32_t seed =
            qEnvironmentVariableIsSet("KX_MONKEY_SEED") ? qEnvironmentVariable("KX_MONKEY_SEED").toUInt() : Seed;
        random.seed(seed);
        RecordProperty("seed", std::to_string(seed));
        std::printf("KX_MONKEY_SEED=%u\n", seed);
        kxModalQuestion::setAnswerer([this](const kxModalQuestion::Question &question) { return answer(question); });
        kxModalQuestion::setDialogAnswerer([this](QDialog &dialog) { return fillIn(dialog); });
        // Queued: a timer whose slot waits for a dialog does not fire again.
        QObject::connect(&helper, &QTimer::timeout, [this] {
            QMetaObject::invokeMethod(
                &helper, [this] { endWhatWaits(); }, Qt::QueuedConnection);
        });
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
        imports = true;
        window->importFiles(
            {QStringLiteral(KX_TEST_MODELS "/OBJ/box.obj"), QStringLiteral(KX_TEST_MODELS "/OBJ/SpiderTex.jpg")},
            path("A"));
        imports = false;
        settle();
        // A person would be asked for files, which nobody answers here, and the window is still needed.
        for (QAction *action : menuActions())
            for (const char *text : {"Quit", "library...", "Import files", "Open scene", "Save scene"})
                if (action->text().remove('&').contains(QLatin1String(text)))
                    action->setEnabled(false);
    }

    void act()
    {
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
            QTest::mouseDClick(target(), Qt::LeftButton, modifiers(), place);
            break;
        case 12:
            dragSomewhere();
            break;
        case 13:
            turnWheel();
            break;
        case 14:
            openContextMenu();
            break;
        case 15:
            triggerAction();
            break;
        case 16:
        case 17:
            dropSomething();
            break;
        case 18:
            window->undoStack().undo();
            break;
        case 19:
            window->undoStack().redo();
            break;
        }
        QCoreApplication::processEvents();
    }

    /// The assets on the disk with those in the trash, by how many directories have the UUID.
    std::map<QString, int> stored() const
    {
        static const QRegularExpression uuid(QStringLiteral("<uuid>([-0-9a-f]{36})</uuid>"));
        std::map<QString, int> found;
        QDirIterator files(path(), {QStringLiteral("*.xml")}, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            ++found[uuid.match(QString::fromUtf8(file.readAll())).captured(1)];
        }
        return found;
    }

    /// Where the library was closed it is opened, and where the scene was emptied there is something again.
    void saveSomething()
    {
        window->openLibraries({path()});
        const osg::NodePtr chair = addChair("Chair");
        window->libraries().actions().saveNodes({chair.getFieldContainerId()}, path());
    }

    void calmDown()
    {
        helper.stop();
        while (QWidget *popup = QApplication::activePopupWidget())
            popup->close();
        if (auto *tour = window->findChild<Tour *>())
            tour->close();
        takeReport();
        window->openLibraries({path()});
        settle();
    }

    QTimer helper;
    std::set<QString> seen;

private:
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

    QMessageBox::StandardButton answer(const kxModalQuestion::Question &question)
    {
        std::vector<QMessageBox::StandardButton> offered;
        for (const auto button : {QMessageBox::Ok, QMessageBox::Yes, QMessageBox::No, QMessageBox::Cancel,
                                  QMessageBox::Discard, QMessageBox::Save, QMessageBox::YesToAll, QMessageBox::NoToAll})
            if (question.buttons.testFlag(button) && !(button == QMessageBox::Save && question.text.contains("closed")))
                offered.push_back(button);
        return offered.empty() ? question.defaultButton : oneOf(offered);
    }
    int fillIn(QDialog &dialog)
    {
        if (auto *deleted = dialog.findChild<QTreeWidget *>(QStringLiteral("deleted")); deleted && below(2)) {
            deleted->selectAll();
            QTest::mouseClick(dialog.findChild<QAbstractButton *>(QStringLiteral("restore")), Qt::LeftButton);
        }
        if (imports)
            dialog.findChild<QComboBox *>(QStringLiteral("pictures"))->setCurrentIndex(1); // plates
        return imports ? QDialog::Accepted : QDialog::Rejected;
    }

    /// Menus, drags and dialogs run event loops of their own.
    void endWhatWaits()
    {
        if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            dialog && !qobject_cast<QProgressDialog *>(dialog))
            dialog->reject();
        if (QWidget *popup = QApplication::activePopupWidget()) {
            static const Qt::Key keys[] = {Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Return, Qt::Key_Escape};
            QTest::keyClick(popup, oneOf(keys));
        }
        if (!isDragging)
            return;
        const QPoint there(below(window->width()), below(window->height()));
        const bool isLast = ++dragTicks > 3;
        QMouseEvent event(isLast ? QEvent::MouseButtonRelease : QEvent::MouseMove, there, window->mapToGlobal(there),
                          Qt::LeftButton, isLast ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window->windowHandle(), &event);
        if (dragTicks > 10)
            QDrag::cancel();
    }

    /// A widget that is seen, and a place in it.
    QWidget *target()
    {
        if (below(3) == 0)
            return aim();
        const QPoint there(below(window->width()), below(window->height()));
        QWidget *child = window->childAt(there);
        QWidget *found = child ? child : window.get();
        place = found->mapFrom(window.get(), there);
        return found;
    }
    /// At something in a list, of which there is less than of everything else.
    QWidget *aim()
    {
        const char *const views[] = {"assetGrid", "folderTree", "sceneTree", "materialList"};
        auto &view = widget<QAbstractItemView>(oneOf(views));
        // The grid has no model while the assets are shown as a list.
        const QAbstractItemModel *model = view.model();
        const QModelIndex index = model ? model->index(below(std::max(1, model->rowCount())), 0) : QModelIndex();
        place = index.isValid() ? view.visualRect(index).center() : view.viewport()->rect().center();
        return view.viewport();
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
        };
        const Stroke &stroke = oneOf(strokes);
        QWidget *receiver = QApplication::activePopupWidget();
        if (!receiver)
            receiver = QApplication::focusWidget();
        QTest::keyClick(receiver ? receiver : window.get(), stroke.key, stroke.modifiers);
    }
    void clickSomewhere()
    {
        QWidget *widget = target();
        QTest::mouseClick(widget, Qt::LeftButton, modifiers(), place);
        if (widget->focusPolicy() & Qt::ClickFocus)
            widget->setFocus(Qt::MouseFocusReason);
    }
    void dragSomewhere()
    {
        const QPointer<QWidget> widget = target();
        const QPoint from = place;
        isDragging = true;
        dragTicks = 0;
        QTest::mousePress(widget, Qt::LeftButton, modifiers(), from);
        for (int step = 1; step < 4 && widget; ++step) {
            QMouseEvent move(QEvent::MouseMove, from + QPoint(12, 9) * step,
                             widget->mapToGlobal(from + QPoint(12, 9) * step), Qt::NoButton, Qt::LeftButton,
                             Qt::NoModifier);
            QApplication::sendEvent(widget, &move);
        }
        isDragging = false;
        if (widget)
            QTest::mouseRelease(widget, Qt::LeftButton, Qt::NoModifier, from + QPoint(36, 27));
    }
    void turnWheel()
    {
        QWidget *widget = target();
        QWheelEvent event(place, widget->mapToGlobal(place), {}, {0, below(2) ? 120 : -120}, Qt::NoButton, modifiers(),
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(widget, &event);
    }
    void openContextMenu()
    {
        QWidget *widget = target();
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, widget->mapToGlobal(place));
        QApplication::sendEvent(widget, &event);
    }
    void triggerAction()
    {
        QAction *action = oneOf(menuActions());
        if (action->isEnabled())
            action->trigger();
    }

    std::unique_ptr<QMimeData> dragged()
    {
        const char *const views[] = {"assetGrid", "folderTree", "sceneTree", "materialList", "plateTree"};
        auto &view = widget<QAbstractItemView>(oneOf(views));
        if (!view.model())
            return nullptr;
        const QAbstractItemModel &model = *view.model();
        QModelIndex index = model.index(below(std::max(1, model.rowCount())), 0);
        while (index.isValid() && model.rowCount(index) > 0 && below(2))
            index = model.index(below(model.rowCount(index)), 0, index);
        const bool isDraggable = index.isValid() && (model.flags(index) & Qt::ItemIsDragEnabled) != 0;
        return std::unique_ptr<QMimeData>(isDraggable ? model.mimeData({index}) : nullptr);
    }
    void dropSomething()
    {
        const std::unique_ptr<QMimeData> data = dragged();
        QWidget *widget = target();
        if (data)
            dropQuickly(*widget, place, *data);
    }

    std::mt19937 random;
    QPoint place;
    bool imports = false;
    bool isDragging = false;
    int dragTicks = 0;
};

TEST_F(MonkeyTest, LeavesTheWindowUsableAndTheLibraryWhole)
{
    prepare();
    const std::size_t assets = seen.size();
    EXPECT_EQ(assets, 11U);
    helper.start(1);

    for (int i = 0; i < Events; ++i) {
        act();
        if (i % 500 == 499)
            saveSomething();
    }
    calmDown();

    for (const auto &finding : kxLibraryVerifier(path()).verify())
        ADD_FAILURE() << finding.path << ": " << finding.text;
    std::set<QString> kept;
    for (const auto &[uuid, count] : stored()) {
        EXPECT_EQ(count, 1) << uuid.toStdString();
        kept.insert(uuid);
    }
    EXPECT_EQ(kept, seen);
    EXPECT_GE(seen.size(), assets + Events / 500); // undone, perhaps, and in the trash then
    const std::string later = storeMaterial("Later");
    window->libraries().refresh();
    settle();
    EXPECT_TRUE(window->libraries().assets().find(later));
    EXPECT_TRUE(window->isEnabled() && window->isVisible());
}

} // namespace
