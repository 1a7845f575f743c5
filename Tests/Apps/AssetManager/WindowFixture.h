// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AssetManager/MainWindow.h"
#include "AssetManager/SceneSide.h"
#include "RealInput.h"
#include "SceneFixture.h"
#include "SceneGraph/UberCamera.h"

#include <functional>
#include <memory>

class QAbstractItemView;
class QAction;
class QDialog;
class QMenu;
class QMimeData;

/// The whole window of the program, shown, with one library, and what a person does to it with the server's mouse and keyboard.
///
/// Settings are those of a first start. No dialog waits: questions get their default answer, and dialogs are rejected, unless a
/// test says otherwise.
class WindowFixture : public SceneFixture
{
protected:
    WindowFixture();
    ~WindowFixture() override;

    /// Absolute and canonical, as the window names it.
    QString path(const QString &relative = {}) const;
    /// Opens the library and waits until it is read.
    void open();
    /// Waits until everything is read and drawn.
    void settle();
    void makeWindow();
    /// As a person does by a click on its title.
    void activate();

    template <class Widget> Widget &widget(const char *name) const
    {
        auto *found = window->findChild<Widget *>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }

    /// All that the menus offer.
    std::vector<QAction *> menuActions() const;

    /// Of the shown assets, in the order of the rows.
    std::vector<QString> names() const;
    QString directoryOf(const std::string &uuid) const;
    static QString id(const std::string &uuid) { return QString::fromStdString(uuid); }
    /// What the window says has gone wrong, and "" without that.
    QString reported() const;
    /// The same, which is confirmed then.
    QString takeReport();

    void click(QWidget &target, const QPoint &place, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void clickItem(QAbstractItemView &view, const QModelIndex &index, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void clickAsset(const std::string &uuid, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Into the scene, by a click and the keys.
    void load(const std::string &uuid);
    /// Waits until it is shown, which those made on the disk are soon.
    QModelIndex indexOfFolder(const QString &directory);
    void clickFolder(const QString &directory);
    void clickButton(const QString &name);
    /// Closes the menu that \a open leads to after \a use saw it.
    void useMenu(const std::function<void()> &open, const std::function<void(QMenu &)> &use);
    /// Clicks with the right button, and closes the menu that opens after \a use saw it.
    void openMenu(QWidget &target, const QPoint &place, const std::function<void(QMenu &)> &use);
    /// The same by the key for menus, of what has the focus.
    void openMenuByKey(const std::function<void(QMenu &)> &use);
    /// What a person chooses in an open menu, by its text without the mark of its letter.
    void clickInMenu(QMenu &menu, const QString &text);
    void pressInMenu(QMenu &menu, const QString &text);
    /// Opens a menu of the bar by a click and clicks on what is in it.
    void clickInMenuBar(const char *menu, const QString &text);
    /// For an answerer of dialogs: shows it, and waits until what led to it is over and it has the keyboard.
    void showForInput(QDialog &dialog);
    /// By a click on its tab.
    void raise(const char *dock);
    void doubleClick(QWidget &target, const QPoint &place);
    /// Presses a mouse button, moves there and lets go.
    void dragMouse(QWidget &from, const QPoint &begin, QWidget &to, const QPoint &end,
                   Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Selects these and drags them there with the mouse.
    void dragAssets(const std::vector<std::string> &uuids, QWidget &target, const QPoint &place);
    void dragItem(QAbstractItemView &from, const QModelIndex &index, QWidget &target, const QPoint &place);
    /// The first row with that name, wherever it is in a tree.
    static QModelIndex rowOf(const QAbstractItemView &view, const QString &name);
    /// Where the folder is seen in the viewport of the tree.
    QPoint placeOfFolder(const QString &directory);
    /// To whatever has the focus.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void pressRedo();
    /// By the keys, until nothing is under way any more.
    void undo();
    void redo();
    void type(const QString &text);

    /// What dragging these gives.
    std::unique_ptr<QMimeData> dragged(const std::vector<std::string> &uuids) const;
    /// Enters, moves and drops; whether the drop was taken.
    bool drop(QWidget &target, const QPoint &place, const QMimeData &data);
    /// The same, and goes on at once.
    static bool dropQuickly(QWidget &target, const QPoint &place, const QMimeData &data);
    bool dropOnItem(QAbstractItemView &view, const QModelIndex &index, const QMimeData &data);
    bool dropOnFolder(const QString &directory, const QMimeData &data);

    SceneView &view() { return window->scene().view(); }
    static osg::UberCameraPtr camera();
    /// Of the camera from what it looks at.
    static double distance();

    static constexpr int Patience = 30000; // milliseconds

    RealInput input;
    std::unique_ptr<MainWindow> window;
};
