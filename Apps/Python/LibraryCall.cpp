// SPDX-License-Identifier: Apache-2.0
#include "Python/LibraryCall.h"

#include "Kernel/kxLog.h"

#include <utility>

namespace py = pybind11;

namespace kxPython {

namespace {

/// Swallows what is written to it; made once.
std::FILE *nowhere()
{
    static std::FILE *const file = std::fopen("/dev/null", "we");
    return file ? file : stdout;
}

std::string joined(const std::vector<std::string> &lines)
{
    std::string text;
    for (const std::string &line : lines)
        text += (text.empty() ? "" : "\n") + line;
    return text;
}

} // namespace

LibraryCall::LibraryCall() : _output(stdout), _isLogShown(kxLog::isStandardErrorEnabled())
{
    kxLog::enableStandardError(false); // Python says it, once
    // The stream, not the descriptor, which is the script's own.
    stdout = nowhere();
}

LibraryCall::~LibraryCall()
{
    stdout = _output;
    kxLog::enableStandardError(_isLogShown);
    if (std::uncaught_exceptions() > 0 || PyErr_Occurred())
        return;
    // Errors that were not thrown are of a part of the work, of which the rest was done.
    for (const kxLogLevel level : {kxLogLevel::Warning, kxLogLevel::Error})
        for (const std::string &line : _log.lines(level))
            if (PyErr_WarnEx(PyExc_RuntimeWarning, line.c_str(), 1) != 0)
                PyErr_Clear(); // warnings as errors cannot leave a destructor
}

void LibraryCall::fail(const std::string &otherwise) const
{
    const std::string errors = joined(_log.lines(kxLogLevel::Error));
    throw Error(errors.empty() ? otherwise : errors);
}

bool Progress::operator()(const std::function<py::object(const py::object &)> &call)
{
    const py::gil_scoped_acquire lock;
    if (_isStopped)
        return false;
    try {
        // Signals, and what a program has its interpreter do now and then. Nothing happens on other threads.
        if (Py_MakePendingCalls() != 0)
            throw py::error_already_set();
        const py::object answer = _function.is_none() ? py::none() : call(_function);
        _isStopped = answer.ptr() == Py_False;
    } catch (...) {
        _exception = std::current_exception();
        _isStopped = true;
    }
    return !_isStopped;
}

void Progress::rethrow()
{
    if (_exception)
        std::rethrow_exception(std::exchange(_exception, nullptr));
}

} // namespace kxPython
