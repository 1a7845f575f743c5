// SPDX-License-Identifier: Apache-2.0
#include "AssetManager/ScriptWatch.h"

#include "AssetManager/ScriptSupport.h"

#include <QCoreApplication>

#include <chrono>

#include <pybind11/pybind11.h>

namespace py = pybind11;

namespace {

constexpr std::chrono::milliseconds Interval(40); // a click is answered before anybody wonders

/// That which works now. A call that was asked for may come after it has ended.
ScriptWatch *&current()
{
    static ScriptWatch *watch = nullptr;
    return watch;
}

bool isSupport(PyFrameObject *frame)
{
    const auto code = py::reinterpret_steal<py::object>(reinterpret_cast<PyObject *>(PyFrame_GetCode(frame)));
    return py::str(code.attr("co_filename")).equal(py::str(ScriptSupport::fileName()));
}

/// Raises at every line of scripts, so that catching it does not help.
int raiseAlways(PyObject * /*object*/, PyFrameObject *frame, int what, PyObject * /*argument*/)
{
    if (what != PyTrace_LINE || isSupport(frame))
        return 0;
    PyErr_SetNone(PyExc_KeyboardInterrupt);
    return -1;
}

} // namespace

ScriptWatch::ScriptWatch() = default;

ScriptWatch::~ScriptWatch() = default;

void ScriptWatch::begin()
{
    _stops = 0;
    _interruptions = 0;
    current() = this;
    _thread = std::jthread([this](const std::stop_token &isOver) { knock(isOver); });
}

void ScriptWatch::end()
{
    current() = nullptr;
    PyEval_SetTrace(nullptr, nullptr); // also one that the script left
    _thread.request_stop();
    const py::gil_scoped_release unlocked; // the thread may be waiting for it
    _thread.join();
}

void ScriptWatch::stop()
{
    ++_stops;
}

void ScriptWatch::knock(const std::stop_token &isOver)
{
    std::unique_lock lock(_mutex);
    while (!_condition.wait_for(lock, isOver, Interval, [&isOver] { return isOver.stop_requested(); })) {
        // The main thread looks for calls when it gets its lock back, but is not told of those that other threads ask for.
        const py::gil_scoped_acquire turn;
        Py_AddPendingCall(&ScriptWatch::service, this); // where too many wait already, one of them serves
    }
}

int ScriptWatch::service(void *watch)
{
    return current() && current() == watch ? current()->processEvents() : 0;
}

int ScriptWatch::processEvents()
{
    {
        const py::gil_scoped_release unlocked; // for the script's other threads
        QCoreApplication::processEvents();
    }
    if (_stops == _interruptions)
        return 0;
    if (_stops > 1)
        PyEval_SetTrace(&raiseAlways, nullptr);
    else
        _interruptions = _stops;
    PyErr_SetNone(PyExc_KeyboardInterrupt);
    return -1;
}
