// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QMainWindow>
#include <QPointer>
#include <QUndoStack>

#include <memory>

class AssetBrowser;
class DetailsPane;
class FailureBox;
class FileImports;
class FolderTree;
class LibrarySide;
class MainMenus;
class QLabel;
class SceneSide;
class ScriptSide;
class kxAssetManagerModule;

/// The window of the desktop Asset Manager: libraries on the one hand, the scene on the other, and what goes between them.
class MainWindow final : public QMainWindow
{
    Q_OBJECT

public:
    /// The module has to live longer.
    explicit MainWindow(kxAssetManagerModule &manager);
    ~MainWindow() override;

    /// Opens these libraries, or where there are none those of the last time.
    void openLibraries(const QStringList &paths);

    SceneSide &scene() { return *_scene; }
    ScriptSide &scripts() { return *_scripts; }
    LibrarySide &libraries() { return *_libraries; }
    AssetBrowser &browser() { return *_browser; }
    DetailsPane &details() { return *_details; }
    FolderTree &folders() { return *_folders; }
    QUndoStack &undoStack() { return _undo; }

    QStringList selectedIds() const;
    /// Where new things go: the chosen folder, else the first library.
    QString targetFolder() const;

    /// What there is to begin with, where the program was not used before.
    void welcome();
    void startTour();

    /// Whether everything that was begun by itself has ended: reading, and the previews that are to be seen.
    bool isIdle() const;

    /// Shows sentences about what went wrong, without waiting for a person.
    void report(const QStringList &messages);

public Q_SLOTS:
    void addLibrary();
    void removeLibrary();
    void createFolder();
    void chooseFilesToImport();
    void importFiles(const QStringList &files, const QString &folder);
    void renameChosen();
    void deleteChosen();
    void loadChosen();
    /// The selected assets, or the selected folders where the folders have the focus; to a folder that a person chooses.
    void moveChosen();
    void moveFolders();
    void showTrash();

private:
    void makeLibraryDocks();
    void layOutDocks();
    void connectBrowser();
    void connectActions();
    void connectOutcomes();
    void connectManager(kxAssetManagerModule &manager);
    /// That a person chooses for these folders, or for assets where there are none; "" for no folder.
    QString chooseTarget(const QStringList &moved);
    void updateStatus();
    void showEmptyText();
    void openSampleLibrary(const QString &found);
    bool isDoneByScene(const char *action);
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    bool event(QEvent *event) override;

    QUndoStack _undo;
    std::unique_ptr<LibrarySide> _libraries;
    SceneSide *_scene = nullptr;
    AssetBrowser *_browser = nullptr;
    DetailsPane *_details = nullptr;
    FolderTree *_folders = nullptr;
    QLabel *_count = nullptr;
    FileImports *_imports = nullptr;
    MainMenus *_menus = nullptr;
    QPointer<FailureBox> _failures;       ///< null until something fails, and after the dialog in which it did
    std::unique_ptr<ScriptSide> _scripts; ///< goes first: what scripts hold belongs to the others
};
