// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ScriptSide.h"

#if defined(KX_WITH_PYTHON)
#include "AssetManager/MenuTip.h"
#include "AssetManager/ScriptConsole.h"
#include "AssetManager/ScriptInput.h"
#include "AssetManager/ScriptRunner.h"

#include <QDockWidget>

#include <unistd.h>
#endif

#include <QAction>
#include <QMainWindow>
#include <QMenu>

#if defined(KX_WITH_PYTHON)

namespace {

/// Not through the C library's stream, which calls of the library silence.
void print(const QString &text, bool isError)
{
    QByteArray left = text.toUtf8();
    while (!left.isEmpty()) {
        const ssize_t written =
            ::write(isError ? STDERR_FILENO : STDOUT_FILENO, left.constData(), static_cast<std::size_t>(left.size()));
        if (written < 0)
            return; // nobody listens
        left.remove(0, static_cast<int>(written));
    }
}

} // namespace

ScriptSide::ScriptSide(QMainWindow &window, QUndoStack &undo)
    : _dock(new QDockWidget(tr("Python"), &window)), _runner(std::make_unique<ScriptRunner>(undo))
{
    auto *console = new ScriptConsole(*_runner);
    _dock->setObjectName(QStringLiteral("pythonDock"));
    _dock->setWidget(console);
    _dock->toggleViewAction()->setShortcut(QStringLiteral("Ctrl+`"));
    window.addDockWidget(Qt::BottomDockWidgetArea, _dock);
    _dock->hide();
    _input = std::make_unique<ScriptInput>(*_runner, *_dock);
    connect(_dock->toggleViewAction(), &QAction::triggered, console, [console](bool isShown) {
        if (isShown)
            console->setFocus();
    });
    connect(_runner.get(), &ScriptRunner::finished, this, &ScriptSide::finished);
}

bool ScriptSide::isAvailable()
{
    return true;
}

void ScriptSide::addActions(QMenu &menu)
{
    QAction *action = menu.addAction(tr("&Run Python file..."));
    action->setObjectName(QStringLiteral("runPythonFile"));
    MenuTip::add(*action, tr("Where it changes the scene, Undo forgets what was done in it before."));
    connect(action, &QAction::triggered, this, [this] {
        _dock->show();
        _dock->raise();
        static_cast<ScriptConsole *>(_dock->widget())->chooseFile();
    });
}

int ScriptSide::runFile(const QString &path, const QStringList &arguments)
{
    const auto printing = connect(_runner.get(), &ScriptRunner::written, this, &print);
    const int code = _runner->runFile(path, arguments);
    disconnect(printing);
    return code;
}

#else

class ScriptRunner
{};
class ScriptInput
{};

ScriptSide::ScriptSide(QMainWindow & /*window*/, QUndoStack & /*undo*/) {}

bool ScriptSide::isAvailable()
{
    return false;
}

void ScriptSide::addActions(QMenu &menu)
{
    menu.addAction(tr("Python (this build comes without it)"))->setEnabled(false);
}

int ScriptSide::runFile(const QString & /*path*/, const QStringList & /*arguments*/)
{
    return 1;
}

#endif

ScriptSide::~ScriptSide() = default;
