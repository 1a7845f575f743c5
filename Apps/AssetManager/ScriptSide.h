// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QStringList>

#include <memory>

class QDockWidget;
class QMainWindow;
class QMenu;
class QUndoStack;
class ScriptInput;
class ScriptRunner;

/// Python in the program: what runs it, and the dock in which it is typed. Main thread only.
///
/// Some builds come without Python. There a line in the menu says so, and nothing can be run.
class ScriptSide final : public QObject
{
    Q_OBJECT

public:
    /// The window owns the dock.
    ScriptSide(QMainWindow &window, QUndoStack &undo);
    ~ScriptSide() override;

    /// Whether this build can run Python.
    static bool isAvailable();

    void addActions(QMenu &menu);

    /// The code that the program would end with. What is printed goes to the program's own streams as well.
    int runFile(const QString &path, const QStringList &arguments);

Q_SIGNALS:
    /// Assets may be other ones now.
    void finished();

private:
    QDockWidget *_dock = nullptr;
    std::unique_ptr<ScriptRunner> _runner;
    std::unique_ptr<ScriptInput> _input;
};
