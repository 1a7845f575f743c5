// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/MainWindow.h"

#include "AssetManager/AssetBrowser.h"
#include "AssetManager/DetailsPane.h"
#include "AssetManager/EditorSilence.h"
#include "AssetManager/FailureBox.h"
#include "AssetManager/FileImports.h"
#include "AssetManager/FolderDialog.h"
#include "AssetManager/FolderTree.h"
#include "AssetManager/LibrarySide.h"
#include "AssetManager/MainMenus.h"
#include "AssetManager/NodeTreeModel.h"
#include "AssetManager/SampleLibrary.h"
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
#include <QFileInfo>
#include <QLabel>
#include <QMimeData>
#include <QPointer>
#include <QScreen>
#include <QStatusBar>
#include <QUrl>

namespace {

constexpr int FoldersWidth = 40; // letters
constexpr int DetailsWidth = 45;
constexpr int MessageTime = 10000; // milliseconds

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
    _imports = new FileImports(*_libraries, *this);
    _menus = new MainMenus(*this);
    _count = new QLabel(this);
    statusBar()->addPermanentWidget(new ScanProgress(_libraries->scan(), this));
    statusBar()->addPermanentWidget(_count);
    connectBrowser();
    connectActions();
    connectOutcomes();
    connectManager(manager);
    _browser->setTileSize(Settings::tileSize());
    _browser->setColumnWidths(Settings::columnWidths());
    _browser->setLook(Settings::showsLines() ? AssetBrowser::Look::Lines : AssetBrowser::Look::Tiles);
    resize(QSize(1440, 900).boundedTo(screen()->availableSize()));
    layOutDocks();
    restoreGeometry(Settings::windowGeometry());
    restoreState(Settings::windowState());
    updateStatus();
    showEmptyText();
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
    const int letter = fontMetrics().averageCharWidth();
    resizeDocks({dock("foldersDock"), dock("detailsDock")}, {FoldersWidth * letter, DetailsWidth * letter},
                Qt::Horizontal);
    resizeDocks({dock("viewDock")}, {height() * 4 / 9}, Qt::Vertical);
    resizeDocks({dock("detailsDock"), dock("materialDock")}, {560, 300}, Qt::Vertical);
}

void MainWindow::connectBrowser()
{
    connect(_folders, &FolderTree::folderChanged, this, [this](const QString &path) {
        _browser->setFolder(path);
        showEmptyText();
        updateStatus();
    });
    connect(_folders, &FolderTree::menuRequested, _menus, &MainMenus::showFolderMenu);
    connect(_browser, &AssetBrowser::menuRequested, _menus, &MainMenus::showAssetMenu);
    connect(_browser, &AssetBrowser::selectionChanged, this, [this] {
        _details->show(_browser->selected());
        updateStatus();
    });
    connect(_browser, &AssetBrowser::activated, this, [this](const QString &uuid) { _scene->load({uuid}); });
    connect(_browser, &AssetBrowser::seenChanged, &_libraries->watcher(), &LibraryWatcher::setSeen);
    connect(&_libraries->assets(), &AssetModel::countChanged, this, &MainWindow::updateStatus);
}

/// What a person does in a view, and who carries it out.
void MainWindow::connectActions()
{
    LibraryActions &actions = _libraries->actions();
    FolderModel &folders = _libraries->folders();
    connect(&_libraries->assets(), &AssetModel::renameRequested, &actions, &LibraryActions::renameAsset,
            Qt::QueuedConnection); // the editor has to be gone before rows move
    connect(_details, &DetailsPane::renameRequested, &actions, &LibraryActions::renameAsset);
    connect(_details, &DetailsPane::tagsEdited, &_libraries->assetActions(), &AssetActions::editTags);
    connect(_details, &DetailsPane::favouriteChanged, _libraries.get(), &LibrarySide::setFavourite);
    connect(&folders, &FolderModel::renameRequested, &actions, &LibraryActions::renameFolder, Qt::QueuedConnection);
    // A drop ends first: what follows may ask, and whoever dragged would wait for the answer.
    connect(&folders, &FolderModel::assetsDropped, &actions, &LibraryActions::moveAssets, Qt::QueuedConnection);
    connect(&folders, &FolderModel::foldersDropped, &actions, &LibraryActions::moveFolders, Qt::QueuedConnection);
    connect(&folders, &FolderModel::nodesDropped, &_libraries->assetActions(), &AssetActions::saveNodes,
            Qt::QueuedConnection);
    connect(&folders, &FolderModel::materialsDropped, &_libraries->assetActions(), &AssetActions::saveMaterials,
            Qt::QueuedConnection);
    connect(&folders, &FolderModel::filesDropped, _imports, &FileImports::importFiles, Qt::QueuedConnection);
}

/// What was done, and who shows it.
void MainWindow::connectOutcomes()
{
    connect(_libraries.get(), &LibrarySide::failed, this, &MainWindow::report);
    connect(&_scene->actions(), &SceneActions::failed, this, &MainWindow::report);
    connect(_imports, &FileImports::failed, this, &MainWindow::report);
    connect(_imports, &FileImports::succeeded, this,
            [this](const QString &message) { statusBar()->showMessage(message, MessageTime); });
    connect(_scripts.get(), &ScriptSide::finished, _libraries.get(), &LibrarySide::refresh);
    connect(&_scene->actions(), &SceneActions::assetsLoaded, _libraries.get(), &LibrarySide::markUsed);
    connect(_libraries.get(), &LibrarySide::assetsChanged, _details, &DetailsPane::refresh);
    connect(_libraries.get(), &LibrarySide::librariesChanged, this, [this](const QStringList &paths) {
        Settings::setLibraries(paths);
        if (paths.isEmpty())
            showEmptyText();
    });
    connect(&_libraries->scan(), &LibraryScan::started, this, &MainWindow::showEmptyText);
    connect(&_libraries->scan(), &LibraryScan::finished, this, [this] {
        showEmptyText();
        for (NodeTreeModel *tree : findChildren<NodeTreeModel *>())
            tree->refreshAssetStates();
    });
    connect(&_libraries->states(), &AssetStates::changed, this, [this] {
        for (NodeTreeModel *tree : findChildren<NodeTreeModel *>())
            tree->refreshAssetStates();
    });
    connect(&_libraries->actions(), &LibraryActions::progressed, this,
            [this](int done, int total, const QString &what) {
                if (total > 1 && done < total)
                    statusBar()->showMessage(tr("%1: %2 of %3").arg(what).arg(done).arg(total));
                else
                    statusBar()->clearMessage();
                statusBar()->repaint(); // no events are handled before the end
            });
}

/// Where there is nothing to show because it cannot be read, that is said as long as it is so.
void MainWindow::showEmptyText()
{
    if (_libraries->scan().isRunning()) {
        _browser->setEmptyText(tr("Reading the libraries..."));
        return;
    }
    const FolderModel &folders = _libraries->folders();
    QStringList libraries = folders.libraries();
    if (libraries.isEmpty()) {
        _browser->setEmptyText(tr("No library is open.\nThe File menu adds a folder as a library."));
        return;
    }
    if (const QString chosen = folders.libraryOf(_folders->folder()); !chosen.isEmpty())
        libraries = QStringList{chosen};
    QString text;
    for (const QString &library : libraries) {
        const QString problem = folders.problemOf(library);
        if (problem.isEmpty()) {
            text.clear();
            break;
        }
        text = problem + '\n' + tr("It is read as soon as that is possible.");
    }
    _browser->setEmptyText(text);
}

void MainWindow::connectManager(kxAssetManagerModule &manager)
{
    connect(&manager, &kxAssetManagerModule::selectionChanged, this, [this, &manager] {
        if (manager.selection() != _browser->selected())
            _browser->select(manager.selection());
    });
    connect(&manager, &kxAssetManagerModule::assetsSaved, this, [this] { _libraries->refresh(); });
    manager.setOverwriting([actions = QPointer<AssetActions>(&_libraries->assetActions())](const auto &ids) {
        return actions ? actions->replace(ids) : kxAssetManagerModule::saveOver(ids);
    });
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
    const QString last = Settings::folder();
    _folders->setFolder({});
    if (!_libraries->folders().libraryOf(last).isEmpty())
        _folders->setFolder(last); // once it is read
}

void MainWindow::welcome()
{
    const QString sample = SampleLibrary::find();
    WelcomeDialog dialog(sample, this);
    kxModalQuestion::exec(dialog);
    Settings::setWelcomed();
    if (dialog.choice() == WelcomeDialog::Choice::SampleLibrary)
        openSampleLibrary(sample);
    else if (dialog.choice() == WelcomeDialog::Choice::OwnLibrary)
        addLibrary();
    if (dialog.choice() != WelcomeDialog::Choice::Nothing && dialog.wantsTour())
        startTour();
}

void MainWindow::openSampleLibrary(const QString &found)
{
    QString trouble;
    if (const QString own = SampleLibrary::prepare(found, trouble); !own.isEmpty())
        openLibraries({own});
    else
        report({trouble});
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
    statusBar()->showMessage(messages.first(), MessageTime);
    QWidget *dialog = QApplication::activeModalWidget();
    QWidget *parent =
        dialog && dialog != _failures ? dialog : this; // only what belongs to a dialog can be closed before it
    if (!_failures || (_failures->parentWidget() != parent && !_failures->isVisible())) {
        delete _failures;
        _failures = new FailureBox(parent);
    }
    _failures->add(messages);
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
    _imports->choose(targetFolder());
}

void MainWindow::importFiles(const QStringList &files, const QString &folder)
{
    _imports->importFiles(files, folder);
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
        _libraries->actions().trashFolders(_folders->selectedFolders());
    else if (isDoneByScene("delete"))
        return;
    else if (const QStringList uuids = selectedIds(); !uuids.isEmpty())
        _libraries->actions().trashAssets(uuids);
}

void MainWindow::moveChosen()
{
    if (_folders->hasFocus()) {
        moveFolders();
        return;
    }
    const QStringList uuids = selectedIds();
    if (uuids.isEmpty())
        return;
    if (const QString target = chooseTarget({}); !target.isEmpty())
        _libraries->actions().moveAssets(uuids, target);
}

void MainWindow::moveFolders()
{
    const QStringList folders = _folders->selectedFolders();
    if (folders.isEmpty())
        return;
    if (const QString target = chooseTarget(folders); !target.isEmpty())
        _libraries->actions().moveFolders(folders, target);
}

QString MainWindow::chooseTarget(const QStringList &moved)
{
    const QString shown = moved.isEmpty() ? targetFolder() : QFileInfo(moved.first()).path();
    FolderDialog dialog(_libraries->folders(), shown, moved, this);
    return kxModalQuestion::exec(dialog) == QDialog::Accepted ? dialog.folder() : QString();
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

void MainWindow::loadChosen()
{
    _scene->load(selectedIds());
}

void MainWindow::updateStatus()
{
    const int shown = _libraries->assets().rowCount();
    const auto selected = static_cast<int>(_browser->selected().size());
    QString text = tr("%n asset(s)", nullptr, shown);
    if (selected > 0)
        text += tr(", %n selected", nullptr, selected);
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
    Settings::setFolder(_folders->wantedFolder());
    Settings::setTileSize(_browser->tileSize());
    Settings::setColumnWidths(_browser->columnWidths());
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
