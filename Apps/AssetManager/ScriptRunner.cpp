// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ScriptRunner.h"

#include "AssetManager/PythonInterpreter.h"
#include "AssetManager/ScriptGuard.h"
#include "AssetManager/ScriptSupport.h"
#include "AssetManager/ScriptWatch.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QPointer>
#include <QThread>

#include <functional>

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

namespace py = pybind11;

namespace {

std::string utf8(const QString &text)
{
    return text.toStdString();
}

py::str fileNameOf(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    return py::reinterpret_steal<py::str>(PyUnicode_DecodeFSDefaultAndSize(name.constData(), name.size()));
}

} // namespace

class ScriptRunner::Private
{
public:
    using Work = std::function<void(const py::object &session)>;

    Private(ScriptRunner &runner, QUndoStack &stack) : self(runner), undo(stack) {}

    bool start();
    int run(const Work &work);
    int perform(const Work &work);
    int end(py::error_already_set &error);
    std::function<void(const py::bytes &)> writer(bool isError) const;

    ScriptRunner &self;
    QUndoStack &undo;
    py::object session;
    ScriptWatch watch;
    bool isRunning = false;
};

/// Makes the session at the first use.
bool ScriptRunner::Private::start()
{
    if (session)
        return true;
    const QString reason = PythonInterpreter::start();
    if (!reason.isEmpty()) {
        Q_EMIT self.written(reason + '\n', true);
        return false;
    }
    const py::gil_scoped_acquire lock;
    try {
        py::dict names;
        names["__name__"] = "asset_manager";
        names["__file__"] = ScriptSupport::fileName();
        names["__builtins__"] = py::module_::import("builtins");
        const auto code = py::reinterpret_steal<py::object>(
            Py_CompileString(ScriptSupport::source(), ScriptSupport::fileName(), Py_file_input));
        if (!code || !py::reinterpret_steal<py::object>(PyEval_EvalCode(code.ptr(), names.ptr(), names.ptr())))
            throw py::error_already_set();
        session = names["Session"](py::cpp_function(writer(false)), py::cpp_function(writer(true)));
    } catch (py::error_already_set &error) { // a broken installation of Python
        Q_EMIT self.written(QString::fromUtf8(error.what()) + '\n', true);
    }
    return static_cast<bool>(session);
}

/// Scripts may write from threads of their own.
std::function<void(const py::bytes &)> ScriptRunner::Private::writer(bool isError) const
{
    return [runner = QPointer<ScriptRunner>(&self), isError](const py::bytes &bytes) {
        if (!runner)
            return;
        const QString text = QString::fromStdString(std::string(bytes));
        if (runner->thread() == QThread::currentThread())
            Q_EMIT runner->written(text, isError);
        else
            QMetaObject::invokeMethod(
                runner, [runner, text, isError] { Q_EMIT runner->written(text, isError); }, Qt::QueuedConnection);
    };
}

int ScriptRunner::Private::run(const Work &work)
{
    if (isRunning) {
        Q_EMIT self.written(tr("Another script is running.") + '\n', true);
        return 1;
    }
    if (!start())
        return 1;
    isRunning = true;
    Q_EMIT self.started();
    ScriptGuard guard(undo);
    const int code = perform(work);
    QCoreApplication::sendPostedEvents(&self, QEvent::MetaCall); // what other threads have written
    guard.end(code != 0);
    isRunning = false;
    if (guard.hasForgotten())
        Q_EMIT self.undoEmptied();
    Q_EMIT self.finished(code);
    return code;
}

int ScriptRunner::Private::perform(const Work &work)
{
    const py::gil_scoped_acquire lock;
    watch.begin();
    try {
        work(session);
        watch.end();
        return 0;
    } catch (py::error_already_set &error) {
        watch.end();
        return end(error);
    }
}

int ScriptRunner::Private::end(py::error_already_set &error)
{
    try {
        const py::object &exception = error.value();
        if (error.trace())
            PyException_SetTraceback(exception.ptr(), error.trace().ptr());
        return session.attr("end")(exception).cast<int>();
    } catch (py::error_already_set &other) { // an exception that cannot even be shown
        Q_EMIT self.written(QString::fromUtf8(other.what()) + '\n', true);
        return 1;
    }
}

ScriptRunner::ScriptRunner(QUndoStack &undo, QObject *parent)
    : QObject(parent), _d(std::make_unique<Private>(*this, undo))
{}

ScriptRunner::~ScriptRunner()
{
    if (!_d->session)
        return;
    const py::gil_scoped_acquire lock;
    try {
        _d->session.attr("close")();
    } catch (py::error_already_set &error) {
        error.discard_as_unraisable("at the end of scripts");
    }
    _d->session = py::object();
}

int ScriptRunner::runFile(const QString &path, const QStringList &arguments)
{
    return _d->run([&](const py::object &session) {
        py::list words;
        for (const QString &argument : arguments)
            words.append(fileNameOf(argument));
        session.attr("run_file")(fileNameOf(path), words);
    });
}

int ScriptRunner::runText(const QString &text)
{
    return _d->run([&](const py::object &session) { session.attr("run_text")(utf8(text)); });
}

bool ScriptRunner::isComplete(const QString &text)
{
    if (isRunning() || !_d->start())
        return true; // running it says why that cannot be
    const py::gil_scoped_acquire lock;
    return _d->session.attr("is_complete")(utf8(text)).cast<bool>();
}

QStringList ScriptRunner::completions(const QString &text)
{
    if (isRunning() || !_d->start())
        return {};
    const py::gil_scoped_acquire lock;
    QStringList words;
    try {
        for (const std::string &word : _d->session.attr("completions")(utf8(text)).cast<std::vector<std::string>>())
            words.append(QString::fromStdString(word));
    } catch (py::error_already_set &error) { // an object that does not tell what it has
        error.discard_as_unraisable("completion");
    }
    return words;
}

bool ScriptRunner::isRunning() const
{
    return _d->isRunning;
}

void ScriptRunner::stop()
{
    if (isRunning())
        _d->watch.stop();
}
