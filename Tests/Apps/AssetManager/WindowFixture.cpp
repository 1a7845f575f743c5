// SPDX-License-Identifier: Apache-2.0
#include "WindowFixture.h"

#include "AssetManager/AssetBrowser.h"
#include "AssetManager/AssetModel.h"
#include "AssetManager/FolderModel.h"
#include "AssetManager/FolderTree.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/SceneSide.h"
#include "AssetManager/SceneView.h"
#include "Kernel/kxModalQuestion.h"
#include "Kernel/kxScenegraph.h"
#include "SceneGraph/CameraCore.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPointer>
#include <QSettings>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <cmath>

namespace {

QAction *actionIn(const QMenu &menu, const QString &text)
{
    for (QAction *action : menu.actions())
        if (QString(action->text()).remove('&') == text)
            return action;
    return nullptr;
}

} // namespace

WindowFixture::WindowFixture() : SceneFixture(kxAssetSession::MainView::Program)
{
    QSettings(QStringLiteral("kxAssets"), QStringLiteral("asset-manager")).clear();
    kxModalQuestion::setAnswerer([](const kxModalQuestion::Question &question) { return question.defaultButton; });
    kxModalQuestion::setDialogAnswerer([](QDialog &) { return QDialog::Rejected; });
    QDir().mkpath(library().toLocalFile());
    makeWindow();
}

WindowFixture::~WindowFixture()
{
    window.reset();
    kxModalQuestion::setAnswerer({});
    kxModalQuestion::setDialogAnswerer({});
}

void WindowFixture::makeWindow()
{
    window.reset(); // there is one at a time
    window = std::make_unique<MainWindow>(session.manager());
    window->scene().view().setSampleLimit(1);
    window->setGeometry(0, 0, 1400, 900); // there is a place beside it
    window->show();
    activate();
}

void WindowFixture::activate()
{
    window->activateWindow();
    // A window counts as active also while a dialog of it is.
    EXPECT_TRUE(QTest::qWaitFor([this] { return QGuiApplication::focusWindow() == window->windowHandle(); }, Patience));
}

QString WindowFixture::path(const QString &relative) const
{
    const QString root = QFileInfo(library().toLocalFile()).canonicalFilePath();
    return relative.isEmpty() ? root : root + '/' + relative;
}

void WindowFixture::open()
{
    window->openLibraries({library().toLocalFile()});
    settle();
}

void WindowFixture::settle()
{
    for (int i = 0; i < 2; ++i) { // what is read has its pictures loaded once it is laid out
        process();
        EXPECT_TRUE(QTest::qWaitFor([this] { return window->isIdle(); }, Patience));
        process();
    }
}

std::vector<QAction *> WindowFixture::menuActions() const
{
    std::vector<QAction *> found;
    for (const QAction *title : window->menuBar()->actions())
        for (QAction *action : title->menu()->actions())
            if (!action->isSeparator())
                found.push_back(action);
    return found;
}

std::vector<QString> WindowFixture::names() const
{
    const AssetModel &assets = window->libraries().assets();
    std::vector<QString> found;
    for (int row = 0; row < assets.rowCount(); ++row)
        found.push_back(assets.entry(row).name);
    return found;
}

QString WindowFixture::directoryOf(const std::string &uuid) const
{
    const AssetEntry *entry = window->libraries().assets().find(uuid);
    return entry ? entry->directory : QString();
}

QString WindowFixture::reported() const
{
    const auto *box = window->findChild<QMessageBox *>(QStringLiteral("failures"));
    return box && box->isVisible() ? box->text() : QString();
}

QString WindowFixture::takeReport()
{
    QString text = reported();
    if (auto *box = window->findChild<QMessageBox *>(QStringLiteral("failures")))
        QTest::keyClick(box, Qt::Key_Escape);
    activate();
    return text;
}

void WindowFixture::click(QWidget &target, const QPoint &place, Qt::KeyboardModifiers modifiers)
{
    ASSERT_TRUE(target.rect().contains(place)) << target.objectName().toStdString();
    input.click(target.mapToGlobal(place), Qt::LeftButton, modifiers);
    process();
}

void WindowFixture::clickItem(QAbstractItemView &view, const QModelIndex &index, Qt::KeyboardModifiers modifiers)
{
    ASSERT_TRUE(index.isValid());
    view.scrollTo(index);
    click(*view.viewport(), view.visualRect(index).center(), modifiers);
}

void WindowFixture::clickAsset(const std::string &uuid, Qt::KeyboardModifiers modifiers)
{
    clickItem(window->browser().view(), window->libraries().assets().indexOf(uuid), modifiers);
}

void WindowFixture::load(const std::string &uuid)
{
    clickAsset(uuid);
    press(Qt::Key_Return, Qt::ControlModifier);
    settle();
}

QModelIndex WindowFixture::indexOfFolder(const QString &directory)
{
    const FolderModel &folders = window->libraries().folders();
    EXPECT_TRUE(QTest::qWaitFor([&] { return folders.indexOf(directory).isValid(); }, Patience))
        << directory.toStdString();
    return folders.indexOf(directory);
}

void WindowFixture::clickFolder(const QString &directory)
{
    clickItem(window->folders(), indexOfFolder(directory));
}

void WindowFixture::clickButton(const QString &name)
{
    const auto shown = [&] {
        auto *button = window->findChild<QAbstractButton *>(name);
        return button && button->isVisible() ? button : nullptr;
    };
    ASSERT_TRUE(QTest::qWaitFor([&] { return shown() != nullptr; }, Patience)) << name.toStdString();
    click(*shown(), shown()->rect().center());
}

void WindowFixture::openMenu(QWidget &target, const QPoint &place, const std::function<void(QMenu &)> &use)
{
    useMenu([&] { input.click(target.mapToGlobal(place), Qt::RightButton, Qt::NoModifier); }, use);
}

void WindowFixture::openMenuByKey(const std::function<void(QMenu &)> &use)
{
    useMenu([this] { input.press(Qt::Key_Menu, Qt::NoModifier); }, use);
}

void WindowFixture::useMenu(const std::function<void()> &open, const std::function<void(QMenu &)> &use)
{
    QTimer helper; // the menu has a loop of its own
    int seen = 0;
    QObject::connect(&helper, &QTimer::timeout, [&] {
        const QPointer<QMenu> menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        if (!menu || input.isBusy())
            return;
        if (++seen == 1)
            use(*menu);
        else
            menu->close();
    });
    helper.start(20);
    open();
    EXPECT_TRUE(QTest::qWaitFor([&] { return seen > 0 && !QApplication::activePopupWidget(); }, Patience));
    process();
}

void WindowFixture::clickInMenu(QMenu &menu, const QString &text)
{
    QAction *action = actionIn(menu, text);
    ASSERT_NE(action, nullptr) << text.toStdString();
    input.click(menu.mapToGlobal(menu.actionGeometry(action).center()), Qt::LeftButton, Qt::NoModifier);
}

void WindowFixture::pressInMenu(QMenu &menu, const QString &text)
{
    const QAction *action = actionIn(menu, text);
    ASSERT_NE(action, nullptr) << text.toStdString();
    for (int i = 0; i < menu.actions().size() && menu.activeAction() != action; ++i)
        input.press(Qt::Key_Down, Qt::NoModifier);
    ASSERT_EQ(menu.activeAction(), action) << text.toStdString();
    input.press(Qt::Key_Return, Qt::NoModifier);
}

void WindowFixture::clickInMenuBar(const char *menu, const QString &text)
{
    auto &opened = widget<QMenu>(menu);
    QMenuBar &bar = *window->menuBar();
    click(bar, bar.actionGeometry(opened.menuAction()).center());
    ASSERT_TRUE(opened.isVisible());
    clickInMenu(opened, text);
    process();
}

void WindowFixture::showForInput(QDialog &dialog)
{
    dialog.show();
    dialog.activateWindow(); // which a window manager does
    // A dialog counts as active already while the window that it belongs to is.
    const auto hasKeyboard = [&] { return QGuiApplication::focusWindow() == dialog.windowHandle(); };
    EXPECT_TRUE(QTest::qWaitFor([&] { return hasKeyboard() && !input.isBusy(); }, Patience));
}

void WindowFixture::raise(const char *dock)
{
    const QString title = widget<QDockWidget>(dock).windowTitle();
    for (QTabBar *tabs : window->findChildren<QTabBar *>(QString(), Qt::FindDirectChildrenOnly))
        for (int i = 0; i < tabs->count(); ++i)
            if (tabs->tabText(i) == title) {
                click(*tabs, tabs->tabRect(i).center());
                return;
            }
    ADD_FAILURE() << "no tab: " << dock;
}

void WindowFixture::doubleClick(QWidget &target, const QPoint &place)
{
    input.doubleClick(target.mapToGlobal(place));
    process();
}

void WindowFixture::dragMouse(QWidget &from, const QPoint &begin, QWidget &to, const QPoint &end,
                              Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    const QPoint first = from.mapToGlobal(begin);
    const QPoint last = to.mapToGlobal(end);
    const QPoint away(QApplication::startDragDistance() + 2, 2);
    input.drag({first, first + away, (first + last) / 2, last - QPoint(1, 1), last}, button, modifiers);
    process();
    settle();
}

void WindowFixture::dragAssets(const std::vector<std::string> &uuids, QWidget &target, const QPoint &place)
{
    for (const std::string &uuid : uuids)
        clickAsset(uuid, uuid == uuids.front() ? Qt::NoModifier : Qt::ControlModifier);
    dragItem(window->browser().view(), window->libraries().assets().indexOf(uuids.back()), target, place);
}

void WindowFixture::dragItem(QAbstractItemView &from, const QModelIndex &index, QWidget &target, const QPoint &place)
{
    ASSERT_TRUE(index.isValid());
    from.scrollTo(index);
    dragMouse(*from.viewport(), from.visualRect(index).center(), target, place);
}

QModelIndex WindowFixture::rowOf(const QAbstractItemView &view, const QString &name)
{
    const QAbstractItemModel &model = *view.model();
    return model.match(model.index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly | Qt::MatchRecursive).value(0);
}

QPoint WindowFixture::placeOfFolder(const QString &directory)
{
    const QModelIndex index = indexOfFolder(directory);
    window->folders().scrollTo(index);
    return window->folders().visualRect(index).center();
}

void WindowFixture::press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    input.press(key, modifiers);
    process();
}

/// The keys for it are other ones on other systems.
void WindowFixture::pressRedo()
{
    constexpr auto modifierMask = static_cast<unsigned>(Qt::KeyboardModifierMask);
    const auto keys = static_cast<unsigned>(QKeySequence(QKeySequence::Redo)[0]);
    press(static_cast<Qt::Key>(keys & ~modifierMask), Qt::KeyboardModifiers(static_cast<int>(keys & modifierMask)));
}

void WindowFixture::undo()
{
    press(Qt::Key_Z, Qt::ControlModifier);
    settle();
}

void WindowFixture::redo()
{
    pressRedo();
    settle();
}

void WindowFixture::type(const QString &text)
{
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    ASSERT_TRUE(input.type(text)) << text.toStdString();
    process();
}

std::unique_ptr<QMimeData> WindowFixture::dragged(const std::vector<std::string> &uuids) const
{
    const AssetModel &assets = window->libraries().assets();
    QModelIndexList indexes;
    for (const std::string &uuid : uuids)
        indexes.append(assets.indexOf(uuid));
    return std::unique_ptr<QMimeData>(assets.mimeData(indexes));
}

bool WindowFixture::dropQuickly(QWidget &target, const QPoint &place, const QMimeData &data)
{
    const Qt::DropActions offered = Qt::CopyAction | Qt::MoveAction;
    QDragEnterEvent enter(place, offered, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &enter);
    QDragMoveEvent move(place, offered, &data, Qt::LeftButton, Qt::NoModifier);
    move.setDropAction(enter.dropAction()); // what was answered holds until there is another answer
    move.setAccepted(enter.isAccepted());
    QApplication::sendEvent(&target, &move);
    if (!enter.isAccepted() || !move.isAccepted()) {
        QDragLeaveEvent leave;
        QApplication::sendEvent(&target, &leave);
        return false;
    }
    QDropEvent dropped(place, offered, &data, Qt::LeftButton, Qt::NoModifier);
    dropped.setDropAction(move.dropAction());
    QApplication::sendEvent(&target, &dropped);
    return dropped.isAccepted();
}

bool WindowFixture::drop(QWidget &target, const QPoint &place, const QMimeData &data)
{
    const bool isTaken = dropQuickly(target, place, data);
    process();
    settle();
    return isTaken;
}

bool WindowFixture::dropOnItem(QAbstractItemView &view, const QModelIndex &index, const QMimeData &data)
{
    view.scrollTo(index);
    return drop(*view.viewport(), view.visualRect(index).center(), data);
}

bool WindowFixture::dropOnFolder(const QString &directory, const QMimeData &data)
{
    return dropOnItem(window->folders(), indexOfFolder(directory), data);
}

osg::UberCameraPtr WindowFixture::camera()
{
    return osg::CameraCorePtr::dcast(kxScenegraph::getCameraNode()->getCore())->getCamera();
}

double WindowFixture::distance()
{
    const osg::Vec3d from = camera()->getFrom();
    const osg::Vec3d at = camera()->getAt();
    return std::hypot(from[0] - at[0], from[1] - at[1], from[2] - at[2]);
}
