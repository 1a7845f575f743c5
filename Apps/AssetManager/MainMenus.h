// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

class MainWindow;
class QAction;
class QMenu;
class QPoint;
class QUndoStack;

/// The menus of the window: those of its bar, and those of what is under the pointer.
class MainMenus final : public QObject
{
    Q_OBJECT

public:
    /// Fills the bar. Expects a window with everything that the menus are about, the docks included.
    explicit MainMenus(MainWindow &window);

    void showAssetMenu(const QPoint &position);
    void showFolderMenu(const QPoint &position);

private:
    QMenu *addMenu(const QString &title, const char *name);
    void makeFileMenu();
    void makeEditMenu();
    void addUndoActions(QMenu &menu);
    void makeAssetMenu();
    void makeViewMenu();
    void makeHelpMenu();
    void tellAbout();
    void toggleFavourite();

    MainWindow &_window;
};
