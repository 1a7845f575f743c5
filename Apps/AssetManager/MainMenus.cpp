// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/MainMenus.h"

#include "AssetManager/AssetBrowser.h"
#include "AssetManager/FolderTree.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/MainWindow.h"
#include "AssetManager/MenuTip.h"
#include "AssetManager/SceneSide.h"
#include "AssetManager/ScriptSide.h"
#include "Kernel/kxModalQuestion.h"

#include <QApplication>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>
#include <QUndoStack>

namespace {

constexpr int TileStep = 32; // pixels

} // namespace

MainMenus::MainMenus(MainWindow &window) : QObject(&window), _window(window)
{
    _window.menuBar()->setObjectName(QStringLiteral("menuBar"));
    makeFileMenu();
    makeEditMenu();
    makeAssetMenu();
    makeViewMenu();
    makeHelpMenu();
}

QMenu *MainMenus::addMenu(const QString &title, const char *name)
{
    QMenu *menu = _window.menuBar()->addMenu(title);
    menu->setObjectName(QLatin1String(name));
    menu->setToolTipsVisible(true);
    return menu;
}

void MainMenus::makeFileMenu()
{
    QMenu *menu = addMenu(tr("&File"), "fileMenu");
    _window.scene().addFileActions(*menu);
    menu->addSeparator();
    menu->addAction(tr("Add &library..."), &_window, &MainWindow::addLibrary, QStringLiteral("Ctrl+L"));
    menu->addAction(tr("&Import files..."), &_window, &MainWindow::chooseFilesToImport, QStringLiteral("Ctrl+I"));
    menu->addAction(tr("New &folder"), &_window, &MainWindow::createFolder, QStringLiteral("Ctrl+Shift+N"));
    menu->addAction(tr("&Read libraries again"), &_window.libraries(), &LibrarySide::refresh, QKeySequence::Refresh);
    MenuTip::add(*menu->addAction(tr("Dele&ted assets..."), &_window, &MainWindow::showTrash),
                 tr("Puts deleted assets and folders back, or removes them for good."));
    menu->addSeparator();
    menu->addAction(tr("&Quit"), &_window, &QWidget::close, QStringLiteral("Ctrl+Q"));
}

void MainMenus::makeEditMenu()
{
    QMenu *menu = addMenu(tr("&Edit"), "editMenu");
    addUndoActions(*menu);
    menu->addSeparator();
    menu->addAction(tr("Re&name"), &_window, &MainWindow::renameChosen, QKeySequence(Qt::Key_F2));
    menu->addAction(tr("&Delete"), &_window, &MainWindow::deleteChosen, QKeySequence(Qt::Key_Delete));
    menu->addSeparator();
    menu->addAction(tr("&Search"), &_window.browser(), &AssetBrowser::focusSearch, QKeySequence::Find);
}

void MainMenus::addUndoActions(QMenu &menu)
{
    QUndoStack &stack = _window.undoStack();
    QAction *undo = menu.addAction(tr("&Undo"), &stack, &QUndoStack::undo, QKeySequence::Undo);
    undo->setEnabled(false);
    connect(&stack, &QUndoStack::canUndoChanged, undo, &QAction::setEnabled);
    connect(&stack, &QUndoStack::undoTextChanged, undo,
            [undo](const QString &what) { undo->setText(what.isEmpty() ? tr("&Undo") : tr("&Undo %1").arg(what)); });
    QAction *redo = menu.addAction(tr("&Redo"), &stack, &QUndoStack::redo, QKeySequence::Redo);
    redo->setEnabled(false);
    connect(&stack, &QUndoStack::canRedoChanged, redo, &QAction::setEnabled);
    connect(&stack, &QUndoStack::redoTextChanged, redo,
            [redo](const QString &what) { redo->setText(what.isEmpty() ? tr("&Redo") : tr("&Redo %1").arg(what)); });
}

void MainMenus::makeAssetMenu()
{
    QMenu *menu = addMenu(tr("&Asset"), "assetMenu");
    AssetActions &actions = _window.libraries().assetActions();
    menu->addAction(tr("&Load into the scene"), &_window, &MainWindow::loadChosen, QStringLiteral("Ctrl+Return"));
    menu->addAction(
        tr("Load &below the selected object"), this, [this] { _window.scene().loadBelow(_window.selectedIds()); },
        QStringLiteral("Ctrl+Shift+Return"));
    menu->addAction(tr("Save the scene's copy &over it..."), this,
                    [this, &actions] { _window.scene().overwrite(_window.selectedIds(), actions); });
    menu->addAction(tr("&Favourite"), this, &MainMenus::toggleFavourite, QStringLiteral("Ctrl+D"));
    QAction *render = menu->addAction(
        tr("Render &previews anew"), this, [this, &actions] { actions.renderPreviews(_window.selectedIds()); },
        QStringLiteral("Ctrl+P"));
    MenuTip::add(*render, tr("Replaces the previews that are there, also those that were painted by hand. Undo brings "
                             "them back."));
    menu->addAction(tr("&Move to folder..."), &_window, &MainWindow::moveChosen, QStringLiteral("Ctrl+M"));
    menu->addSeparator();
    menu->addAction(
        tr("Save selected ob&jects as assets"), this,
        [this, &actions] { actions.saveNodes(_window.scene().selectedNodes(), _window.targetFolder()); },
        QStringLiteral("Ctrl+Shift+O"));
    menu->addAction(
        tr("Save selected ma&terials as assets"), this,
        [this, &actions] { actions.saveMaterials(_window.scene().selectedMaterials(), _window.targetFolder()); },
        QStringLiteral("Ctrl+Shift+M"));
}

void MainMenus::toggleFavourite()
{
    const QStringList uuids = _window.selectedIds();
    LibrarySide &libraries = _window.libraries();
    const AssetEntry *first = uuids.isEmpty() ? nullptr : libraries.assets().find(uuids.first().toStdString());
    libraries.setFavourite(uuids, first && !first->isFavourite);
}

void MainMenus::makeViewMenu()
{
    QMenu *menu = addMenu(tr("&View"), "viewMenu");
    AssetBrowser &browser = _window.browser();
    menu->addAction(
        tr("&Tiles"), this, [&browser] { browser.setLook(AssetBrowser::Look::Tiles); }, QStringLiteral("Ctrl+1"));
    menu->addAction(
        tr("&List"), this, [&browser] { browser.setLook(AssetBrowser::Look::Lines); }, QStringLiteral("Ctrl+2"));
    menu->addAction(
        tr("Lar&ger tiles"), this, [&browser] { browser.setTileSize(browser.tileSize() + TileStep); },
        QKeySequence::ZoomIn);
    menu->addAction(
        tr("S&maller tiles"), this, [&browser] { browser.setTileSize(browser.tileSize() - TileStep); },
        QKeySequence::ZoomOut);
    menu->addSeparator();
    _window.scene().addActions(*menu);
    menu->addSeparator();
    for (QDockWidget *dock : _window.findChildren<QDockWidget *>())
        menu->addAction(dock->toggleViewAction());
    _window.scripts().addActions(*menu);
}

void MainMenus::makeHelpMenu()
{
    QMenu *menu = addMenu(tr("&Help"), "helpMenu");
    menu->addAction(tr("&Tour"), &_window, &MainWindow::startTour, QKeySequence::HelpContents);
    menu->addAction(tr("&About Asset Manager"), this, &MainMenus::tellAbout);
}

void MainMenus::tellAbout()
{
    kxModalQuestion::information(&_window, tr("About Asset Manager"),
                                 tr("Asset Manager %1\n\nKeeps libraries of materials, environments, geometry and "
                                    "sceneplates.")
                                     .arg(QApplication::applicationVersion()));
}

void MainMenus::showAssetMenu(const QPoint &position)
{
    if (_window.selectedIds().isEmpty())
        return;
    QMenu menu(&_window);
    menu.setToolTipsVisible(true);
    for (const char *name : {"assetMenu", "editMenu"}) {
        for (QAction *action : _window.menuBar()->findChild<QMenu *>(QLatin1String(name))->actions())
            menu.addAction(action);
        menu.addSeparator();
    }
    menu.exec(position);
}

void MainMenus::showFolderMenu(const QPoint &position)
{
    FolderTree &folders = _window.folders();
    const bool isLibrary = _window.libraries().folders().libraries().contains(folders.folder());
    const QStringList selected = folders.selectedFolders();
    QMenu menu(&_window);
    menu.setToolTipsVisible(true);
    menu.addAction(tr("Add &library..."), &_window, &MainWindow::addLibrary);
    if (isLibrary)
        MenuTip::add(*menu.addAction(tr("&Close library"), &_window, &MainWindow::removeLibrary),
                     tr("Its files stay as they are. What was done in it can be undone only while it is open."));
    menu.addAction(tr("New &folder"), &_window, &MainWindow::createFolder);
    if (selected == QStringList{folders.folder()})
        menu.addAction(tr("Re&name"), &folders, &FolderTree::editName);
    if (!selected.isEmpty()) {
        menu.addAction(tr("&Move to folder..."), &_window, &MainWindow::moveFolders);
        menu.addAction(tr("&Delete"), this, [this, selected] { _window.libraries().actions().trashFolders(selected); });
    }
    menu.addSeparator();
    menu.addAction(tr("&Import files..."), &_window, &MainWindow::chooseFilesToImport);
    menu.addAction(tr("Dele&ted assets..."), &_window, &MainWindow::showTrash);
    menu.exec(position);
}
