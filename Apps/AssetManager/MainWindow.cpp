// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/MainWindow.h"
#include "AssetManager/EditorSilence.h"

#include "AssetManager/AssetBrowser.h"
#include "AssetManager/DetailsPane.h"
#include "AssetManager/FolderDialog.h"
#include "AssetManager/FolderTree.h"
#include "AssetManager/ImportDialog.h"
#include "AssetManager/ImportJob.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/NodeTreeModel.h"
#include "AssetManager/ScanProgress.h"
#include "AssetManager/SceneActions.h"
#include "AssetManager/SceneSide.h"
#include "AssetManager/ScriptSide.h"
#include "AssetManager/Settings.h"
#include "AssetManager/Tour.h"
#include "AssetManager/TrashDialog.h"
#include "AssetManager/WelcomeDialog.h"
#include "AssetSession/kxAssetManagerModule.h"
#include "Kernel/kxController.h"
#include "Kernel/kxModalQuestion.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QStatusBar>
#include <QUrl>

namespace {

constexpr int MaxShownMessages = 6;

QStringList droppedFiles(const QMimeData &data)
{
    QStringList files;
    for (const QUrl &url : data.urls())
        if (url.isLocalFile())
            files.append(url.toLocalFile());
    return files;
}

} // namespace

MainWindow::MainWindow(kxAssetManagerModule &manager) : _libraries(std::make_unique<LibrarySide>(_undo))
{
    setObjectName(QStringLiteral("mainWindow"));
    setDockNestingEnabled(true);
    setAcceptDrops(true);
    kxController::setMainWindow(this);
    _browser = new AssetBrowser(_libraries->assets(), _libraries->previews(), this);
    setCentralWidget(_browser);
    makeLibraryDocks();
    _scene = new SceneSide(*this, _libraries->assets(), _undo);
    _scripts = std::make_unique<ScriptSide>(*this, _undo);
    makeMenus();
    _count = new QLabel(this);
    statusBar()->addPermanentWidget(new ScanProgress(_libraries->scan(), this));
    statusBar()->addPermanentWidget(_count);
    connectLibraries();
    connectManager(manager);
    _browser->setTileSize(Settings::tileSize());
    _browser->setLook(Settings::showsLines() ? AssetBrowser::Look::Lines : AssetBrowser::Look::Tiles);
    resize(1440, 900);
    layOutDocks();
    restoreGeometry(Settings::windowGeometry());
    restoreState(Settings::windowState());
    updateStatus();
}

MainWindow::~MainWindow()
{
    EditorSilence::keepIn(*this);
    kxController::setMainWindow(nullptr);
}

void MainWindow::makeLibraryDocks()
{
    _folders = new FolderTree(_libraries->folders(), this);
    auto *folders = new QDockWidget(tr("Libraries"), this);
    folders->setObjectName(QStringLiteral("foldersDock"));
    folders->setWidget(_folders);
    addDockWidget(Qt::LeftDockWidgetArea, folders);

    _details = new DetailsPane(_libraries->assets(), _libraries->states(), _libraries->previews(), this);
    auto *details = new QDockWidget(tr("Details"), this);
    details->setObjectName(QStringLiteral("detailsDock"));
    details->setWidget(_details);
    addDockWidget(Qt::RightDockWidgetArea, details);
}

void MainWindow::layOutDocks()
{
    const auto dock = [this](const char *name) { return findChild<QDockWidget *>(QLatin1String(name)); };
    resizeDocks({dock("foldersDock"), dock("detailsDock")}, {260, 310}, Qt::Horizontal);
    resizeDocks({dock("viewDock")}, {400}, Qt::Vertical);
    resizeDocks({dock("detailsDock"), dock("materialDock")}, {560, 300}, Qt::Vertical);
}

void MainWindow::makeMenus()
{
    menuBar()->setObjectName(QStringLiteral("menuBar"));
    makeFileMenu();
    makeEditMenu();
    makeAssetMenu();
    makeViewMenu();
    makeHelpMenu();
}

void MainWindow::makeFileMenu()
{
    QMenu *menu = menuBar()->addMenu(tr("&File"));
    menu->setObjectName(QStringLiteral("fileMenu"));
    _scene->addFileActions(*menu);
    menu->addSeparator();
    menu->addAction(tr("Add &library..."), this, &MainWindow::addLibrary, QStringLiteral("Ctrl+L"));
    menu->addAction(tr("&Import files..."), this, &MainWindow::chooseFilesToImport, QStringLiteral("Ctrl+I"));
    menu->addAction(tr("&New folder"), this, &MainWindow::createFolder, QStringLiteral("Ctrl+Shift+N"));
    menu->addAction(
        tr("&Read libraries again"), this, [this] { _libraries->refresh(); }, QKeySequence::Refresh);
    menu->addAction(tr("&Deleted assets..."), this, &MainWindow::showTrash);
    menu->addSeparator();
    menu->addAction(tr("&Quit"), this, &QWidget::close, QStringLiteral("Ctrl+Q"));
}

void MainWindow::makeEditMenu()
{
    QMenu *menu = menuBar()->addMenu(tr("&Edit"));
    menu->setObjectName(QStringLiteral("editMenu"));
    QAction *undo = menu->addAction(tr("&Undo"), &_undo, &QUndoStack::undo, QKeySequence::Undo);
    undo->setEnabled(false);
    connect(&_undo, &QUndoStack::canUndoChanged, undo, &QAction::setEnabled);
    connect(&_undo, &QUndoStack::undoTextChanged, undo,
            [undo](const QString &what) { undo->setText(what.isEmpty() ? tr("&Undo") : tr("&Undo %1").arg(what)); });
    QAction *redo = menu->addAction(tr("&Redo"), &_undo, &QUndoStack::redo, QKeySequence::Redo);
    redo->setEnabled(false);
    connect(&_undo, &QUndoStack::canRedoChanged, redo, &QAction::setEnabled);
    connect(&_undo, &QUndoStack::redoTextChanged, redo,
            [redo](const QString &what) { redo->setText(what.isEmpty() ? tr("&Redo") : tr("&Redo %1").arg(what)); });
    menu->addSeparator();
    menu->addAction(tr("Re&name"), this, &MainWindow::renameChosen, QKeySequence(Qt::Key_F2));
    menu->addAction(tr("&Delete"), this, &MainWindow::deleteChosen, QKeySequence(Qt::Key_Delete));
    menu->addSeparator();
    menu->addAction(tr("&Search"), _browser, &AssetBrowser::focusSearch, QKeySequence::Find);
}

void MainWindow::makeAssetMenu()
{
    QMenu *menu = menuBar()->addMenu(tr("&Asset"));
    menu->setObjectName(QStringLiteral("assetMenu"));
    menu->addAction(tr("&Load into the scene"), this, &MainWindow::loadChosen, QStringLiteral("Ctrl+Return"));
    menu->addAction(tr("Save the scene's copy &over it..."), this, [this] { _scene->overwrite(selectedIds()); });
    menu->addAction(
        tr("&Favourite"), this,
        [this] {
            const QStringList uuids = selectedIds();
            const AssetEntry *first =
                uuids.isEmpty() ? nullptr : _libraries->assets().find(uuids.first().toStdString());
            _libraries->setFavourite(uuids, first && !first->isFavourite);
        },
        QStringLiteral("Ctrl+D"));
    menu->addAction(
        tr("Render &previews anew"), this, [this] { _libraries->actions().renderPreviews(selectedIds(), this); },
        QStringLiteral("Ctrl+P"));
    menu->addAction(tr("&Move to folder..."), this, &MainWindow::moveChosen, QStringLiteral("Ctrl+M"));
    menu->addSeparator();
    menu->addAction(
        tr("Save selected &objects as assets"), this,
        [this] { _libraries->actions().saveNodes(_scene->selectedNodes(), targetFolder()); },
        QStringLiteral("Ctrl+Shift+O"));
    menu->addAction(
        tr("Save selected ma&terials as assets"), this,
        [this] { _libraries->actions().saveMaterials(_scene->selectedMaterials(), targetFolder()); },
        QStringLiteral("Ctrl+Shift+M"));
}

void MainWindow::moveChosen()
{
    const bool isFolder = _folders->hasFocus();
    FolderDialog dialog(_libraries->folders(), targetFolder(), this);
    if (kxModalQuestion::exec(dialog) != QDialog::Accepted || dialog.folder().isEmpty())
        return;
    if (isFolder && !_libraries->folders().libraries().contains(_folders->folder()))
        _libraries->actions().moveFolders({_folders->folder()}, dialog.folder());
    else if (!isFolder)
        _libraries->actions().moveAssets(selectedIds(), dialog.folder());
}

void MainWindow::makeViewMenu()
{
    QMenu *menu = menuBar()->addMenu(tr("&View"));
    menu->setObjectName(QStringLiteral("viewMenu"));
    menu->addAction(
        tr("&Tiles"), this, [this] { _browser->setLook(AssetBrowser::Look::Tiles); }, QStringLiteral("Ctrl+1"));
    menu->addAction(
        tr("&List"), this, [this] { _browser->setLook(AssetBrowser::Look::Lines); }, QStringLiteral("Ctrl+2"));
    menu->addAction(
        tr("&Larger tiles"), this, [this] { _browser->setTileSize(_browser->tileSize() + 32); }, QKeySequence::ZoomIn);
    menu->addAction(
        tr("&Smaller tiles"), this, [this] { _browser->setTileSize(_browser->tileSize() - 32); },
        QKeySequence::ZoomOut);
    menu->addSeparator();
    _scene->addActions(*menu);
    menu->addSeparator();
    for (QDockWidget *dock : findChildren<QDockWidget *>())
        menu->addAction(dock->toggleViewAction());
    _scripts->addActions(*menu);
}

void MainWindow::makeHelpMenu()
{
    QMenu *menu = menuBar()->addMenu(tr("&Help"));
    menu->setObjectName(QStringLiteral("helpMenu"));
    menu->addAction(tr("&Tour"), this, &MainWindow::startTour, QKeySequence::HelpContents);
    menu->addAction(tr("&About Asset Manager"), this, [this] {
        kxModalQuestion::information(this, tr("About Asset Manager"),
                                     tr("Asset Manager %1\n\nKeeps libraries of materials, environments, geometry and "
                                        "sceneplates.")
                                         .arg(QApplication::applicationVersion()));
    });
}

void MainWindow::connectLibraries()
{
    LibraryActions &actions = _libraries->actions();
    FolderModel &folders = _libraries->folders();
    connect(_folders, &FolderTree::folderChanged, this, [this](const QString &path) {
        _browser->setFolder(path);
        updateStatus();
    });
    connect(_folders, &FolderTree::menuRequested, this, &MainWindow::showFolderMenu);
    connect(_browser, &AssetBrowser::menuRequested, this, &MainWindow::showAssetMenu);
    connect(_browser, &AssetBrowser::selectionChanged, this, [this] {
        _details->show(_browser->selected());
        updateStatus();
    });
    connect(_browser, &AssetBrowser::seenChanged, &_libraries->watcher(), &LibraryWatcher::setSeen);
    connect(&_libraries->assets(), &AssetModel::countChanged, this, &MainWindow::updateStatus);
    connect(&_libraries->assets(), &AssetModel::renameRequested, &actions, &LibraryActions::renameAsset,
            Qt::QueuedConnection); // the editor has to be gone before rows move
    connect(_details, &DetailsPane::renameRequested, &actions, &LibraryActions::renameAsset);
    connect(_details, &DetailsPane::tagsEdited, &actions, &LibraryActions::editTags);
    connect(_details, &DetailsPane::favouriteChanged, _libraries.get(), &LibrarySide::setFavourite);
    connect(&folders, &FolderModel::renameRequested, &actions, &LibraryActions::renameFolder, Qt::QueuedConnection);
    // A drop ends first: what follows may ask, and whoever dragged would wait for the answer.
    connect(&folders, &FolderModel::assetsDropped, &actions, &LibraryActions::moveAssets, Qt::QueuedConnection);
    connect(&folders, &FolderModel::foldersDropped, &actions, &LibraryActions::moveFolders, Qt::QueuedConnection);
    connect(&folders, &FolderModel::nodesDropped, &actions, &LibraryActions::saveNodes, Qt::QueuedConnection);
    connect(&folders, &FolderModel::materialsDropped, &actions, &LibraryActions::saveMaterials, Qt::QueuedConnection);
    connect(&folders, &FolderModel::filesDropped, this, &MainWindow::importFiles, Qt::QueuedConnection);
    connect(_libraries.get(), &LibrarySide::failed, this, &MainWindow::report);
    connect(_scripts.get(), &ScriptSide::finished, _libraries.get(), &LibrarySide::refresh);
    connect(&_scene->actions(), &SceneActions::failed, this, &MainWindow::report);
    connect(&_scene->actions(), &SceneActions::assetsLoaded, _libraries.get(), &LibrarySide::markUsed);
    connect(_browser, &AssetBrowser::activated, this, [this](const QString &uuid) { _scene->load({uuid}); });
    connect(_libraries.get(), &LibrarySide::assetsChanged, _details, &DetailsPane::refresh);
    connect(_libraries.get(), &LibrarySide::librariesChanged, this,
            [](const QStringList &paths) { Settings::setLibraries(paths); });
    connect(&_libraries->scan(), &LibraryScan::started, this,
            [this] { _browser->setEmptyText(tr("Reading the libraries...")); });
    connect(&_libraries->scan(), &LibraryScan::finished, this, [this] {
        _browser->setEmptyText({});
        for (NodeTreeModel *tree : findChildren<NodeTreeModel *>())
            tree->refreshAssetStates();
    });
    connect(&actions, &LibraryActions::progressed, this, [this](int done, int total, const QString &what) {
        if (total > 1 && done < total)
            statusBar()->showMessage(tr("%1: %2 of %3").arg(what).arg(done).arg(total));
        else
            statusBar()->clearMessage();
    });
}

void MainWindow::connectManager(kxAssetManagerModule &manager)
{
    connect(&manager, &kxAssetManagerModule::selectionChanged, this, [this, &manager] {
        if (manager.selection() != _browser->selected())
            _browser->select(manager.selection());
    });
    connect(&manager, &kxAssetManagerModule::assetsSaved, this, [this] { _libraries->refresh(); });
    connect(_browser, &AssetBrowser::selectionChanged, &manager,
            [this, &manager] { manager.setSelection(_browser->selected()); });
}

void MainWindow::openLibraries(const QStringList &paths)
{
    QStringList failures;
    for (const QString &path : paths.isEmpty() ? Settings::libraries() : paths)
        if (const QString reason = _libraries->open(path); !reason.isEmpty())
            failures.append(reason);
    if (!failures.isEmpty())
        report(failures);
    _folders->setCurrentIndex(_libraries->folders().index(0, 0));
}

void MainWindow::welcome()
{
    const QString sample = WelcomeDialog::findSampleLibrary();
    WelcomeDialog dialog(sample, this);
    kxModalQuestion::exec(dialog);
    Settings::setWelcomed();
    if (dialog.choice() == WelcomeDialog::Choice::SampleLibrary)
        openLibraries({sample});
    else if (dialog.choice() == WelcomeDialog::Choice::OwnLibrary)
        addLibrary();
    if (dialog.choice() != WelcomeDialog::Choice::Nothing && dialog.wantsTour())
        startTour();
}

void MainWindow::startTour()
{
    if (!findChild<Tour *>())
        new Tour(*this); // deletes itself
}

bool MainWindow::isIdle() const
{
    return !_libraries->scan().isRunning() && _libraries->previews().isIdle() && _scene->isIdle();
}

void MainWindow::report(const QStringList &messages)
{
    statusBar()->showMessage(messages.first(), 10000);
    auto *box = findChild<QMessageBox *>(QStringLiteral("failures"));
    if (!box) {
        box = new QMessageBox(QMessageBox::Warning, tr("Asset Manager"), {}, QMessageBox::Close, this);
        box->setObjectName(QStringLiteral("failures"));
        box->setModal(false);
        box->setTextFormat(Qt::PlainText);
    }
    QStringList all = box->isVisible() ? box->property("messages").toStringList() : QStringList();
    all += messages;
    all.removeDuplicates();
    box->setProperty("messages", all);
    QStringList shown = all.mid(0, MaxShownMessages);
    if (all.size() > MaxShownMessages) {
        shown.append(tr("... and %n more.", nullptr, all.size() - MaxShownMessages));
        box->setDetailedText(all.join('\n'));
    }
    box->setText(shown.join(QStringLiteral("\n\n")));
    box->show();
}

void MainWindow::addLibrary()
{
    const QString path = QFileDialog::getExistingDirectory(this, tr("Add library"));
    if (path.isEmpty())
        return;
    if (const QString reason = _libraries->open(path); !reason.isEmpty())
        report({reason});
}

void MainWindow::removeLibrary()
{
    const QString path = _folders->folder();
    if (_libraries->folders().libraries().contains(path))
        _libraries->close(path);
}

void MainWindow::createFolder()
{
    const QString parent = targetFolder();
    if (!parent.isEmpty())
        _libraries->actions().createFolder(parent);
}

QString MainWindow::targetFolder() const
{
    const QString chosen = _folders->folder();
    return chosen.isEmpty() ? _libraries->folders().libraries().value(0) : chosen;
}

void MainWindow::chooseFilesToImport()
{
    const QStringList files = QFileDialog::getOpenFileNames(this, tr("Import files"));
    if (!files.isEmpty())
        importFiles(files, targetFolder());
}

void MainWindow::importFiles(const QStringList &files, const QString &folder)
{
    const QString library = _libraries->folders().libraryOf(folder);
    if (library.isEmpty()) {
        report({tr("Add a library first: there is no folder to import into.")});
        return;
    }
    QStringList others;
    const QStringList importable = ImportDialog::importable(files, others);
    QStringList failures;
    for (const QString &file : others)
        failures.append(tr("\"%1\" is of a kind that cannot be imported.").arg(QFileInfo(file).fileName()));
    if (!importable.isEmpty()) {
        ImportDialog dialog(importable, folder, this);
        if (kxModalQuestion::exec(dialog) != QDialog::Accepted)
            return;
        const ImportJob::Outcome outcome = ImportJob(library, folder, dialog.options()).run(importable, this);
        _libraries->actions().remember(outcome.saved,
                                       tr("Import of %n asset(s)", nullptr, static_cast<int>(outcome.saved.size())));
        _libraries->scan().refresh(folder);
        failures += outcome.failures;
        statusBar()->showMessage(tr("%n asset(s) imported", nullptr, static_cast<int>(outcome.saved.size())), 10000);
    }
    if (!failures.isEmpty())
        report(failures);
}

/// What a part of the scene side does itself while it has the focus; false: the focus is in the libraries.
bool MainWindow::isDoneByScene(const char *action)
{
    for (QWidget *part = focusWidget(); part && part != this; part = part->parentWidget()) {
        if (auto *own = part->findChild<QAction *>(QLatin1String(action), Qt::FindDirectChildrenOnly)) {
            own->trigger();
            return true;
        }
        if (qobject_cast<QDockWidget *>(part))
            return !part->isAncestorOf(_folders) && !part->isAncestorOf(_details);
    }
    return false;
}

void MainWindow::renameChosen()
{
    if (_folders->hasFocus())
        _folders->editName();
    else if (!isDoneByScene("rename"))
        _browser->editName();
}

void MainWindow::deleteChosen()
{
    if (_folders->hasFocus())
        _libraries->actions().trashFolder(_folders->folder());
    else if (isDoneByScene("delete"))
        return;
    else if (const QStringList uuids = selectedIds(); !uuids.isEmpty())
        _libraries->actions().trashAssets(uuids);
}

void MainWindow::showTrash()
{
    TrashDialog dialog(_libraries->actions(), _libraries->folders().libraries(), this);
    kxModalQuestion::exec(dialog);
}

QStringList MainWindow::selectedIds() const
{
    QStringList ids;
    for (const std::string &uuid : _browser->selected())
        ids.append(QString::fromStdString(uuid));
    return ids;
}

void MainWindow::showAssetMenu(const QPoint &position)
{
    if (selectedIds().isEmpty())
        return;
    QMenu menu(this);
    for (const char *name : {"assetMenu", "editMenu"}) {
        for (QAction *action : menuBar()->findChild<QMenu *>(QLatin1String(name))->actions())
            menu.addAction(action);
        menu.addSeparator();
    }
    menu.exec(position);
}

void MainWindow::loadChosen()
{
    _scene->load(selectedIds());
}

void MainWindow::showFolderMenu(const QPoint &position)
{
    const bool isLibrary = _libraries->folders().libraries().contains(_folders->folder());
    const bool isFolder = !isLibrary && !_folders->folder().isEmpty();
    QMenu menu(this);
    menu.addAction(tr("Add &library..."), this, &MainWindow::addLibrary);
    if (isLibrary)
        menu.addAction(tr("&Close library"), this, &MainWindow::removeLibrary)
            ->setToolTip(tr("Its files stay as they are"));
    menu.addAction(tr("&New folder"), this, &MainWindow::createFolder);
    if (isFolder) {
        menu.addAction(tr("Re&name"), _folders, &FolderTree::editName);
        menu.addAction(tr("&Delete"), this, [this] { _libraries->actions().trashFolder(_folders->folder()); });
    }
    menu.addSeparator();
    menu.addAction(tr("&Import files..."), this, &MainWindow::chooseFilesToImport);
    menu.addAction(tr("&Deleted assets..."), this, &MainWindow::showTrash);
    menu.exec(position);
}

void MainWindow::updateStatus()
{
    const int shown = _libraries->assets().rowCount();
    const auto selected = static_cast<int>(_browser->selected().size());
    QString text = tr("%n asset(s)", nullptr, shown);
    if (selected > 0)
        text += tr(", %n selected", nullptr, selected);
    if (_count)
        _count->setText(text);
}

bool MainWindow::event(QEvent *event)
{
    // A file manager may have changed what no watch sees.
    if (event->type() == QEvent::WindowActivate && !_libraries->scan().isRunning() && isVisible())
        _libraries->refresh();
    return QMainWindow::event(event);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!_scene->mayLeaveScene()) {
        event->ignore();
        return;
    }
    _libraries->scan().cancel();
    Settings::setWindow(saveGeometry(), saveState());
    Settings::setTileSize(_browser->tileSize());
    Settings::setShowsLines(_browser->look() == AssetBrowser::Look::Lines);
    event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (!droppedFiles(*event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent *event)
{
    const QStringList files = droppedFiles(*event->mimeData());
    event->acceptProposedAction();
    QMetaObject::invokeMethod(
        this, [this, files] { importFiles(files, targetFolder()); }, Qt::QueuedConnection);
}
